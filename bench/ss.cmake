# The peers are compiled with the same flags as the library's own code.
function(orx_ss_bench name source)
  orx_bench(${name} ${source} orx_functions ${ARGN})
  target_compile_options(${name} PRIVATE ${ORX_AVX_FLAGS})
endfunction()

orx_ss_bench(bench_ss_quantiles ss/quantiles.cpp)
orx_ss_bench(bench_ss_robust ss/robust.cpp ${ORX_BLAS})
# Moments beside GSL, which is there for the reference target only.
orx_find_library(ORX_GSL gsl)
if(ORX_GSL)
  orx_ss_bench(bench_ss_basic ss/basic.cpp ${ORX_BLAS} ${ORX_GSL})
endif()
# Headers alone.
find_path(ORX_BOOST boost/accumulators/accumulators.hpp)
if(ORX_BOOST)
  orx_ss_bench(bench_ss_peers ss/peers.cpp)
endif()
