# The peers are compiled with the same flags as the library's own code.
orx_bench(bench_radix_sort primitives/radix_sort.cpp)
target_compile_options(bench_radix_sort PRIVATE ${ORX_AVX_FLAGS})
