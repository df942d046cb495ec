# The Debian packages zelk and libzelk-dev, by cpack. Files carry the time that SOURCE_DATE_EPOCH says, so that the same
# commit gives the same bytes.

string(TIMESTAMP PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(PLAYER_COPYRIGHT "")
if(TARGET zelk-player)
    file(READ debian/player-copyright PLAYER_COPYRIGHT)
endif()
configure_file(debian/copyright.in copyright @ONLY)
configure_file(debian/changelog.in changelog @ONLY)
configure_file(debian/zelk.1.in zelk.1 @ONLY)

set(here ${CMAKE_CURRENT_BINARY_DIR})
install(FILES ${here}/copyright ${here}/changelog DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelk)
install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelk RENAME NEWS)
install(FILES ${here}/copyright ${here}/changelog DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzelk-dev COMPONENT dev)
install(FILES ${here}/zelk.1 debian/zelk-player.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES debian/zelk.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME zelk)
install(FILES debian/_zelk DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelk)
set(CPACK_PACKAGE_VENDOR "Zelk developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "shows Flash movies as XML and compiles the XML back") # of both
set(CPACK_PACKAGE_CONTACT "Zelk developers <zelk@orvane.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_OUTPUT_FILE_PREFIX packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/settle.cmake)
set(CPACK_COMPONENTS_ALL zelk dev)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_ZELK_PACKAGE_NAME zelk)
set(CPACK_DEBIAN_ZELK_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_ZELK_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_ZELK_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_ZELK_DESCRIPTION
"Zelk is an editor that shows a Flash movie (SWF) as an XML document and
compiles the edited XML back, for people who keep, repair, study and
translate old movies. Every tag is readable, and what you do not touch keeps
its bytes.

The package has the editor zelk and the command line program zelkc.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzelk-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libboost-dev, liblzma-dev, librapidxml-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION
"The libraries of Zelk, to develop programs with. swflib reads and writes
Flash movies (SWF): streams, records and tags. xml2swf turns a movie into XML
and back. Both are static, with a package for CMake and one for pkg-config.")
include(CPack)
