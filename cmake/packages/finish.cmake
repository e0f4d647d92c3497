# CPack runs this when the Debian packages are made. It mends in them what CPack 3.24 cannot be
# told: that ldconfig is run by the trigger and needs no scripts, and that packages for several
# architectures can be installed side by side.

if(NOT CPACK_GENERATOR STREQUAL DEB)
    return()
endif()

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(work ${package}.unpacked)
    file(REMOVE_RECURSE ${work})
    run(dpkg-deb --raw-extract ${package} ${work})
    file(REMOVE ${work}/DEBIAN/postinst ${work}/DEBIAN/postrm)
    file(READ ${work}/DEBIAN/control control)
    string(STRIP "${control}" control)
    file(WRITE ${work}/DEBIAN/control "${control}\nMulti-Arch: same\n")
    run(dpkg-deb --root-owner-group -Zxz --build ${work} ${package})
    file(REMOVE_RECURSE ${work})
endforeach()
