# Adds files to `cmake --install` and `cpack` besides those that client/ installs itself.
# The daemon's component is meant for a board; on this machine the daemon runs on the simulated board,
# from the build folder.
include(GNUInstallDirs)
install(TARGETS qxaiq_tool_server RUNTIME COMPONENT daemon)

# pqctl's manual and completions, under the names that each shell expects.
install(FILES client/man/pqctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT client)
install(FILES client/completions/pqctl.bash RENAME pqctl
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT client)
install(FILES client/completions/_pqctl
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT client)

configure_file(cmake/package/changelog.in ${CMAKE_BINARY_DIR}/package/changelog @ONLY)
install(FILES cmake/package/copyright ${CMAKE_BINARY_DIR}/package/changelog
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/pqctl COMPONENT client)

# `cpack` in the build folder makes pqctl_VERSION_ARCHITECTURE.deb: the client alone.
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL client)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/package/compress.cmake)
set(CPACK_PACKAGE_CONTACT "PQ team <team@pq.example>")
set(CPACK_DEBIAN_CLIENT_PACKAGE_NAME pqctl)
set(CPACK_DEBIAN_CLIENT_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_CLIENT_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_CLIENT_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_CLIENT_DESCRIPTION "tuning client for the picture quality of a display board
pqctl reads and changes the picture-quality parameters of an Android
television or display board that runs the PQ tool server, checks every
change, shows test colours and fetches dumps of the picture.")
include(CPack)
