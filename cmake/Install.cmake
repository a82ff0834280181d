# What `cmake --install` puts in place: the library, its public headers, and what finds them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(port linux)
if(WIN32)
  set(port windows)
endif()
set(public_headers
  comfort.h
  comfort/FileWatch.h
  comfort/Listing.h
  comfort/Loading.h
  comfort/SnapshotGuard.h
  comfort/Values.h
  comfort/ValueText.h
  comfort/WriteBatch.h
  config.h
  foundations/ApplicationConfigManager.h
  foundations/FailureCode.h
  foundations/NativeLogging.h
  foundations/ScopedResource.h
  foundations/Singleton.h
  foundations/ThreadLock.h
  foundations/Version.h
  foundations/WideString.h
  manager/ConfigManager.h
  platform/RegistryFolders.h
  registry/registry.h
  sources/ConfigChange.h
  sources/IConfigSource.h
)
if(NOT WIN32)
  list(APPEND public_headers platform/linux/RegistryFolders.h platform/linux/RegistryKeys.h)
endif()
set(inner_headers # what the public ones stand on; nothing in them is for programs
  foundations/CaseFolding.h
  foundations/Export.h
  platform/CriticalSection.h
  platform/FileState.h
  platform/FractionText.h
  platform/ThreadSafety.h
  platform/${port}/CriticalSection.h
)
foreach(header ${public_headers} ${inner_headers})
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/corvane/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvane/${folder}
    COMPONENT development)
endforeach()

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
