# The last touch on what goes into a package, before it is closed.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
if(CPACK_GENERATOR STREQUAL "DEB")
  # Debian's own places.
  file(GLOB_RECURSE pages ${root}/usr/share/man/*.1)
  execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
  file(RENAME ${root}/usr/share/zsh/site-functions ${root}/usr/share/zsh/vendor-completions)
  file(COPY_FILE ${CPACK_RESOURCE_FILE_LICENSE} ${root}/usr/share/doc/nuvformula/copyright)
endif()

# The same tree gives the same package, whatever the packer's mask and clock.
execute_process(COMMAND find ${root} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${root} -exec touch --no-dereference
    --date=@$ENV{SOURCE_DATE_EPOCH} {} + COMMAND_ERROR_IS_FATAL ANY)
endif()
