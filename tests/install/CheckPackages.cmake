# Makes the archive of the build in BUILD below WORK, unpacks it, and runs the unpacked program against the unpacked
# library, with EMULATOR.
function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -B ${WORK})

file(GLOB archive ${WORK}/corvane-${VERSION}-*.zip)
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${WORK}/root)
file(GLOB tree ${WORK}/root/corvane-*)
foreach(file bin/corvane.dll include/corvane/config.h include/corvane/comfort.h lib/pkgconfig/corvane.pc
    share/doc/corvane/README.md share/doc/corvane/docs/windows-and-linux.md share/doc/corvane/examples/settings.cfg)
  if(NOT EXISTS ${tree}/${file})
    message(FATAL_ERROR "${tree}/${file} is missing")
  endif()
endforeach()

file(WRITE ${WORK}/settings.cfg "[Mail]\nPort=25\n")
execute_process(COMMAND ${EMULATOR} ${tree}/bin/corvane-config.exe ${WORK}/settings.cfg get mail:port
  OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT said STREQUAL "25")
  message(FATAL_ERROR "the unpacked program printed '${said}'")
endif()
