# The vector functions as data: the list, and the descriptors that stand beside the kernels.
file(GLOB_RECURSE descriptors CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tef/_src/tef_core/*/descriptor.cpp)
add_library(orx_functions OBJECT functions/list.cpp functions/descriptor.cpp functions/sections.cpp ${descriptors})
target_include_directories(orx_functions PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_features(orx_functions PRIVATE cxx_std_20)  # for designated initialisers
target_compile_options(orx_functions PRIVATE -msse2 -O1)
target_link_libraries(orx_functions PUBLIC orx_g9 orx_serv)
