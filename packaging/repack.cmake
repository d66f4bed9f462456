# Packs a tar.gz or a zip anew, sorted by names and without the packer's own user and time zone:
# CPack takes files as the file system lists them.

cmake_path(GET CPACK_TEMPORARY_INSTALL_DIRECTORY PARENT_PATH folder)
cmake_path(GET CPACK_TEMPORARY_INSTALL_DIRECTORY FILENAME name)
set(ENV{TZ} UTC)
set(ENV{LC_ALL} C)
foreach(package ${CPACK_PACKAGE_FILES})
  if(CPACK_GENERATOR STREQUAL "TGZ")
    file(REMOVE ${package})
    execute_process(
      COMMAND tar --sort=name --owner=0 --group=0 --numeric-owner --format=gnu -c ${name}
      COMMAND gzip -9n
      WORKING_DIRECTORY ${folder} OUTPUT_FILE ${package} COMMAND_ERROR_IS_FATAL ANY)
  elseif(CPACK_GENERATOR STREQUAL "ZIP")
    file(REMOVE ${package})
    execute_process(
      COMMAND find ${name}
      COMMAND sort
      COMMAND zip -qX9@ ${package}
      WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
