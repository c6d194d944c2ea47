# What other projects find of an installed tree, wherever that is: the package cimhttp for find_package, with the targets
# cimhttp::plugin, cimhttp::runtime and cimhttp::client, and cimhttp.pc and cimhttp-client.pc for pkg-config.

include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cimhttp)
set(pkg_config_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

add_library(cimhttp_runtime INTERFACE)
target_link_libraries(cimhttp_runtime INTERFACE vyxcore inmem_nsp xmlparser)
install(TARGETS host_contract cimhttp_runtime EXPORT cimhttp-host)
set_target_properties(host_contract PROPERTIES EXPORT_NAME contract)
set_target_properties(cimhttp_runtime PROPERTIES EXPORT_NAME runtime)
set_target_properties(inmem_nsp PROPERTIES EXPORT_NAME inmem)
set_target_properties(cimhttp_nsp PROPERTIES EXPORT_NAME plugin)
set_target_properties(pegclient PROPERTIES EXPORT_NAME client)

# Two files of targets, so that the client library can be installed without the rest.
foreach(part host client)
  install(EXPORT cimhttp-${part} NAMESPACE cimhttp:: DESTINATION ${package_dir})
endforeach()
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/cimhttp-config.cmake.in ${PROJECT_BINARY_DIR}/cimhttp-config.cmake
                              INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cimhttp-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/cimhttp-config.cmake ${PROJECT_BINARY_DIR}/cimhttp-config-version.cmake
        DESTINATION ${package_dir})

# From the folder of the .pc files up to the prefix.
file(RELATIVE_PATH to_prefix /${pkg_config_dir} /)
string(REGEX REPLACE "/$" "" to_prefix ${to_prefix})
foreach(package cimhttp cimhttp-client)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${pkg_config_dir})
endforeach()
