# What an installed Tidemark consists of, and the package made of it. Texts and help are inside the program.
include(GNUInstallDirs)

set(APPLICATION_ID com.velkor.Tidemark)
install(TARGETS tidemark RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES Resources/desktop/${APPLICATION_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES Resources/desktop/${APPLICATION_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES Resources/icons/${APPLICATION_ID}.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 24 32 48 64 128 256 512)
    install(FILES Resources/icons/${APPLICATION_ID}-${size}.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
        RENAME ${APPLICATION_ID}.png)
endforeach()
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tidemark RENAME copyright)

# Manual pages are compressed wherever the tool for it is.
set(MANUAL_PAGE ${PROJECT_SOURCE_DIR}/Resources/desktop/tidemark.1)
find_program(GZIP gzip)
if(GZIP)
    set(COMPRESSED_PAGE ${CMAKE_CURRENT_BINARY_DIR}/tidemark.1.gz)
    add_custom_command(OUTPUT ${COMPRESSED_PAGE}
        COMMAND ${GZIP} -9nc ${MANUAL_PAGE} > ${COMPRESSED_PAGE}
        DEPENDS ${MANUAL_PAGE} VERBATIM)
    add_custom_target(manual_page ALL DEPENDS ${COMPRESSED_PAGE})
    set(MANUAL_PAGE ${COMPRESSED_PAGE})
endif()
install(FILES ${MANUAL_PAGE} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tidemark)
set(CPACK_PACKAGE_VENDOR Velkor)
set(CPACK_PACKAGE_CONTACT "Velkor <support@velkor.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "find text in many files at once and replace it in place")
set(CPACK_PACKAGE_DESCRIPTION
    "Tidemark finds text in many files at once, shows every line it found, and
replaces one match, some or all of them. Every file is read and rewritten in
its own encoding, with a backup beside it.")
set(CPACK_PACKAGE_HOMEPAGE_URL https://www.velkor.com/tidemark/)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the program uses without linking it: the database of file types; the toolkit's own translated texts,
# and its plug-in for the other display server.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland")
include(CPack)
