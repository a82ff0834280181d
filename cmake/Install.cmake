# What `cmake --install` puts in place: the library, all headers below include/, and what finds them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(not_here)
if(WIN32)
  set(not_here PATTERN linux EXCLUDE)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN *.h ${not_here})

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/corvane)
install(TARGETS corvane EXPORT corvaneTargets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(EXPORT corvaneTargets NAMESPACE corvane:: DESTINATION ${package_folder} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/corvaneConfig.cmake ${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# What a program's author reads.
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT development FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.cfg PATTERN *.cpp
  PATTERN corvane-config EXCLUDE PATTERN expected EXCLUDE)

# The tree may be moved: corvane.pc finds the prefix from its own place.
set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
set(pc_definitions)
if(NOT BUILD_SHARED_LIBS)
  set(pc_definitions -DCORVANE_STATIC)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/corvane.pc.in ${PROJECT_BINARY_DIR}/corvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/corvane.pc DESTINATION ${pc_folder} COMPONENT development)
