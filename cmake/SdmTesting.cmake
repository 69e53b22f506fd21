# GoogleTest, and how tests start programs of this build.
include(GoogleTest)

if(CMAKE_CROSSCOMPILING)
  # Debian packages it built for this machine only, and as source for all others.
  enable_language(C)
  add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()

# Sets `result` to the path of a file that runs the program when it is started: the program itself where this machine can
# run it, otherwise a script beside it that starts it in the emulator.
function(sdm_startable result target)
  if(NOT CMAKE_CROSSCOMPILING)
    set(${result} "$<TARGET_FILE:${target}>" PARENT_SCOPE)
    return()
  endif()
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "' '" emulator)
  set(script "${CMAKE_CURRENT_BINARY_DIR}/start-${target}")
  file(GENERATE OUTPUT "${script}"
    CONTENT "#!/bin/sh\nexec '${emulator}' '$<TARGET_FILE:${target}>' \"$@\"\n"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(${result} "${script}" PARENT_SCOPE)
endfunction()
