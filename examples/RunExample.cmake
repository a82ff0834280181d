# Runs PROGRAM on a copy of settings.cfg in the folder WORK; it must succeed and print the text in expected/EXAMPLE.txt.
file(REMOVE_RECURSE ${WORK})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/settings.cfg DESTINATION ${WORK})
execute_process(COMMAND ${PROGRAM} ./settings.cfg WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE said
  COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r" "" said "${said}")
file(READ ${CMAKE_CURRENT_LIST_DIR}/expected/${EXAMPLE}.txt expected)
if(NOT said STREQUAL expected)
  message(FATAL_ERROR "${EXAMPLE} printed\n${said}instead of\n${expected}")
endif()
