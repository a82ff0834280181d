# Whether an installed TREE has all headers of include/ and no others, and whether COMPILER takes each of them alone, with
# nothing but the tree to include from.
cmake_minimum_required(VERSION 3.22)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
file(GLOB_RECURSE headers ${TREE}/include/*)
file(GLOB_RECURSE installed RELATIVE ${TREE}/include ${TREE}/include/*)
file(GLOB_RECURSE public RELATIVE ${root}/include ${root}/include/*.h)
if(WINDOWS)
  list(FILTER public EXCLUDE REGEX /linux/)
endif()
if(NOT installed STREQUAL public OR NOT "corvane/config.h" IN_LIST installed)
  message(FATAL_ERROR "installed are ${installed}")
endif()
execute_process(COMMAND ${COMPILER} -std=c++17 -fsyntax-only -w -I${TREE}/include -x c++ ${headers}
  COMMAND_ERROR_IS_FATAL ANY)
