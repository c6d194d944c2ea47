# Headers that most sources of a target include are parsed once for all of them. A source still includes what it uses:
# the presets without precompiled headers do not compile it otherwise. A target takes over what another one has
# precompiled (REUSE_FROM) only when both are compiled with the same flags, it has all macros that are defined for the
# other one, and the other one does not depend on it.

set(standard_headers <algorithm> <array> <charconv> <chrono> <cstdint> <functional> <map> <memory> <optional> <ostream>
                     <stdexcept> <string> <string_view> <utility> <vector>)
set(contract_headers
    <boost/make_shared.hpp> <boost/shared_ptr.hpp> <boost/weak_ptr.hpp> <host/ICIMClass.h> <host/ICIMInstance.h>
    <host/ICIMMethodDecl.h> <host/ICIMNamespace.h> <host/ICIMParameterDecl.h> <host/ICIMProperty.h>
    <host/ICIMPropertyDecl.h> <host/ICIMQualifier.h> <host/ICIMQualifierDecl.h> <host/TCIMContext.h>
    <host/TVYXException.h>)

# GCC looks for memory to free again and again, in vain, once it has read in a hundred megabytes of headers. A source of
# this project needs less than a gigabyte.
function(cimhttp_free_less_often target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(${target} PRIVATE "SHELL:--param ggc-min-heapsize=1048576")
  endif()
endfunction()

# cimhttp_precompile(TARGET HEADER...). No header asks for the macro that CMake defines for a shared library of its own.
function(cimhttp_precompile target)
  set_target_properties(${target} PROPERTIES DEFINE_SYMBOL "")
  cimhttp_free_less_often(${target})
  target_precompile_headers(${target} PRIVATE ${ARGN})
endfunction()

# cimhttp_precompile_as(OTHER TARGET...): each target takes over what the other one has precompiled.
function(cimhttp_precompile_as other)
  foreach(target ${ARGN})
    cimhttp_free_less_often(${target})
    target_precompile_headers(${target} REUSE_FROM ${other})
  endforeach()
endfunction()

# cimhttp_leave_unoptimised(TARGET FOLDER SOURCE...): for sources that are little else than what a header-only library has
# for them, which the compiler would spend half a minute on. What is precompiled is so with other flags.
function(cimhttp_leave_unoptimised target folder)
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/${folder}/)
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES COMPILE_OPTIONS -O0
                                                                            SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# The libraries and programs themselves.
function(cimhttp_precompile_product)
  if(CIMHTTP_PEGASUS STREQUAL "bundled")
    cimhttp_precompile(pegmodel ${standard_headers})
    cimhttp_precompile_as(pegmodel pegxml pegcimxml peghttp pegtls pegclient)
  endif()
  cimhttp_precompile(cimhttp_nsp ${standard_headers} ${contract_headers} <Pegasus/Client/CIMClient.h>)
  if(NOT CIMHTTP_HOST_RUNTIME STREQUAL "bundled")
    return()
  endif()
  cimhttp_precompile(vyxcore ${standard_headers} ${contract_headers})
  cimhttp_precompile_as(vyxcore inmem_nsp cimhttp_host cimhttp_exporter_parts cimhttp_browser_parts)
  cimhttp_precompile_as(cimhttp_nsp cimhttp_access)
  cimhttp_precompile(demo_server ${standard_headers})
  cimhttp_leave_unoptimised(cimhttp_host apps/cimhttp CommandLine.cpp OptionValues.cpp)
  cimhttp_leave_unoptimised(demo-server apps/demo-server main.cpp)
  cimhttp_leave_unoptimised(demo_server apps/demo-server server/ResponseWriter.cpp server/RequestReader.cpp)
  # What reads files is run by fuzzers some ten thousand times a second.
  if(NOT CIMHTTP_SANITIZE MATCHES fuzzer)
    cimhttp_leave_unoptimised(cimhttp_nsp src provider/JsonReader.cpp)
    cimhttp_leave_unoptimised(cimhttp_host apps/cimhttp connection/UserDocument.cpp connection/KnownServers.cpp
                              connection/ConnectionStore.cpp)
  endif()
endfunction()

if(NOT CIMHTTP_PCH STREQUAL "tests")
  cimhttp_precompile_product()
endif()

if(NOT BUILD_TESTING OR NOT CIMHTTP_HOST_RUNTIME STREQUAL "bundled")
  return()
endif()
set(test_headers ${standard_headers} <filesystem> <fstream> <sstream> <thread> <gmock/gmock.h> <gtest/gtest.h>)
cimhttp_precompile(support_test ${test_headers})
cimhttp_precompile(faithful_test ${test_headers} <nlohmann/json.hpp>)
cimhttp_precompile_as(faithful_test cimhttp_test)
cimhttp_precompile(plugin_test ${test_headers} ${PROJECT_SOURCE_DIR}/tests/plugin/PluginTest.h)
cimhttp_precompile_as(plugin_test plugin_scarcity_test)
cimhttp_precompile_as(support_test demo_server_test exporter_test browser_test host_contract_test plugin_load_test
                      cimhttp_memory_test runtime_values_test runtime_services_test runtime_inmem_test
                      runtime_xmlparser_test)
if(CIMHTTP_PEGASUS STREQUAL "bundled")
  cimhttp_precompile_as(plugin_test plugin_interposed_test)
  cimhttp_precompile_as(support_test pegasus_model_test pegasus_xml_test pegasus_cimxml_test http_test client_test
                        cim_headers_test corpus_test scarcity_test memory_test)
endif()
