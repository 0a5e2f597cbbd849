# Every compiler flag of the project travels on this one target.
add_library(quillon_options INTERFACE)
target_include_directories(quillon_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(quillon_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Wcast-align -Woverloaded-virtual -Wimplicit-fallthrough)
# GCC 12 sees overlaps inside std::string's operator+ that are not there (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(quillon_options INTERFACE -Wno-restrict)
endif()
target_compile_definitions(quillon_options INTERFACE
  QUILLON_VERSION="${PROJECT_VERSION}" QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS)

if(QUILLON_SANITIZE)
  target_compile_options(quillon_options INTERFACE
    -fsanitize=${QUILLON_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(quillon_options INTERFACE -fsanitize=${QUILLON_SANITIZE})
  # With what the sanitizers add, GCC loses sight of what is initialized.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(quillon_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
if(QUILLON_COVERAGE)
  target_compile_options(quillon_options INTERFACE --coverage)
  target_link_options(quillon_options INTERFACE --coverage)
endif()
if(QUILLON_FUZZ)
  # All code reports to the fuzzer which of its branches an input takes; only the targets themselves link its main function.
  target_compile_options(quillon_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Where a program finds the modules that it loads: in the build tree beside the others, installed in a folder of their own.
include(GNUInstallDirs)
set(QUILLON_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/quillon)
set(CMAKE_BUILD_RPATH ${PROJECT_BINARY_DIR}/platform/gui)
set(CMAKE_INSTALL_RPATH $ORIGIN/../${QUILLON_MODULE_DIR})
# Not as RUNPATH, which holds for what the program itself loads: a sanitizer's library loads modules in its stead.
target_link_options(quillon_options INTERFACE LINKER:--disable-new-dtags)
