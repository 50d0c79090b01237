# Called by cpack when the files of all packages lie ready and before they are packed.
execute_process(COMMAND ${CPACK_ANOMALIS_SOURCE}/packaging/finish.sh ${CPACK_TEMPORARY_DIRECTORY}
  ${CPACK_PACKAGE_VERSION} ${CPACK_PACKAGE_CONTACT} COMMAND_ERROR_IS_FATAL ANY)
