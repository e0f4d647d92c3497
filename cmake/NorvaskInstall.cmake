# cmake --install: library, headers, CMake package, pkg-config file, licence.
#
# The components are the Debian packages: "runtime" is what a program needs that was built with
# Norvask, "development" what is needed to build one. Every install() names one of them, except
# for the licence, for which Debian packages have their own form (NorvaskPackages.cmake).

include(CMakePackageConfigHelpers)

set(norvask_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/norvask)

install(TARGETS norvask EXPORT norvaskTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/norvask
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")

install(EXPORT norvaskTargets NAMESPACE norvask::
    DESTINATION ${norvask_package_dir} COMPONENT development)

# A static library leaves linking the parser to its clients. They get it by its library's name,
# not by its headers; norvaskConfig.cmake looks for the version that Norvask was built with.
if(BUILD_SHARED_LIBS)
    set(norvask_needs_parser OFF)
    set(norvask_pc_requires_private "")
else()
    set(norvask_needs_parser ON)
    string(REGEX MATCH "^[0-9]+\\.[0-9]+" norvask_parser_version "${XercesC_VERSION}")
    set(norvask_pc_requires_private "Requires.private: xerces-c >= ${norvask_parser_version}\n")
endif()

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
    DESTINATION ${norvask_package_dir} COMPONENT development)

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
install(FILES ${PROJECT_BINARY_DIR}/norvask.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# gdb looks for the views of a library below share/gdb/auto-load, under the library's full path.
# While a package is made the prefix is a folder of the build; what is in it goes below /usr.
if(BUILD_SHARED_LIBS)
    install(CODE "
        set(norvask_views_dir \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\")
        if(IS_ABSOLUTE \"${CMAKE_INSTALL_LIBDIR}\")
            set(norvask_views_dir \"${CMAKE_INSTALL_FULL_LIBDIR}\")
        elseif(norvask_views_dir MATCHES \"/_CPack_Packages/\")
            set(norvask_views_dir \"/usr/${CMAKE_INSTALL_LIBDIR}\")
        endif()"
        COMPONENT development)
    set(norvask_file ${CMAKE_SHARED_LIBRARY_PREFIX}${norvask_library_name})
    string(APPEND norvask_file ${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION})
    install(FILES ${PROJECT_SOURCE_DIR}/gdb/norvask_gdb.py
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/gdb/auto-load\${norvask_views_dir}"
        RENAME ${norvask_file}-gdb.py
        COMPONENT development)
else()
    install(FILES ${PROJECT_SOURCE_DIR}/gdb/norvask_gdb.py
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/norvask
        COMPONENT development)
endif()

# CMAKE_INSTALL_DOCDIR would name the outer project when Norvask is a subdirectory of one.
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/norvask COMPONENT licence)
