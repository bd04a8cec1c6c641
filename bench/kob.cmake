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

# The peers in other libraries, with the flags of our kernels, where the libraries are there.
orx_bench(bench_kob_quasi kob/quasi.cpp)
foreach(program bench_kob_streams bench_kob_quasi)  # they write their sections of docs/performance.md
  target_link_libraries(${program} PRIVATE orx_functions)
endforeach()
add_library(random_peers OBJECT kob/peers.cpp)
target_include_directories(random_peers PRIVATE ${PROJECT_SOURCE_DIR}/include)
target_compile_options(random_peers PRIVATE -fPIE ${ORX_AVX_FLAGS})
target_link_libraries(bench_kob_streams PRIVATE random_peers)
find_path(ORX_BOOST boost/random/mersenne_twister.hpp)
if(ORX_BOOST)
  target_compile_definitions(random_peers PRIVATE ORX_HAVE_BOOST)
endif()
orx_find_library(ORX_GSL gsl)
if(ORX_GSL)
  orx_find_library(ORX_GSLCBLAS gslcblas)
  foreach(program bench_kob_streams bench_kob_quasi)
    target_link_libraries(${program} PRIVATE ${ORX_GSL} ${ORX_GSLCBLAS})
  endforeach()
  target_compile_definitions(bench_kob_quasi PRIVATE ORX_HAVE_GSL)
  target_compile_definitions(random_peers PRIVATE ORX_HAVE_GSL)
endif()
