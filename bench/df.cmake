# Data fitting beside GSL, which is there for the reference target only.
orx_find_library(ORX_GSL gsl)
if(ORX_GSL)
  orx_bench(bench_df df/fitting.cpp orx_functions ${ORX_GSL} ${ORX_BLAS})
  target_compile_options(bench_df PRIVATE ${ORX_AVX_FLAGS})
endif()
