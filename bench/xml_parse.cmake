# The reference parser measured beside ours.
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
target_link_libraries(${name} PRIVATE PkgConfig::LIBXML2)
