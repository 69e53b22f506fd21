# The platform of a device, given as a folder: include/ with the framework's own headers in place of the contract's, and
# lib/ with the libraries that implement them.
set(SDM_PLATFORM_LIBRARIES framework CACHE STRING
  "The libraries of the framework: names (framework for libframework.so) or paths, in the order they are linked in")

# What the library itself includes; services and agents may need more.
foreach(header ClientUtils CriticalSection DASUtilsStrings DasCrypt DataAccessServiceIfc Executable LocalMgmtIfc
               ManageableData PhysicalInterfaceServiceIfc RejectReasonsStrings SecurityLogServiceIfc Semaphore
               SvcRTEContext ValidatorIfc logAppUni)
  if(NOT EXISTS "${SDM_PLATFORM}/include/${header}.h")
    list(APPEND sdm_missing "include/${header}.h")
  endif()
endforeach()

set(sdm_framework_libraries "")
foreach(library IN LISTS SDM_PLATFORM_LIBRARIES)
  if(NOT IS_ABSOLUTE "${library}")
    unset(sdm_found CACHE)
    find_library(sdm_found "${library}" PATHS "${SDM_PLATFORM}/lib" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    if(sdm_found)
      set(library "${sdm_found}")
    else()
      list(APPEND sdm_missing "lib/lib${library}.so")
    endif()
    unset(sdm_found CACHE)
  endif()
  list(APPEND sdm_framework_libraries "${library}")
endforeach()

if(sdm_missing)
  list(JOIN sdm_missing ", " sdm_missing)
  message(FATAL_ERROR "The framework in SDM_PLATFORM=${SDM_PLATFORM} lacks: ${sdm_missing}")
endif()

# As system headers: warnings in them are the framework's own affair.
add_library(sdm_platform INTERFACE)
target_include_directories(sdm_platform SYSTEM INTERFACE "$<BUILD_INTERFACE:${SDM_PLATFORM}/include>")
