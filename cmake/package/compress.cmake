# Debian packages hold manual pages and change logs compressed, always with the same bytes.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/client/usr/share)
file(GLOB files ${share}/man/man1/*.1 ${share}/doc/pqctl/changelog)
execute_process(COMMAND gzip -9n ${files} COMMAND_ERROR_IS_FATAL ANY)
