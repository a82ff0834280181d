# Installs the build in BUILD below WORK, builds the user's project against that tree alone, puts the program beside
# the library's DLL where there is one, and runs it (with EMULATOR). ARGUMENTS configure the user's project.
function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/tree)
file(GLOB_RECURSE config ${WORK}/tree/corvaneConfig.cmake)
get_filename_component(package ${config} DIRECTORY)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK}/build -G Ninja ${ARGUMENTS}
  -Dcorvane_DIR=${package} -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${WORK}/tree/bin)
run(${CMAKE_COMMAND} --build ${WORK}/build)
file(WRITE ${WORK}/settings.cfg "[Mail]\nPort=25\n")
run(${EMULATOR} ${WORK}/tree/bin/cache-only${SUFFIX} ${WORK}/settings.cfg)
