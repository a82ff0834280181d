# What `cmake --install` puts in place: the library, its public headers, and what finds them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(port posix)
if(WIN32)
  set(port windows)
endif()
set(public_headers
  config.h
  foundations/ApplicationConfigManager.h
  foundations/CaseFolding.h
  foundations/Export.h
  foundations/FailureCode.h
  foundations/NativeLogging.h
  foundations/ScopedResource.h
  foundations/Singleton.h
  foundations/ThreadLock.h
  foundations/WideString.h
  manager/ConfigManager.h
  manager/NameTable.h
  manager/SectionMap.h
  manager/TagMap.h
  platform/CriticalSection.h
  platform/${port}/CriticalSection.h
  registry/registry.h
  sources/IConfigSource.h
)
if(NOT WIN32)
  list(APPEND public_headers platform/posix/RegistryFolders.h)
endif()
foreach(header ${public_headers})
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/corvane/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvane/${folder})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/corvane)
install(TARGETS corvane EXPORT corvaneTargets)
install(EXPORT corvaneTargets NAMESPACE corvane:: DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/corvane.pc.in ${PROJECT_BINARY_DIR}/corvane.pc @ONLY)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/corvaneConfig.cmake ${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake
  DESTINATION ${package_folder})
install(FILES ${PROJECT_BINARY_DIR}/corvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
