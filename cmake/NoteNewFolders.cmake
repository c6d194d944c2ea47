# Part of the installation: adds to the file `record` those of `folders`, and of the folders that they are in, which are not
# there yet. The names are without DESTDIR.
foreach(folder IN LISTS folders)
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
  while(NOT EXISTS "$ENV{DESTDIR}${folder}" AND NOT folder STREQUAL "/")
    file(APPEND "${record}" "${folder}\n")
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
endforeach()
