# The ingestion benchmark's reference parser.
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
target_link_libraries(ingest PRIVATE PkgConfig::LIBXML2)
