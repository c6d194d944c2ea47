# Finds an installed OpenPegasus and offers it under the name of the bundled client library, pegclient.
# Pegasus_ROOT names its folder where it is not in a standard place; for a build from sources, which installs no headers,
# the folders of the sources and of the build, as in -DPegasus_ROOT="SOURCE;HOME".

find_path(Pegasus_INCLUDE_DIR Pegasus/Client/CIMClient.h PATH_SUFFIXES src)
find_library(Pegasus_COMMON_LIBRARY pegcommon)
find_library(Pegasus_CLIENT_LIBRARY pegclient)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Pegasus REQUIRED_VARS Pegasus_COMMON_LIBRARY Pegasus_CLIENT_LIBRARY Pegasus_INCLUDE_DIR)

if(Pegasus_FOUND AND NOT TARGET pegcommon)
  # Its headers want to know the platform, and that there is TLS: without, SSLContext.h spoils OpenSSL's own headers.
  string(TOUPPER "PEGASUS_PLATFORM_LINUX_${CMAKE_SYSTEM_PROCESSOR}_GNU" platform_macro)
  add_library(pegcommon UNKNOWN IMPORTED GLOBAL)
  set_target_properties(pegcommon PROPERTIES IMPORTED_LOCATION "${Pegasus_COMMON_LIBRARY}"
                                             INTERFACE_INCLUDE_DIRECTORIES "${Pegasus_INCLUDE_DIR}"
                                             INTERFACE_COMPILE_DEFINITIONS "${platform_macro};PEGASUS_HAS_SSL")
  add_library(pegclient UNKNOWN IMPORTED GLOBAL)
  set_target_properties(pegclient PROPERTIES IMPORTED_LOCATION "${Pegasus_CLIENT_LIBRARY}"
                                             INTERFACE_LINK_LIBRARIES pegcommon)
endif()
mark_as_advanced(Pegasus_INCLUDE_DIR Pegasus_COMMON_LIBRARY Pegasus_CLIENT_LIBRARY)
