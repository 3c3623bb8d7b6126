# Flags shared by every target. Floating-point contraction is off everywhere:
# a fused multiply-add would round once where the evaluation rounds twice, and
# the search would no longer be the same to the last node on every machine.
add_library(orvelin_flags INTERFACE)
target_compile_features(orvelin_flags INTERFACE cxx_std_20)
target_compile_options(orvelin_flags INTERFACE
  -ffp-contract=off
  -Wall -Wextra -Wpedantic -Wconversion
  # Where files are put together clang warns of the names of a header which a file before it keeps.
  $<$<NOT:$<AND:$<BOOL:${ORVELIN_UNITY}>,$<CXX_COMPILER_ID:Clang>>>:-Wshadow>
  # In a text that is put before a temporary one g++ 12 sees copies that overlap (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "x86|AMD64")
  # As on x86-64, so that letters beyond ASCII are handled alike.
  target_compile_options(orvelin_flags INTERFACE -fsigned-char)
endif()
if(WIN32)
  # The time of the build, which the linker would write into each program, is nobody's concern.
  target_link_options(orvelin_flags INTERFACE "LINKER:--no-insert-timestamp")
endif()
if(ORVELIN_WERROR)
  target_compile_options(orvelin_flags INTERFACE -Werror)
endif()
if(ORVELIN_SANITIZE)
  target_compile_options(orvelin_flags INTERFACE
    -fsanitize=${ORVELIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvelin_flags INTERFACE -fsanitize=${ORVELIN_SANITIZE})
endif()

if(ORVELIN_PROFILE)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    message(STATUS "Profile guidance is for g++ only: a plain build is made")
  elseif(ORVELIN_PROFILE STREQUAL "generate")
    target_compile_options(orvelin_flags INTERFACE -fprofile-generate)
    target_link_options(orvelin_flags INTERFACE -fprofile-generate)
  else()
    # What the training did not reach is compiled as without a profile, not for size.
    target_compile_options(orvelin_flags INTERFACE
      -fprofile-use -fprofile-partial-training -Wno-missing-profile)
    target_link_options(orvelin_flags INTERFACE -fprofile-use -fprofile-partial-training)
  endif()
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")
if(EMSCRIPTEN)
  # One thread alone. What a page gives the module is in src/platform/wasm_imports.h.
  add_library(Threads::Threads INTERFACE IMPORTED)
  target_compile_options(orvelin_flags INTERFACE -fwasm-exceptions
    # Sizes have 32 bits here; what does not fit is refused where memory is asked for.
    -Wno-shorten-64-to-32 -Wno-sign-conversion)
  target_link_options(orvelin_flags INTERFACE -fwasm-exceptions)
else()
  set(THREADS_PREFER_PTHREAD_FLAG ON)
  find_package(Threads REQUIRED)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT ORVELIN_SANITIZE AND NOT EMSCRIPTEN
   AND NOT ORVELIN_PROFILE STREQUAL "generate")
  include(CheckIPOSupported)
  check_ipo_supported(RESULT orvelin_lto OUTPUT orvelin_lto_output LANGUAGES CXX)
  if(orvelin_lto)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
    if(ORVELIN_BUILD_TESTS OR ORVELIN_QUICK_TOOLS)
      # Both forms in one object: the engine is linked from the one, the tests and tools that are
      # built quickly from the other.
      add_compile_options($<$<CXX_COMPILER_ID:GNU>:-ffat-lto-objects>)
    endif()
  else()
    message(STATUS "Link-time optimisation is not available: ${orvelin_lto_output}")
  endif()
endif()

# Without being told, g++ would link from the form for link-time optimisation where there are both.
function(orvelin_link_plainly target)
  target_link_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-lto>)
endfunction()

# A compiler cache is used where there is one. What it has to be told of precompiled headers is told
# here; CCACHE_DISABLE=1 in the environment turns it off. A build with profile guidance does without:
# an object names the file that it counts into, and one from another build names another file.
find_program(ORVELIN_CCACHE ccache)
if(ORVELIN_CCACHE AND NOT ORVELIN_PROFILE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER
   AND NOT DEFINED ENV{CMAKE_CXX_COMPILER_LAUNCHER})
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros "${ORVELIN_CCACHE}")
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
    "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

# For a program some of whose own files are not optimised: of an inline function that stands in
# several files the first copy that is linked stays, and everything then calls that one.
function(orvelin_link_core_first target)
  target_link_options(${target} PRIVATE
    "LINKER:--whole-archive,$<TARGET_FILE:orvelin_core>,--no-whole-archive")
endfunction()
