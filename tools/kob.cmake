# Words of a generator in a pipe, for test batteries, and a short battery of our own.
add_library(kob_battery STATIC kob/split_streams.cpp kob/statistical_tests.cpp)
target_include_directories(kob_battery PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/kob)
target_compile_options(kob_battery PRIVATE -msse2)
target_link_libraries(kob_battery PUBLIC orx_g9 orx_serv)
foreach(program raw_words short_battery)
  add_executable(${program} kob/${program}.cpp)
  target_compile_options(${program} PRIVATE -msse2)
  target_link_libraries(${program} PRIVATE kob_battery)
endforeach()

# Programs that find and check the generators' parameter tables. The tables are in the tree, so they are built by
# name alone, and for x86_64: the search multiplies polynomials over GF(2) without carry, the check of its rows wants
# NTL (libntl-dev). That of the Wichmann-Hill rows, wh_verify.gp, is for PARI (pari-gp).
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_executable(wh_search EXCLUDE_FROM_ALL kob/wh_search.cpp)
  add_executable(mt2203_search EXCLUDE_FROM_ALL kob/mt2203_search.cpp)
  target_compile_options(mt2203_search PRIVATE -mavx -mpclmul)
  add_executable(mt2203_verify EXCLUDE_FROM_ALL kob/mt2203_verify.cpp)
  target_link_libraries(mt2203_verify PRIVATE ntl gmp)
endif()

# The laws of the distributions, by GSL's distribution functions where they are there.
orx_find_library(ORX_GSL gsl)
if(ORX_GSL)
  orx_find_library(ORX_GSLCBLAS gslcblas)
  add_executable(distributions EXCLUDE_FROM_ALL kob/distributions.cpp ${PROJECT_SOURCE_DIR}/tests/distributions/laws.cpp)
  target_include_directories(distributions PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(distributions PRIVATE -msse2)
  target_link_libraries(distributions PRIVATE orx_g9 orx_serv ${ORX_GSL} ${ORX_GSLCBLAS})
endif()
