# Where the program and what it loads lie in the build tree: as far from each other as when they are installed, so that each
# has its final search path from the start. A search path of the build's own would be padded with empty parts, to make room
# for the final one, and an empty part is the folder in which somebody happens to be.
include(GNUInstallDirs)

function(sdm_search_path target path)
  set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${path}")
endfunction()

# Over a framework the library lies alone.
if(NOT TARGET sdm)
  sdm_search_path(ServiceDataManager "")
  return()
endif()

file(RELATIVE_PATH sdm_libraries "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
set(sdm_built "${PROJECT_BINARY_DIR}/tools/sdm/${sdm_libraries}")
set_target_properties(commsservice_host PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${sdm_built}/servicedatamanager")
configure_file("${PROJECT_SOURCE_DIR}/examples/commsservice/CommsSettings.csv"
  "${sdm_built}/servicedatamanager/CommsSettings.csv" COPYONLY)
if(SDM_PLATFORM STREQUAL "sdm_host")
  set_target_properties(ServiceDataManager sdm_host PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${sdm_built}")
  sdm_search_path(sdm_host "")
  sdm_search_path(ServiceDataManager "$ORIGIN")
  sdm_search_path(commsservice_host "$ORIGIN/..")
  sdm_search_path(sdm "$ORIGIN/${sdm_libraries}")
endif()
