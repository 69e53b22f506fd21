# What is installed, by component: "library" for running services, "development" for building them, "host" for trying
# them on a workstation, "doc". Everything finds its neighbours by relative paths, so that the whole can be moved.
if(NOT IS_ABSOLUTE "${SDM_PLATFORM}" AND NOT SDM_PLATFORM STREQUAL "sdm_host")
  return() # Linked with a target of this build that nobody outside could find.
endif()

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(sdm_headers "${CMAKE_INSTALL_INCLUDEDIR}/servicedatamanager")
set(sdm_cmake "${CMAKE_INSTALL_LIBDIR}/cmake/ServiceDataManager")
if(TARGET sdm_host)
  set(SDM_OVER_HOST ON)
else()
  set(SDM_OVER_HOST OFF)
endif()

# One file of targets a component, as ServiceDataManagerConfig.cmake.in reads them.
function(sdm_install_targets name component)
  install(EXPORT ServiceDataManager${name}
    FILE ServiceDataManager${name}Targets.cmake NAMESPACE ServiceDataManager:: DESTINATION "${sdm_cmake}"
    COMPONENT ${component})
endfunction()

# A pkg-config file that finds its prefix from where it lies itself.
file(RELATIVE_PATH sdm_up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" sdm_up "${sdm_up}")
function(sdm_pkgconfig name component)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT ${component})
endfunction()

# What is installed leaves its debug information in the build tree: it is many times as large as the programs.
option(SDM_STRIP "Install programs and libraries without debug information" ON)
if(SDM_STRIP)
  install(CODE "set(CMAKE_INSTALL_DO_STRIP TRUE)" ALL_COMPONENTS)
endif()

# Library and interface.
set_target_properties(sdm_interface PROPERTIES EXPORT_NAME Interface)
install(TARGETS ServiceDataManager sdm_interface EXPORT ServiceDataManager
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION "${sdm_headers}")
install(FILES
  "${PROJECT_SOURCE_DIR}/include/ServiceDataManagerExport.h"
  "${PROJECT_SOURCE_DIR}/include/ServiceDataManagerIfc.h"
  DESTINATION "${sdm_headers}" COMPONENT development)
sdm_install_targets("" development)

# The contract. Over a framework its headers are the framework's, and only the name is ours.
set_target_properties(sdm_platform PROPERTIES EXPORT_NAME Platform)
if(SDM_OVER_HOST)
  install(TARGETS sdm_platform EXPORT ServiceDataManagerPlatform INCLUDES DESTINATION "${sdm_headers}/platform")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/platform/" DESTINATION "${sdm_headers}/platform" COMPONENT development
    FILES_MATCHING PATTERN "*.h")
  sdm_pkgconfig(servicedatamanager-platform development)
  set(sdm_requires "Requires: servicedatamanager-platform")
else()
  install(TARGETS sdm_platform EXPORT ServiceDataManagerPlatform)
  set(sdm_requires "")
endif()
sdm_install_targets(Platform development)
sdm_pkgconfig(servicedatamanager development)

write_basic_package_version_file("${PROJECT_BINARY_DIR}/ServiceDataManagerConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
configure_file("${PROJECT_SOURCE_DIR}/cmake/ServiceDataManagerConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/ServiceDataManagerConfig.cmake" @ONLY)
install(FILES
  "${PROJECT_BINARY_DIR}/ServiceDataManagerConfig.cmake"
  "${PROJECT_BINARY_DIR}/ServiceDataManagerConfigVersion.cmake"
  DESTINATION "${sdm_cmake}" COMPONENT development)

# Host platform and program.
if(SDM_OVER_HOST)
  set_target_properties(sdm_host PROPERTIES EXPORT_NAME Host)
  set_target_properties(sdm_loadable PROPERTIES EXPORT_NAME Loadable)
  install(TARGETS sdm_host sdm_loadable EXPORT ServiceDataManagerHost
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT host
    INCLUDES DESTINATION "${sdm_headers}")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/include/host" "${PROJECT_SOURCE_DIR}/loadable/include/loadable"
    DESTINATION "${sdm_headers}" COMPONENT host)
  sdm_install_targets(Host host)
  sdm_pkgconfig(servicedatamanager-host host)
  install(TARGETS sdm RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT host)
  install(TARGETS commsservice_host LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/servicedatamanager" COMPONENT host)
  install(FILES "${PROJECT_SOURCE_DIR}/examples/commsservice/CommsSettings.csv"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/ServiceDataManager" COMPONENT host)
  install(FILES
    "${PROJECT_SOURCE_DIR}/docs/man/sdm.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-check.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-diff.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-explain.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-groups.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-new.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-replay.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-run.1"
    "${PROJECT_SOURCE_DIR}/docs/man/sdm-test.1"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT host)
  install(FILES "${PROJECT_SOURCE_DIR}/tools/sdm/completion/sdm"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT host)
endif()

# Texts and examples, laid out as in the tree so that their links hold; what those that lead to sources lead to is said.
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT doc)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" "${PROJECT_SOURCE_DIR}/examples"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT doc
  PATTERN man EXCLUDE
  PATTERN api EXCLUDE)
install(CODE "cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX OUTPUT_VARIABLE sdm_texts)
cmake_path(APPEND sdm_texts \"${CMAKE_INSTALL_DOCDIR}\")
string(PREPEND sdm_texts \"\$ENV{DESTDIR}\")
include(\"${PROJECT_SOURCE_DIR}/cmake/SdmInstalledTexts.cmake\")" COMPONENT doc)
# The API reference, where scripts/api-reference has made it.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/build/api/html/" DESTINATION "${CMAKE_INSTALL_DOCDIR}/api" COMPONENT doc OPTIONAL)
