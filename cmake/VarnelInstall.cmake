# The installed tree is the application bundle: the program finds its desktop entry and its resources relative to
# itself. The package is made by CPack.

set(VARNEL_ID com.varnel.menubar)

install(TARGETS varnel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES packaging/${VARNEL_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/${VARNEL_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/icons/plain.svg RENAME ${VARNEL_ID}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(DIRECTORY packaging/Assets DESTINATION ${CMAKE_INSTALL_DATADIR}/varnel)
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
configure_file(packaging/${VARNEL_ID}.service.in ${VARNEL_ID}.service @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${VARNEL_ID}.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnel)
set(CPACK_PACKAGE_VENDOR "The Varnel developers")
set(CPACK_PACKAGE_CONTACT "The Varnel developers <varnel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "status-bar companion for a home solar installation")
set(CPACK_PACKAGE_DESCRIPTION "Signs in to the SEMS solar-monitoring service and shows what the
household's station produces in the status area, with a chart of today and
notifications.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "curl, libqt6svg6")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnome-keyring | kwalletmanager, notification-daemon")
include(CPack)
