# What all layers share: the language, the flags of the two targets, and three helpers.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)  # -O3, unless the user's flags say otherwise
endif()

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(ORX_ARCH i386-linux-gnu)
else()
  set(ORX_ARCH x86_64-linux-gnu)
endif()
list(PREPEND CMAKE_PREFIX_PATH /usr/lib/${ORX_ARCH}/cmake)
set(CMAKE_LIBRARY_ARCHITECTURE ${ORX_ARCH})
# The package named first wins; a library is looked for in its own architecture's directory alone.
function(orx_find_library var name)
  find_library(${var} ${name} PATHS /usr/lib/${ORX_ARCH} NO_DEFAULT_PATH ${ARGN})
endfunction()

add_compile_options(-Wall -Wextra -ffp-contract=off)
add_compile_options($<$<STREQUAL:${ORX_ARCH},i386-linux-gnu>:-mfpmath=sse>)
set(ORX_SANITIZE "" CACHE STRING "sanitizers to build with: address,undefined or thread")
if(ORX_SANITIZE)
  add_compile_options(-fsanitize=${ORX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ORX_SANITIZE})
  # A kernel that is instrumented and optimized compiles for minutes, one that is only instrumented for a second; of
  # tests, whose time is spent in the library, most.
  set(ORX_KERNEL_OPTIMIZATION -O0)
  set(ORX_TEST_OPTIMIZATION -O0)
else()
  set(ORX_TEST_OPTIMIZATION -O1)
endif()

orx_find_library(ORX_BLAS openblas REQUIRED)

# Flags of everything that goes into liborx_g9.so. Nothing throws, and a kernel's data must not be
# reached through symbols that another library could take over.
set(ORX_KERNEL_FLAGS -fvisibility=hidden -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-math-errno
    -fno-unwind-tables -fno-asynchronous-unwind-tables -ftls-model=initial-exec)
set(ORX_AVX_FLAGS -mavx -mno-avx2 -mno-fma -mpopcnt)
set(ORX_SSE3_FLAGS -mno-avx -msse3 -mno-ssse3)
# Of members of the family to come, on trial.
set(ORX_AVX2_FLAGS -mavx2 -mfma -mno-avx512f)
set(ORX_AVX512_FLAGS -mavx2 -mfma -mavx512f -mavx512dq -mavx512vl -mavx512bw -mprefer-vector-width=512
    -Wno-uninitialized)  # GCC 12 takes its own intrinsics for users of uninitialized variables

option(ORX_WARNINGS_AS_ERRORS "of the compiler about library code" OFF)

# One layer of liborx_g9.so: an object library of all .cpp files below the directories SOURCES. It sees the public
# headers, the ground floor, and what is below the directories INCLUDES: its own rooms and those of the layers
# that it stands on.
function(orx_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;INCLUDES" ${ARGN})
  list(TRANSFORM LAYER_SOURCES APPEND /*.cpp OUTPUT_VARIABLE patterns)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${patterns})
  list(FILTER sources EXCLUDE REGEX /descriptor\\.cpp$)  # for the tools alone (tools/functions)
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/include
    ${PROJECT_SOURCE_DIR}/base ${LAYER_INCLUDES})
  target_compile_options(${name} PRIVATE -Wconversion -Wshadow ${ORX_KERNEL_FLAGS})
  if(NOT ORX_SANITIZE)  # instrumented code looks strange to the compiler itself
    set_target_properties(${name} PROPERTIES COMPILE_WARNING_AS_ERROR ${ORX_WARNINGS_AS_ERRORS})
  endif()
endfunction()
