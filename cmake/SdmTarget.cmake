# What every target of this project is compiled with.

# Programs are linked so that they may lie anywhere in memory, whatever the compiler's own default is.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Mistakes that input could make use of end the process instead: overrun buffers on the stack and in calls of the C library,
# overwritten addresses of functions, code on the stack. Sanitizers have their own ways and go without; so does the compiling
# of daily work, which is for the debugger. The C library checks only where the compiler optimises.
function(sdm_harden name)
  target_compile_options(${name} PRIVATE
    $<$<NOT:$<CONFIG:Debug>>:-fstack-protector-strong>
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
  target_link_options(${name} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,defs)
endfunction()

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
  # Files of more than 2 GiB, on devices of 32 bits as well.
  target_compile_definitions(${name} PRIVATE _FILE_OFFSET_BITS=64)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # What is no narrowing with 64 bits may be one here, and what may stand anywhere in memory there may not here.
    target_compile_options(${name} PRIVATE -Warith-conversion -Wcast-align=strict)
  endif()
  if(SDM_FUZZ)
    # Seen by the fuzzer, under the sanitizers, with counters for the lines that were reached.
    set(watched -fsanitize=address,undefined -fprofile-instr-generate)
    target_compile_options(${name} PRIVATE ${watched} -fsanitize=fuzzer-no-link -fno-sanitize-recover=all
      -fno-omit-frame-pointer -fcoverage-mapping)
    target_link_options(${name} PUBLIC ${watched})
  elseif(SDM_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${name} PUBLIC -fsanitize=address,undefined)
  elseif(SDM_SANITIZE_THREADS)
    target_compile_options(${name} PRIVATE -fsanitize=thread -fno-omit-frame-pointer -O1)
    target_link_options(${name} PUBLIC -fsanitize=thread)
  else()
    sdm_harden(${name})
  endif()
endfunction()

# What a lock guards is said in the code; where clang compiles it, touching that without the lock stops the build.
function(sdm_check_locks name)
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
endfunction()

# Reads the headers that most files of the target include once for all of them. Not in every build: a file has to include
# what it uses, and one that forgets is noticed where each file is compiled alone.
option(SDM_PRECOMPILE "Precompile the headers of the program and of large tests" ON)
function(sdm_precompile name)
  if(SDM_PRECOMPILE)
    target_precompile_headers(${name} PRIVATE ${ARGN})
  endif()
endfunction()
