# Programs that find and check the generators' parameter tables. They are not built by default: the tables are in
# the tree, and the programs want x86_64, the carry-less multiplication of GF(2) polynomials and, for the check, NTL.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_executable(wh_search EXCLUDE_FROM_ALL kob/wh_search.cpp)
  add_executable(mt2203_search EXCLUDE_FROM_ALL kob/mt2203_search.cpp)
  target_compile_options(mt2203_search PRIVATE -mavx -mpclmul)
endif()

# Words of a generator in a pipe, for test batteries.
add_executable(raw_words kob/raw_words.cpp)
target_link_libraries(raw_words PRIVATE orx_g9 orx_serv)
