# What every target of the project shares: language level, output folders, run paths, warnings.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
# Where programs find the libraries; a library finds the others beside itself. Each folder here costs a program some
# twenty looks for every library that is not there.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}" "$ORIGIN/../lib")
list(REMOVE_DUPLICATES CMAKE_INSTALL_RPATH)
set(CIMHTTP_LIBRARY_RPATH "$ORIGIN")
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
# The build folder is laid out alike. CMake's own path for it ends with an empty entry, which stands for the working directory.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# A library's calls to its own functions are bound when it is linked, not looked up by name each time it is loaded: that
# is a quarter of what the command-line program does before its first request. In release builds they can be inlined, too.
add_link_options(LINKER:-Bsymbolic-functions)
add_compile_options($<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-fno-semantic-interposition>)

# A compiler that is newer than this source may have warnings of its own, for which nobody's build should fail; the presets
# are for those who change the source.
option(CIMHTTP_WERROR "Treat warnings as errors" OFF)
add_library(cimhttp_warnings INTERFACE)
target_compile_options(cimhttp_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                  $<$<BOOL:${CIMHTTP_WERROR}>:-Werror>)
# To Clang, changes of the sign alone are conversions, too; GCC has another warning for them.
target_compile_options(cimhttp_warnings INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)

# See PrecompiledHeaders.cmake. ccache knows precompiled headers only with this option of GCC.
option(CIMHTTP_PCH "Precompile headers, which is faster, but does not find an include that is missing" OFF)
if(CIMHTTP_PCH AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES ccache)
  add_compile_options(-fpch-preprocess)
endif()
# GCC looks for memory to free again and again, in vain, once it has read in a hundred megabytes of headers. A source of
# this project needs less than a gigabyte.
if(CIMHTTP_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options("SHELL:--param ggc-min-heapsize=1048576")
endif()

set(CIMHTTP_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(CIMHTTP_SANITIZE)
  add_compile_options(-fsanitize=${CIMHTTP_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CIMHTTP_SANITIZE})
  if(CIMHTTP_SANITIZE MATCHES thread AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Boost.Asio has fences, of which GCC warns that the thread sanitizer does not see them.
    add_compile_options(-Wno-tsan)
  endif()
endif()

find_package(Threads REQUIRED)
