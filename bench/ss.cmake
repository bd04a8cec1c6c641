# The statistics beside GSL, which is there for the reference target only. The peers are compiled with the same flags
# as the library's own code.
orx_find_library(ORX_GSL gsl)
orx_find_library(ORX_GSLCBLAS gslcblas)
if(ORX_GSL)
  orx_bench(bench_ss_basic ss/basic.cpp ${ORX_BLAS} ${ORX_GSL})
  target_compile_options(bench_ss_basic PRIVATE ${ORX_AVX_FLAGS})
endif()
