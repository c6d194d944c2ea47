# What every target of the project shares: language level, output folders, run paths, warnings.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
# The shared libraries have a folder of their own, since a host has libraries with some of these names, too. The build
# folder is laid out as the installed tree.
set(CIMHTTP_LIBRARY_DIR ${CMAKE_INSTALL_LIBDIR}/cimhttp)
set(CIMHTTP_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/cimhttp)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CIMHTTP_LIBRARY_DIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/archives)
# Where programs find the libraries; a library finds the others beside itself. LD_LIBRARY_PATH counts only after these
# paths: with the loader's newer kind of them it would come first.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CIMHTTP_LIBRARY_DIR}")
set(CIMHTTP_LIBRARY_RPATH "$ORIGIN")
add_link_options(LINKER:--disable-new-dtags)
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
# CMake's own path for the build folder ends with an empty entry, which stands for the working directory.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# A library's calls to its own functions are bound when it is linked, not looked up by name each time it is loaded: that
# is a quarter of what the command-line program does before its first request. In release builds they can be inlined, too.
add_link_options(LINKER:-Bsymbolic-functions)
add_compile_options($<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-fno-semantic-interposition>)

# cimhttp_export(LIBRARY MAP): the library offers only the symbols that the version script names.
function(cimhttp_export library map)
  target_link_options(${library} PRIVATE LINKER:--version-script=${map})
  set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

# A compiler that is newer than this source may have warnings of its own, for which nobody's build should fail; the presets
# are for those who change the source.
option(CIMHTTP_WERROR "Treat warnings as errors" OFF)
add_library(cimhttp_warnings INTERFACE)
target_compile_options(cimhttp_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                  $<$<BOOL:${CIMHTTP_WERROR}>:-Werror>)
# To Clang, changes of the sign alone are conversions, too; GCC has another warning for them.
target_compile_options(cimhttp_warnings INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)

# To GCC, an empty std::optional looks used when it optimises for debugging alone; the optimised build looks better.
if(CMAKE_CXX_FLAGS_DEBUG MATCHES "-Og" AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options($<$<CONFIG:Debug>:-Wno-maybe-uninitialized>)
endif()

# See PrecompiledHeaders.cmake. ccache knows precompiled headers only with this option of GCC.
set(CIMHTTP_PCH OFF CACHE STRING
    "Precompile headers of all (ON) or of the tests (tests): faster, but finds no include that is missing")
set_property(CACHE CIMHTTP_PCH PROPERTY STRINGS ON OFF tests)
if(CIMHTTP_PCH AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES ccache)
  add_compile_options(-fpch-preprocess)
endif()

set(CIMHTTP_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(CIMHTTP_SANITIZE)
  add_compile_options(-fsanitize=${CIMHTTP_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CIMHTTP_SANITIZE})
  if(CIMHTTP_SANITIZE MATCHES undefined AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # GCC takes a quarter longer when it checks every access for a null pointer, which the address sanitizer reports, too,
    # and for alignment. Clang's build, in which the fuzzers run, checks both.
    add_compile_options(-fno-sanitize=null,alignment)
  endif()
  if(CIMHTTP_SANITIZE MATCHES thread AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Boost.Asio has fences, of which GCC warns that the thread sanitizer does not see them.
    add_compile_options(-Wno-tsan)
  endif()
endif()

find_package(Threads REQUIRED)
