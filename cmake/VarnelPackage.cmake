# The installable package, made by CPack. packaging/check says what must hold for it.

set(CPACK_GENERATOR DEB)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/CPackTools.cmake)
set(CPACK_PACKAGE_NAME varnel)
set(CPACK_PACKAGE_VENDOR "The Varnel maintainers")
set(CPACK_PACKAGE_CONTACT "The Varnel maintainers <maintainers@varnel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "status-bar companion for a home solar installation")
set(CPACK_PACKAGE_DESCRIPTION "Signs in to the SEMS solar-monitoring service and shows what the
household's station produces in the status area, with a chart of today and
notifications.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/CPackTree.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${VARNEL_HOMEPAGE})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no library says: requests are made by curl, which trusts what ca-certificates lists; icons are SVG. Debian 13 has
# the plug-in for those in a package of its own, Debian 12 in the library's.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates, curl, qt6-svg-plugins | libqt6svg6 (<< 6.5)")
# A keyring for the password, a service for the notifications, and the command of the desktop entry's actions.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "gnome-keyring | kwalletmanager | keepassxc, notification-daemon, libglib2.0-bin, qt6-wayland, qt6-translations-l10n")
include(CPack)
