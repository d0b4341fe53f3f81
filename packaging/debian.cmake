# Run by CPack on the tree that becomes the package: what Debian wants beyond an installation.
set(share "${CPACK_TEMPORARY_DIRECTORY}/usr/share")
configure_file("${CPACK_KAV_CHANGELOG}" "${share}/doc/kavsetup/changelog.Debian" COPYONLY)
file(GLOB pages "${share}/man/man*/*.[0-9]")
execute_process(COMMAND gzip -9n ${pages} "${share}/doc/kavsetup/changelog" "${share}/doc/kavsetup/changelog.Debian"
                COMMAND_ERROR_IS_FATAL ANY)
