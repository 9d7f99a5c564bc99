# `make package`: a Debian package of the editor and korvex-cli, made by CPack
# from the install rules (the editor's desktop files and bundled data are in
# desktop_install.cmake). Its dependencies come from dpkg-shlibdeps, so they
# name the Qt and C library packages the binaries were linked against.
include(GNUInstallDirs)

install(TARGETS korvex-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The manual pages, with the version filled in and compressed as Debian keeps
# them (-n: no name or time stamp, so two builds give the same bytes).
set(KORVEX_MAN_PAGES korvex-cli.1)
if(KORVEX_GUI)
  list(APPEND KORVEX_MAN_PAGES korvex.1)
endif()
find_program(KORVEX_GZIP gzip)
set(KORVEX_MAN_OUTPUTS)
foreach(page ${KORVEX_MAN_PAGES})
  configure_file(${PROJECT_SOURCE_DIR}/data/man/${page}.in ${CMAKE_BINARY_DIR}/man/${page} @ONLY)
  if(KORVEX_GZIP)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/man/${page}.gz
                       COMMAND ${KORVEX_GZIP} -9nf -k ${CMAKE_BINARY_DIR}/man/${page}
                       DEPENDS ${CMAKE_BINARY_DIR}/man/${page})
    list(APPEND KORVEX_MAN_OUTPUTS ${CMAKE_BINARY_DIR}/man/${page}.gz)
  else()
    list(APPEND KORVEX_MAN_OUTPUTS ${CMAKE_BINARY_DIR}/man/${page})
  endif()
endforeach()
add_custom_target(korvex_man_pages ALL DEPENDS ${KORVEX_MAN_OUTPUTS})
install(FILES ${KORVEX_MAN_OUTPUTS} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvex)
set(CPACK_PACKAGE_VENDOR Halden)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor for Garmin TYP files")
set(CPACK_PACKAGE_DESCRIPTION
    "Korvex opens, edits and writes the TYP files that tell Garmin devices and map\n\
programs how to draw the points, lines and polygons of a custom map: bitmaps,\n\
colours, labels and draw order, in a window (korvex) or in build scripts\n\
(korvex-cli).")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Korvex developers <korvex@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Installs through DESTDIR, so the install rules see a packager and leave the
# MIME and menu caches to the triggers of the system that installs the package.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
