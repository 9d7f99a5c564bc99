# Installs the editor so that a desktop offers it for TYP files: the program,
# its menu entry, the MIME type of *.typ (by name and by the "GARMIN TYP"
# signature) and its icon. Included by the top-level CMakeLists after the
# korvex target exists.
include(GNUInstallDirs)

install(TARGETS korvex RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/korvex.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/korvex-typ.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/korvex.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
# The bundled language files, for the Language menu.
if(EXISTS ${PROJECT_SOURCE_DIR}/data/languages)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/languages/
          DESTINATION ${CMAKE_INSTALL_DATADIR}/korvex/languages
          FILES_MATCHING PATTERN "*.lan")
endif()

# The palettes of Colours > Convert to Black & White / 256 / 64 / 16.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/pal/ DESTINATION ${CMAKE_INSTALL_DATADIR}/korvex/pal
        FILES_MATCHING PATTERN "*.tpal")

# The map preview's Town scene.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/preview/ DESTINATION ${CMAKE_INSTALL_DATADIR}/korvex/preview
        FILES_MATCHING PATTERN "*.txt")

# The table from theme style names to Garmin types, for Open TXT/KMTF.
install(FILES ${PROJECT_SOURCE_DIR}/data/themes/tdat DESTINATION ${CMAKE_INSTALL_DATADIR}/korvex/themes)

# The desktop reads new MIME types and menu entries from caches. A packager
# (DESTDIR set) leaves them to the package's triggers; a plain install
# refreshes them when the tools are there.
option(KORVEX_UPDATE_DESKTOP_CACHES "Refresh the MIME and menu caches after install" ON)
if(KORVEX_UPDATE_DESKTOP_CACHES)
  install(CODE [[
    if("$ENV{DESTDIR}" STREQUAL "")
      find_program(KORVEX_UPDATE_MIME update-mime-database)
      find_program(KORVEX_UPDATE_DESKTOP update-desktop-database)
      if(KORVEX_UPDATE_MIME)
        execute_process(COMMAND ${KORVEX_UPDATE_MIME} "${CMAKE_INSTALL_PREFIX}/share/mime")
      endif()
      if(KORVEX_UPDATE_DESKTOP)
        execute_process(COMMAND ${KORVEX_UPDATE_DESKTOP} "${CMAKE_INSTALL_PREFIX}/share/applications")
      endif()
    endif()
  ]])
endif()
