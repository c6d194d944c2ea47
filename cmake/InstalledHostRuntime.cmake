# Offers the libraries of an installed host runtime, in the folder CIMHTTP_HOST_RUNTIME, under the names of the bundled
# ones. The plug-in also names a few host libraries of which it calls nothing; those are linked where the folder has them.

function(import_host_library target file)
  find_library(${target}_LIBRARY NAMES ${file} PATHS "${CIMHTTP_HOST_RUNTIME}" NO_DEFAULT_PATH REQUIRED)
  add_library(${target} UNKNOWN IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES IMPORTED_LOCATION "${${target}_LIBRARY}"
                                             INTERFACE_LINK_LIBRARIES host_contract)
endfunction()

import_host_library(vyxcore libvyxcore.so)
import_host_library(inmem_nsp libinmem.nsp.so)
import_host_library(xmlparser libxmlparser.so)

add_library(host_companions INTERFACE)
foreach(file libnsptools.so libspdriver.so libsmbios.so libslp.so.1)
  find_library(${file}_PATH NAMES ${file} PATHS "${CIMHTTP_HOST_RUNTIME}" NO_DEFAULT_PATH)
  mark_as_advanced(${file}_PATH)
  if(${file}_PATH)
    target_link_libraries(host_companions INTERFACE "${${file}_PATH}")
  endif()
endforeach()
