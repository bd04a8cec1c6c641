# Words of a generator in a pipe, for test batteries.
add_executable(raw_words kob/raw_words.cpp)
target_link_libraries(raw_words PRIVATE orx_g9 orx_serv)
target_compile_options(raw_words PRIVATE -msse2)

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
