# What `cmake --install` puts where. The executable lies in a folder of its own, with the category list beside it that
# a new application folder gets a copy of; the command `discaro` starts it in the application folder.

include(GNUInstallDirs)

set(DISCARO_PROGRAM_DIR ${CMAKE_INSTALL_LIBEXECDIR}/discaro)
# The way from the command to the executable, so that an installed tree can be moved as a whole.
file(RELATIVE_PATH DISCARO_PROGRAM_FOLDER
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/discaro)
configure_file(${CMAKE_SOURCE_DIR}/data/discaro.sh.in ${CMAKE_BINARY_DIR}/discaro.sh @ONLY)

install(TARGETS discaro RUNTIME DESTINATION ${DISCARO_PROGRAM_DIR})
install(FILES data/kvt.ini DESTINATION ${DISCARO_PROGRAM_DIR})
install(PROGRAMS ${CMAKE_BINARY_DIR}/discaro.sh DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME discaro)
install(FILES data/com.quorlen.Discaro.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES data/com.quorlen.Discaro.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES data/pictures/discaro.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES data/discaro.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES LICENSE docs/third-party.md docs/user-guide.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
