# The list of vector kernels in a form that programs can walk, and the accuracy meter.

# Bounds and ranges stand at the end of each kernel file; they are collected from there.
file(GLOB_RECURSE kernel_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tef/_src/tef_core/*.cpp)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${generated})
add_custom_command(OUTPUT ${generated}/kernel_lines.inc
  COMMAND grep -hE "^ORX_[A-Z_]*KERNEL\\(" ${kernel_sources} > ${generated}/kernel_lines.inc
  DEPENDS ${kernel_sources} VERBATIM)

add_library(orx_kernel_list STATIC accuracy/kernel_list.cpp ${generated}/kernel_lines.inc)
target_include_directories(orx_kernel_list PRIVATE ${generated} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/accuracy)
target_compile_options(orx_kernel_list PRIVATE -msse2)
target_link_libraries(orx_kernel_list PUBLIC orx_g9 orx_serv)

orx_find_library(ORX_MPFR mpfr)
orx_find_library(ORX_GMP gmp)
find_package(Threads REQUIRED)
if(ORX_MPFR AND ORX_GMP)
  add_executable(orx_accuracy accuracy/accuracy.cpp accuracy/arguments.cpp accuracy/exhaustive.cpp
    accuracy/judge.cpp accuracy/measure.cpp)
  target_compile_options(orx_accuracy PRIVATE ${ORX_AVX_FLAGS})
  target_link_libraries(orx_accuracy PRIVATE orx_kernel_list ${ORX_MPFR} ${ORX_GMP} Threads::Threads)
else()
  message(STATUS "MPFR is missing: no accuracy meter")
endif()
