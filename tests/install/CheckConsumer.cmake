# Builds the project beside this file below WORK the given WAY and runs its program, with EMULATOR. TREE is an
# installed corvane that two of the ways use. ARGUMENTS configure the project; VERSION is to be told.
file(REMOVE_RECURSE ${WORK})
if(WAY STREQUAL add_subdirectory)
  list(APPEND ARGUMENTS -DCMAKE_BUILD_TYPE=None -DCMAKE_UNITY_BUILD=ON) # the quickest build
else()
  file(GLOB_RECURSE package ${TREE}/corvaneConfig.cmake)
  file(GLOB_RECURSE pc ${TREE}/corvane.pc)
  get_filename_component(package ${package} DIRECTORY)
  get_filename_component(pc ${pc} DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} ${pc})
  list(APPEND ARGUMENTS -Dcorvane_DIR=${package})
endif()

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK} -G Ninja -DWAY=${WAY} ${ARGUMENTS}
  -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${WORK}/bin)
run(${CMAKE_COMMAND} --build ${WORK} --target consumer)

file(GLOB dll ${TREE}/bin/corvane.dll)
if(dll AND NOT WAY STREQUAL add_subdirectory)
  file(COPY ${dll} DESTINATION ${WORK}/bin)
endif()
file(WRITE ${WORK}/settings.cfg "[Mail]\nPort=25\n")
execute_process(COMMAND ${EMULATOR} ${WORK}/bin/consumer${SUFFIX} ${WORK}/settings.cfg
  OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT said STREQUAL "corvane ${VERSION}, port 25")
  message(FATAL_ERROR "the program said '${said}'")
endif()
