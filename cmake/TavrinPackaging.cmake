# What an installation holds besides the programs and libraries, and the Debian package
# of it all ("cpack -G DEB" in a build tree; scripts/package.sh from a clean clone).
#
# Installed: the manual pages (man1, man5), the bash completion, and in the document
# folder the README, the licence (as "copyright", where Debian looks for it) and the
# example files.

tavrin_relative_install_dir(TAVRIN_INSTALL_MANDIR "${CMAKE_INSTALL_MANDIR}")
tavrin_relative_install_dir(TAVRIN_INSTALL_DATAROOTDIR "${CMAKE_INSTALL_DATAROOTDIR}")
set(TAVRIN_INSTALL_DOCDIR "${TAVRIN_INSTALL_DATAROOTDIR}/doc/tavrin")

install(FILES doc/man/tavrin.1 doc/man/tavrin-bmcsim.1 doc/man/tavrin-dump2sdr.1
        DESTINATION ${TAVRIN_INSTALL_MANDIR}/man1)
install(FILES doc/man/tavrin-formats.5 DESTINATION ${TAVRIN_INSTALL_MANDIR}/man5)
install(FILES completion/tavrin DESTINATION ${TAVRIN_INSTALL_DATAROOTDIR}/bash-completion/completions)
install(FILES README.md DESTINATION ${TAVRIN_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${TAVRIN_INSTALL_DOCDIR} RENAME copyright)
install(DIRECTORY examples/ DESTINATION ${TAVRIN_INSTALL_DOCDIR}/examples)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tavrin developers")
set(CPACK_PACKAGE_CONTACT "The Tavrin developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "SDR records and FRU images between local files and an IPMI BMC")
set(CPACK_PACKAGE_DESCRIPTION
    "tavrin downloads SDR and FRU files to a server's baseboard management controller,
uploads its SDR repository and FRU devices to text files, verifies files against it,
tests files offline and updates single FRU fields in place. It reaches the BMC through
the OS IPMI driver, by direct KCS port I/O, or over the LAN through ipmitool.
The package holds the manual pages tavrin(1) and tavrin-formats(5), a bash completion,
example files, tavrin-dump2sdr, and tavrin-bmcsim, a simulated BMC for rehearsals.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The C and C++ run-time libraries, found by dpkg-shlibdeps; the route libraries are
# loaded by name at run time and come with the package. ipmitool serves the LAN route only.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS ipmitool)

include(CPack)
