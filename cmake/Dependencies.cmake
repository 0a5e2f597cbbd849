# The reason for each dependency is in docs/architecture.md.
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(TIFF REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Network Svg Test Widgets)
find_package(PkgConfig REQUIRED)
pkg_check_modules(deflate REQUIRED IMPORTED_TARGET libdeflate)
pkg_check_modules(harfbuzz REQUIRED IMPORTED_TARGET harfbuzz-subset)
pkg_check_modules(xxhash REQUIRED IMPORTED_TARGET libxxhash)
