# corvane_utf8_program(<target>): on Windows, a manifest makes UTF-8 the program's code page. Its arguments and the
# paths of narrow operations are UTF-8 then, as they are elsewhere.
function(corvane_utf8_program target)
  if(MSVC)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/utf8.manifest)
  elseif(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/utf8.rc)
  endif()
endfunction()
