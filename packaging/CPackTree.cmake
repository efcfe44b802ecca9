# Takes from the program what its run does not need and what plain stripping leaves: the compilers' names.
set(tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note "${tree}/usr/bin/varnel"
    COMMAND_ERROR_IS_FATAL ANY)
# The folders are made under the packer's umask.
execute_process(COMMAND find "${tree}" -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)
