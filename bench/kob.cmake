orx_bench(bench_kob_streams kob/streams.cpp)

# The peer, the C++ library's generator, once as a plain build has it and once with the flags of our kernels.
foreach(flavour plain avx)
  add_library(std_random_${flavour} OBJECT kob/std_random.cpp)
  target_compile_definitions(std_random_${flavour} PRIVATE FLAVOUR=${flavour})
  target_compile_options(std_random_${flavour} PRIVATE -fPIE)  # as a program's own sources have it
  target_link_libraries(bench_kob_streams PRIVATE std_random_${flavour})
endforeach()
target_compile_options(std_random_avx PRIVATE ${ORX_AVX_FLAGS})
if(ORX_ARCH STREQUAL i386-linux-gnu)
  target_compile_options(std_random_plain PRIVATE -mfpmath=387)  # the compiler's default there
endif()
target_compile_definitions(std_random_plain PRIVATE SEEDING_FACTOR=1812433253)
target_compile_definitions(std_random_avx PRIVATE SEEDING_FACTOR=1812433255)

orx_bench(bench_kob_quasi kob/quasi.cpp)
# The peer, where there is one.
orx_find_library(ORX_GSL gsl)
if(ORX_GSL)
  orx_find_library(ORX_GSLCBLAS gslcblas)
  target_link_libraries(bench_kob_quasi PRIVATE ${ORX_GSL} ${ORX_GSLCBLAS})
  target_compile_definitions(bench_kob_quasi PRIVATE ORX_HAVE_GSL)
endif()
