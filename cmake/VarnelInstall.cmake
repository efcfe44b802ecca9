# The installed tree is the application bundle: the program finds its desktop entry and its resources relative to
# itself.

set(VARNEL_ID com.varnel.menubar)
set(VARNEL_HOMEPAGE https://varnel.example CACHE STRING "The address that the metadata's links and pictures begin with")
set(documentation ${CMAKE_INSTALL_DATADIR}/doc/varnel)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)

# What a person may read, whoever builds it under whatever umask.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# varnel_install_compressed(<file> <name> <folder>): as manual pages and changelogs are, without the time.
function(varnel_install_compressed file name folder)
    set(compressed ${PROJECT_BINARY_DIR}/${name}.gz)
    add_custom_command(OUTPUT ${compressed} DEPENDS ${PROJECT_SOURCE_DIR}/${file} VERBATIM
        COMMAND sh -c "gzip -9nc '${PROJECT_SOURCE_DIR}/${file}' >'${compressed}'")
    add_custom_target(${name}-compressed DEPENDS ${compressed})
    add_dependencies(varnel ${name}-compressed)
    install(FILES ${compressed} DESTINATION ${folder})
endfunction()

find_package(Qt6 REQUIRED COMPONENTS LinguistTools)
qt_add_translation(catalogues translations/varnel_de.ts)
add_custom_target(varnel_catalogues DEPENDS ${catalogues})
add_dependencies(varnel varnel_catalogues)
install(FILES ${catalogues} DESTINATION ${CMAKE_INSTALL_DATADIR}/varnel/translations)

configure_file(packaging/${VARNEL_ID}.service.in ${VARNEL_ID}.service @ONLY)
# AppStream calls the developer otherwise since its version 1.0, the one of Debian 13; that has Qt 6.8, Debian 12 Qt 6.4.
set(developer "<developer id=\"com.varnel\"><name>The Varnel maintainers</name></developer>")
if(Qt6_VERSION VERSION_LESS 6.5)
    set(developer "<developer_name>The Varnel maintainers</developer_name>")
endif()
configure_file(packaging/${VARNEL_ID}.metainfo.xml.in ${VARNEL_ID}.metainfo.xml @ONLY)

install(TARGETS varnel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES packaging/${VARNEL_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_BINARY_DIR}/${VARNEL_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PROJECT_BINARY_DIR}/${VARNEL_ID}.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES packaging/icons/plain.svg RENAME ${VARNEL_ID}.svg DESTINATION ${icons}/scalable/apps)
install(FILES packaging/icons/symbolic.svg RENAME ${VARNEL_ID}-symbolic.svg DESTINATION ${icons}/symbolic/apps)
install(DIRECTORY packaging/Assets DESTINATION ${CMAKE_INSTALL_DATADIR}/varnel)
install(FILES packaging/copyright CHANGELOG.md docs/user-guide.md DESTINATION ${documentation})
varnel_install_compressed(packaging/changelog changelog ${documentation})
varnel_install_compressed(packaging/varnel.1 varnel.1 ${CMAKE_INSTALL_MANDIR}/man1)
