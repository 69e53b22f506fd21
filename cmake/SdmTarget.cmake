# What every target of this project is compiled with.
function(sdm_target name)
  target_compile_features(${name} PUBLIC cxx_std_17)
  set_target_properties(${name} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${name} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Wformat=2 -Werror)
  if(SDM_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${name} PUBLIC -fsanitize=address,undefined)
  else()
    target_link_options(${name} PRIVATE -Wl,-z,defs)
  endif()
endfunction()
