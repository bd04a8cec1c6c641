# Install rules: the two libraries, the public headers, and what pkg-config and find_package need. What is
# installed holds no absolute path, so that the tree can be moved.
include(CMakePackageConfigHelpers)

set(ORX_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/orx)
set(ORX_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set_target_properties(orx_g9 PROPERTIES INSTALL_RPATH "$ORIGIN")  # the service library lies beside it
install(TARGETS orx_g9 orx_serv EXPORT orx-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/orx DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT orx-targets NAMESPACE orx:: DESTINATION ${ORX_INSTALL_CMAKEDIR})

configure_package_config_file(cmake/orx-config.cmake.in ${PROJECT_BINARY_DIR}/orx-config.cmake
  INSTALL_DESTINATION ${ORX_INSTALL_CMAKEDIR})
# Refuses consumers of the other word size, too.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orx-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orx-config.cmake ${PROJECT_BINARY_DIR}/orx-config-version.cmake
  DESTINATION ${ORX_INSTALL_CMAKEDIR})

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${ORX_INSTALL_PKGCONFIGDIR}
  OUTPUT_VARIABLE ORX_PKGCONFIG_TO_PREFIX)
configure_file(cmake/orx-g9.pc.in ${PROJECT_BINARY_DIR}/orx-g9.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orx-g9.pc DESTINATION ${ORX_INSTALL_PKGCONFIGDIR})

# Instrumented libraries are not for others to link, so a sanitized build has no installation to try.
if(ORX_TESTS AND NOT ORX_SANITIZE)
  add_subdirectory(tests/install)
endif()
