orx_bench(bench_kob_twisters kob/twisters.cpp)
#target_compile_options(bench_kob_twisters PRIVATE ${ORX_AVX_FLAGS})  # for the peer too
