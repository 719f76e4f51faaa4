# Run by CPack after it has installed the program into its staging directory, before it packs it.
file(GLOB_RECURSE programs "${CPACK_TEMPORARY_DIRECTORY}/*/libexec/kurbelbuch/kurbelbuch")
if(NOT programs)
  message(FATAL_ERROR "there is no program to strip below ${CPACK_TEMPORARY_DIRECTORY}")
endif()
foreach(program IN LISTS programs)
  execute_process(COMMAND strip --remove-section=.comment --remove-section=.note "${program}"
                  COMMAND_ERROR_IS_FATAL ANY)
endforeach()
