# Programs about the random generators.
add_executable(raw_words kob/raw_words.cpp)
target_link_libraries(raw_words PRIVATE orx_g9 orx_serv)

# Those that find and check the parameter tables are built by name alone, since the tables are in the tree. They are
# for x86_64; the search multiplies polynomials over GF(2) without carry, the check of its rows is done by NTL
# (libntl-dev), that of the Wichmann-Hill rows by PARI (pari-gp).
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_executable(wh_search EXCLUDE_FROM_ALL kob/wh_search.cpp)
  add_executable(mt2203_search EXCLUDE_FROM_ALL kob/mt2203_search.cpp)
  target_compile_options(mt2203_search PRIVATE -mavx -mpclmul)
  add_executable(mt2203_verify EXCLUDE_FROM_ALL kob/mt2203_verify.cpp)
  target_link_libraries(mt2203_verify PRIVATE ntl gmp)
endif()
