# Makes the Debian packages of the build in BUILD below WORK, has dpkg unpack them into a root of their own, where no
# script of theirs could run, and runs the installed program against the installed library.
set(root ${WORK}/root)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${root}/var/lib/dpkg/triggers ${root}/var/lib/dpkg/info ${root}/var/lib/dpkg/updates)
file(TOUCH ${root}/var/lib/dpkg/status ${root}/var/lib/dpkg/available)

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
run(${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -G DEB -B ${WORK})
file(GLOB packages ${WORK}/corvane_${VERSION}_*.deb ${WORK}/corvane-dev_${VERSION}_*.deb)
list(LENGTH packages count)
if(NOT count EQUAL 2)
  message(FATAL_ERROR "expected two packages, there are: ${packages}")
endif()
run(dpkg --root=${root} --force-not-root --force-bad-path --log=${WORK}/dpkg.log --unpack ${packages})

file(WRITE ${WORK}/settings.cfg "[Mail]\nPort=25\n")
execute_process(COMMAND ${root}/usr/bin/corvane-config ${WORK}/settings.cfg get mail:port
  OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT said STREQUAL "25")
  message(FATAL_ERROR "the installed program said '${said}'")
endif()
foreach(file include/corvane/config.h include/corvane/comfort.h lib/pkgconfig/corvane.pc
             share/bash-completion/completions/corvane-config)
  if(NOT EXISTS ${root}/usr/${file})
    message(FATAL_ERROR "/usr/${file} is missing")
  endif()
endforeach()
