# Compresses manual pages and change logs, as Debian requires, reproducibly.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/client/usr/share)
file(GLOB files ${share}/man/man1/*.1 ${share}/doc/pqctl/changelog)
execute_process(COMMAND gzip -9n ${files} COMMAND_ERROR_IS_FATAL ANY)
