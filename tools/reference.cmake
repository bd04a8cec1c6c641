# The tables of documents and the public header that are made from the list, the descriptors, and what was measured.
add_executable(orx_reference reference/reference.cpp)
target_compile_options(orx_reference PRIVATE -msse2 -O1)
target_link_libraries(orx_reference PRIVATE orx_functions)
