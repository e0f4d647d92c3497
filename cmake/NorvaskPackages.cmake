# cpack: the Debian packages libnorvask1642 and libnorvask-dev, which are the components runtime
# and development, and the source archive. "./dev package" makes all three.

set(norvask_runtime_package libnorvask1642)
set(norvask_development_package libnorvask-dev)

set(CPACK_PACKAGE_NAME norvask)
set(CPACK_PACKAGE_VENDOR "The Norvask authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "XML library: load, query, edit and save documents")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_THREADS 1)

# Who passes packages on says who answers for them: -DNORVASK_PACKAGE_CONTACT="Name <address>".
set(NORVASK_PACKAGE_CONTACT "The Norvask authors <norvask@localhost>"
    CACHE STRING "The maintainer that packages name")
set(CPACK_PACKAGE_CONTACT ${NORVASK_PACKAGE_CONTACT})

# ---- the source archive: everything but what .gitignore names, anchored to this folder, because
# the sources may lie below a folder of such a name

string(REGEX REPLACE "([][+.*()^$?|\\\\])" "\\\\\\1" norvask_here ${PROJECT_SOURCE_DIR})
string(REGEX REPLACE "([][+.*()^$?|\\\\])" "\\\\\\1" norvask_build_here ${PROJECT_BINARY_DIR})
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME norvask-${PROJECT_VERSION})
set(CPACK_SOURCE_IGNORE_FILES
    ^${norvask_here}/\\.git/
    ^${norvask_here}/\\.git$
    ^${norvask_here}/build/
    ^${norvask_here}/compile_commands\\.json$
    ^${norvask_here}/CMakeUserPresets\\.json$
    ^${norvask_build_here}/
    /\\.cache/
    /__pycache__/)

# ---- the Debian packages, of a shared library and with Debian's tools

find_program(NORVASK_DPKG_DEB dpkg-deb DOC "Makes Debian packages")
mark_as_advanced(NORVASK_DPKG_DEB)
if(NOT BUILD_SHARED_LIBS OR NOT NORVASK_DPKG_DEB)
    set(CPACK_GENERATOR TGZ)
    include(CPack)
    return()
endif()

set(CPACK_GENERATOR DEB)  # which installs below /usr
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Lower than any revision of a distribution's own package of the same version.
set(CPACK_DEBIAN_PACKAGE_RELEASE 0local1)
set(CPACK_DEBIAN_PACKAGE_SOURCE norvask)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/packages/finish.cmake)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${norvask_runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/packages/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Norvask loads XML documents into a tree, lets programs query and edit it with
typed values, and saves it again. Documents larger than memory it reads as
callbacks and writes element by element.
.
This package holds the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${norvask_development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Norvask loads XML documents into a tree, lets programs query and edit it with
typed values, and saves it again. Documents larger than memory it reads as
callbacks and writes element by element.
.
This package holds what is needed to build programs with it: headers, a CMake
package, a pkg-config file, examples and the documentation.")

# What only the packages have. EXCLUDE_FROM_ALL keeps it out of a plain "cmake --install".
function(norvask_package_file component source folder name)
    install(FILES ${source} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/${folder} RENAME ${name}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(norvask_package_files ${PROJECT_BINARY_DIR}/packages)
# The same sources give the same date, or packages for two architectures could not be installed
# side by side.
file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md norvask_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(READ ${PROJECT_SOURCE_DIR}/LICENSE norvask_licence)
string(REGEX MATCH "Copyright[^\n]*" norvask_copyright "${norvask_licence}")
string(REGEX REPLACE "^.*Copyright \\(c\\) [^\n]*\n+" "" norvask_licence "${norvask_licence}")
string(REGEX REPLACE "^Copyright \\(c\\) " "" norvask_copyright "${norvask_copyright}")
string(STRIP "${norvask_licence}" norvask_licence)
string(REPLACE "\n\n" "\n.\n" norvask_licence "${norvask_licence}")
string(REPLACE "\n" "\n " norvask_licence "${norvask_licence}")
configure_file(cmake/packages/copyright.in ${norvask_package_files}/copyright @ONLY)
configure_file(cmake/packages/changelog.in ${norvask_package_files}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${norvask_package_files}/changelog COPYONLY)
foreach(file IN ITEMS changelog changelog.Debian)
    # -n: no name and no time, so that the same sources give the same bytes.
    execute_process(COMMAND gzip -9nf ${norvask_package_files}/${file}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(package ${norvask_${component}_package})
    foreach(file IN ITEMS copyright changelog.gz changelog.Debian.gz)
        norvask_package_file(${component} ${norvask_package_files}/${file} doc/${package} ${file})
    endforeach()
    norvask_package_file(${component} ${PROJECT_SOURCE_DIR}/cmake/packages/${package}.overrides
        lintian/overrides ${package})
endforeach()

set(norvask_doc_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${norvask_development_package})
install(FILES README.md DESTINATION ${norvask_doc_folder}
    COMPONENT development EXCLUDE_FROM_ALL)
# Not what runs the examples as tests.
install(DIRECTORY examples DESTINATION ${norvask_doc_folder}
    COMPONENT development EXCLUDE_FROM_ALL
    PATTERN expected EXCLUDE
    PATTERN CMakeLists.txt EXCLUDE
    PATTERN "*.sh" EXCLUDE)
# The manual, if it has been built.
set(NORVASK_MANUAL ${PROJECT_SOURCE_DIR}/build/docs/html
    CACHE PATH "Where the built manual lies, for the development package")
install(DIRECTORY ${NORVASK_MANUAL} DESTINATION ${norvask_doc_folder}
    COMPONENT development EXCLUDE_FROM_ALL OPTIONAL)

include(CPack)
