# Builds a project below WORK the given WAY and runs its program, with EMULATOR: for pkg-config the one beside this file,
# otherwise the one of the README, with its very lines. TREE is an installed corvane that two of the ways use. ARGUMENTS
# configure the project; VERSION is to be told.
file(REMOVE_RECURSE ${WORK})
set(source ${CMAKE_CURRENT_LIST_DIR})
if(NOT WAY STREQUAL pkg-config)
  get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
  file(READ ${root}/README.md readme)
  if(NOT readme MATCHES "```cmake\n([^`]*${WAY}[^`]*)```")
    message(FATAL_ERROR "the README has no project that uses ${WAY}")
  endif()
  set(source ${WORK}/source)
  file(WRITE ${source}/CMakeLists.txt "${CMAKE_MATCH_1}")
  configure_file(${CMAKE_CURRENT_LIST_DIR}/consumer.cpp ${source}/main.cpp COPYONLY)
  file(CREATE_LINK ${root} ${source}/corvane SYMBOLIC)
endif()
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
run(${CMAKE_COMMAND} -S ${source} -B ${WORK} -G Ninja ${ARGUMENTS}
  -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${WORK}/bin)
run(${CMAKE_COMMAND} --build ${WORK} --target yours)

file(GLOB dll ${TREE}/bin/corvane.dll)
if(dll AND NOT WAY STREQUAL add_subdirectory)
  file(COPY ${dll} DESTINATION ${WORK}/bin)
endif()
file(WRITE ${WORK}/settings.cfg "[Mail]\nPort=25\n")
execute_process(COMMAND ${EMULATOR} ${WORK}/bin/yours${SUFFIX} ${WORK}/settings.cfg
  OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT said STREQUAL "corvane ${VERSION}, port 25")
  message(FATAL_ERROR "the program said '${said}'")
endif()
