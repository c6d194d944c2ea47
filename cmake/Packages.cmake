# `cpack -G RPM` makes one package of all that is installed. Debian's packages are made by debian/rules.
set(CPACK_PACKAGE_CONTACT "The maintainers of cimhttp")
set(CPACK_PACKAGE_VENDOR "The maintainers of cimhttp")
set(CPACK_PACKAGE_DESCRIPTION "A plug-in that makes a remote CIM server look like one more local namespace of a host object
manager, a command-line program that reads CIM servers with it, and a demo server.")
set(CPACK_RPM_PACKAGE_LICENSE "None chosen yet")
set(CPACK_RPM_PACKAGE_GROUP "Applications/System")
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_PACKAGE_RELOCATABLE OFF)
# The unit names the program where it will be, not where it is packed.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
# The libraries in a folder of their own are for this package alone.
set(CPACK_RPM_SPEC_MORE_DEFINE "%global __provides_exclude_from ^/usr/${CMAKE_INSTALL_LIBDIR}/cimhttp/.*$
%global __requires_exclude ^lib(cimhttp|inmem|vyxcore|xmlparser)[^/]*$")
# Folders that other packages have, too.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/${CMAKE_INSTALL_LIBDIR} /usr/lib/systemd /usr/lib/systemd/system /usr/share/bash-completion /usr/share/bash-completion/completions
    /usr/share/fish /usr/share/fish/vendor_completions.d /usr/share/man /usr/share/man/man1 /usr/share/zsh
    /usr/share/zsh/site-functions)
include(CPack)
