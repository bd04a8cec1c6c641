# The accuracy meter. MPC, the judge of complex functions, is looked for when the meter runs.
orx_find_library(ORX_MPFR mpfr)
orx_find_library(ORX_GMP gmp)
find_package(Threads REQUIRED)
if(ORX_MPFR AND ORX_GMP)
  add_executable(orx_accuracy accuracy/accuracy.cpp accuracy/arguments.cpp accuracy/exhaustive.cpp
    accuracy/formulas.cpp accuracy/judge.cpp accuracy/measure.cpp)
  target_compile_options(orx_accuracy PRIVATE ${ORX_AVX_FLAGS})
  target_link_libraries(orx_accuracy PRIVATE orx_functions ${ORX_MPFR} ${ORX_GMP} ${CMAKE_DL_LIBS} Threads::Threads)
else()
  message(STATUS "MPFR is missing: no accuracy meter")
endif()
