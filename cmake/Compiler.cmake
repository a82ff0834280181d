# How this project's own targets are compiled; nothing of it reaches a consumer.
add_library(corvane_compiler INTERFACE)
target_compile_features(corvane_compiler INTERFACE cxx_std_17)

if(MSVC)
  target_compile_options(corvane_compiler INTERFACE /W4 /utf-8 $<$<BOOL:${CORVANE_WERROR}>:/WX>)
else()
  target_compile_options(corvane_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wformat=2
    $<$<BOOL:${CORVANE_WERROR}>:-Werror>)
  if(CORVANE_SANITIZE)
    target_compile_options(corvane_compiler INTERFACE
      -fsanitize=${CORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(corvane_compiler INTERFACE -fsanitize=${CORVANE_SANITIZE})
  endif()
endif()
