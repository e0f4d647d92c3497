# cmake --install: library, headers, CMake package, pkg-config file, licence.

include(CMakePackageConfigHelpers)

set(norvask_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/norvask)

install(TARGETS norvask EXPORT norvaskTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/norvask
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")

install(EXPORT norvaskTargets NAMESPACE norvask:: DESTINATION ${norvask_package_dir})

configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/norvaskConfig.cmake.in
    ${PROJECT_BINARY_DIR}/norvaskConfig.cmake
    INSTALL_DESTINATION ${norvask_package_dir})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/norvaskConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/norvaskConfig.cmake
    ${PROJECT_BINARY_DIR}/norvaskConfigVersion.cmake
    DESTINATION ${norvask_package_dir})

# The .pc file finds its prefix from where it lies, so an installed tree can be moved.
file(RELATIVE_PATH norvask_pc_to_prefix
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" norvask_pc_to_prefix ${norvask_pc_to_prefix})
file(RELATIVE_PATH norvask_prefix_to_lib
    ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH norvask_prefix_to_include
    ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
get_target_property(norvask_library_name norvask OUTPUT_NAME)
configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/norvask.pc.in
    ${PROJECT_BINARY_DIR}/norvask.pc
    @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvask.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# CMAKE_INSTALL_DOCDIR would name the outer project when Norvask is a subdirectory of one.
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/norvask)
