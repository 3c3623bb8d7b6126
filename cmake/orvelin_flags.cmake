# Flags shared by every target. Floating-point contraction is off everywhere:
# a fused multiply-add would round once where the evaluation rounds twice, and
# the search would no longer be the same to the last node on every machine.
add_library(orvelin_flags INTERFACE)
target_compile_features(orvelin_flags INTERFACE cxx_std_20)
target_compile_options(orvelin_flags INTERFACE
  -ffp-contract=off
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(ORVELIN_WERROR)
  target_compile_options(orvelin_flags INTERFACE -Werror)
endif()
if(ORVELIN_SANITIZE)
  target_compile_options(orvelin_flags INTERFACE
    -fsanitize=${ORVELIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvelin_flags INTERFACE -fsanitize=${ORVELIN_SANITIZE})
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")
set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT ORVELIN_SANITIZE)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT orvelin_lto OUTPUT orvelin_lto_output LANGUAGES CXX)
  if(orvelin_lto)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
    if(ORVELIN_BUILD_TESTS)
      # Both forms in one object: the engine is linked from the one, the tests from the other.
      add_compile_options($<$<CXX_COMPILER_ID:GNU>:-ffat-lto-objects>)
    endif()
  else()
    message(STATUS "Link-time optimisation is not available: ${orvelin_lto_output}")
  endif()
endif()
