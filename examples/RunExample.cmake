# Runs PROGRAM on a copy of settings.cfg in the folder WORK; it has to succeed and say what expected/EXAMPLE.txt holds.
file(REMOVE_RECURSE ${WORK})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/settings.cfg DESTINATION ${WORK})
execute_process(COMMAND ${PROGRAM} ./settings.cfg WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE said
  COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r" "" said "${said}")
file(READ ${CMAKE_CURRENT_LIST_DIR}/expected/${EXAMPLE}.txt expected)
if(NOT said STREQUAL expected)
  message(FATAL_ERROR "${EXAMPLE} said\n${said}and not\n${expected}")
endif()
