# Every vector kernel beside its peers.
orx_find_library(ORX_SLEEF sleef)
if(ORX_SLEEF)
  orx_bench(bench_tef tef/bench_tef.cpp orx_kernel_list ${ORX_SLEEF})
  target_sources(bench_tef PRIVATE tef/peers.cpp)
  target_compile_options(bench_tef PRIVATE ${ORX_AVX_FLAGS})
else()
  message(STATUS "SLEEF is missing: no benchmark of the vector functions")
endif()
