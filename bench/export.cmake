# The reference writer measured beside ours: libxlsxwriter itself.
target_link_libraries(${name} PRIVATE PkgConfig::XLSXWRITER)
