# Programs about the random generators.
add_executable(raw_words kob/raw_words.cpp)
target_link_libraries(raw_words PRIVATE orx_g9 orx_serv)
