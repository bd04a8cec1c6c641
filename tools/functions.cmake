# The vector functions as data: the list, and the descriptors that stand beside the kernels.
file(GLOB_RECURSE descriptors CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tef/_src/tef_core/*/descriptor.cpp)
add_library(orx_functions OBJECT functions/list.cpp functions/descriptor.cpp functions/sections.cpp ${descriptors})
target_include_directories(orx_functions PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} PRIVATE ${PROJECT_SOURCE_DIR}/tef/_src/tef_core)
target_compile_features(orx_functions PRIVATE cxx_std_20)  # for designated initialisers
target_compile_options(orx_functions PRIVATE -msse2 -O1)
target_link_libraries(orx_functions PUBLIC orx_g9 orx_serv)

# The same of the functions on trial (tef/CMakeLists.txt).
foreach(isa avx2 avx512)
  if(TARGET orx_tef_${isa})
    add_library(orx_functions_${isa} OBJECT $<TARGET_PROPERTY:orx_functions,SOURCES>)
    target_include_directories(orx_functions_${isa} BEFORE PUBLIC ${PROJECT_BINARY_DIR}/trial/${isa}
      ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR}/tef/_src/tef_core)
    target_compile_features(orx_functions_${isa} PRIVATE cxx_std_20)
    target_compile_options(orx_functions_${isa} PRIVATE -msse2 -O1)
    target_sources(orx_functions_${isa} INTERFACE ${PROJECT_SOURCE_DIR}/tests/support/has_instruction_set.cpp
      $<TARGET_OBJECTS:orx_tef_${isa}> $<TARGET_OBJECTS:orx_tef>)
    target_compile_definitions(orx_functions_${isa} INTERFACE ORX_TEST_ISA=${isa})
    target_link_libraries(orx_functions_${isa} PUBLIC orx_serv)
  endif()
endforeach()
