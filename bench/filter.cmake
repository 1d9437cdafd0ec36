# The filter benchmark measures SQLite in memory as its reference.
pkg_check_modules(SQLITE3 REQUIRED IMPORTED_TARGET sqlite3)
target_link_libraries(filter PRIVATE PkgConfig::SQLITE3)
