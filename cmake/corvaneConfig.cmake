# There are no components: one that is asked for, unless it is optional, is missing.
foreach(component IN LISTS corvane_FIND_COMPONENTS)
  if(corvane_FIND_REQUIRED_${component})
    set(corvane_FOUND FALSE)
    set(corvane_NOT_FOUND_MESSAGE "corvane has no component '${component}'")
    return()
  endif()
endforeach()

include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/corvaneTargets.cmake)
