# Where things are installed for which GNUInstallDirs has no place, and the target `uninstall`.

set(CIMHTTP_BASH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    CACHE STRING "Where the completions for bash are installed")
set(CIMHTTP_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
    CACHE STRING "Where the completions for zsh are installed")
set(CIMHTTP_FISH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    CACHE STRING "Where the completions for fish are installed")
set(CIMHTTP_SYSTEMD_UNITS lib/systemd/system CACHE STRING "Where the systemd unit is installed")

# cimhttp_install_completions(PROGRAM FOLDER): those of a program from a folder with a file for each shell.
function(cimhttp_install_completions program folder)
  install(FILES ${folder}/${program}.bash DESTINATION ${CIMHTTP_BASH_COMPLETIONS} RENAME ${program})
  install(FILES ${folder}/${program}.zsh DESTINATION ${CIMHTTP_ZSH_COMPLETIONS} RENAME _${program})
  install(FILES ${folder}/${program}.fish DESTINATION ${CIMHTTP_FISH_COMPLETIONS})
endfunction()

# Before anything is installed, the folders are noted that are not there yet: those may go when they are empty again.
set(installation_folders
    ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR}/cimhttp ${CMAKE_INSTALL_LIBDIR}/cmake
    ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_INCLUDEDIR}/cimhttp/cimhttp
    ${CMAKE_INSTALL_INCLUDEDIR}/cimhttp/host ${CMAKE_INSTALL_INCLUDEDIR}/cimhttp/Pegasus ${CMAKE_INSTALL_MANDIR}/man1
    ${CMAKE_INSTALL_DOCDIR} ${CIMHTTP_BASH_COMPLETIONS} ${CIMHTTP_ZSH_COMPLETIONS} ${CIMHTTP_FISH_COMPLETIONS}
    ${CIMHTTP_SYSTEMD_UNITS})
install(CODE "set(folders \"${installation_folders}\")
set(record \"${PROJECT_BINARY_DIR}/install_folders.txt\")
include(\"${CMAKE_CURRENT_LIST_DIR}/NoteNewFolders.cmake\")")

add_custom_target(
  uninstall
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake
  VERBATIM)
