# How this project's own targets are compiled; nothing of it reaches a consumer.
add_library(corvane_compiler INTERFACE)
target_compile_features(corvane_compiler INTERFACE cxx_std_17)

if(NOT WIN32) # on 32-bit machines: files of any size, dated beyond 2038
  target_compile_definitions(corvane_compiler INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()
if(MSVC)
  target_compile_options(corvane_compiler INTERFACE /W4 /utf-8 $<$<BOOL:${CORVANE_WERROR}>:/WX>)
else()
  target_compile_options(corvane_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wformat=2
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>
    $<$<BOOL:${CORVANE_WERROR}>:-Werror>)
  if(CORVANE_SANITIZE)
    target_compile_options(corvane_compiler INTERFACE
      -fsanitize=${CORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(corvane_compiler INTERFACE -fsanitize=${CORVANE_SANITIZE})
  endif()
endif()

# corvane_unite_folders(<target>): where CMAKE_UNITY_BUILD is on, the sources of one folder are compiled as one, which is
# several times quicker; a folder's files have no two helpers of one name.
function(corvane_unite_folders target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    get_filename_component(folder ${source} DIRECTORY)
    string(MAKE_C_IDENTIFIER "in_${folder}" group)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()
