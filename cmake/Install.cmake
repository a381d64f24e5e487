# What `cmake --install` puts where, and the packages of it (scripts/package.sh). The component `cli` is the program for
# the command line, `desktop` the windows.
include(GNUInstallDirs)

install(TARGETS kvamigrate RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)

# The manual pages and the change log, compressed. The program has printed its page and its completions.
set(pages ${CMAKE_BINARY_DIR}/cli)
add_custom_command(
  OUTPUT ${pages}/kvamigrate.1.gz ${pages}/kvawizard.1.gz ${pages}/changelog.gz
  COMMAND gzip -9nc ${pages}/kvamigrate.1 >${pages}/kvamigrate.1.gz
  COMMAND gzip -9nc ${CMAKE_SOURCE_DIR}/packaging/kvawizard.1 >${pages}/kvawizard.1.gz
  COMMAND gzip -9nc ${CMAKE_SOURCE_DIR}/CHANGELOG.md >${pages}/changelog.gz
  DEPENDS kvamigrate_pages ${pages}/kvamigrate.1 packaging/kvawizard.1 CHANGELOG.md)
add_custom_target(kva_compressed ALL DEPENDS ${pages}/kvamigrate.1.gz)
install(FILES ${pages}/kvamigrate.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT cli)
install(FILES ${pages}/kvamigrate.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kvamigrate COMPONENT cli)
install(FILES ${pages}/kvamigrate.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT cli)
# zsh looks for what packages bring in another folder than for the rest.
install(FILES ${pages}/_kvamigrate DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT completion)
install(FILES ${pages}/_kvamigrate
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT cli EXCLUDE_FROM_ALL)

# The documents of both packages: each has its own folder.
set(documents ${CMAKE_INSTALL_DATADIR}/doc)
install(FILES LICENSE DESTINATION ${documents}/kvamigrate RENAME copyright COMPONENT cli)
install(FILES ${pages}/changelog.gz DESTINATION ${documents}/kvamigrate COMPONENT cli)
install(FILES README.md docs/manual.md DESTINATION ${documents}/kvamigrate COMPONENT cli)

if(KVA_DESKTOP)
  install(TARGETS kvawizard RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT desktop)
  install(TARGETS kvaexpert LIBRARY DESTINATION lib/kvamigrate/modules COMPONENT desktop)
  install(FILES packaging/kvawizard.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT desktop)
  install(FILES packaging/kvawizard.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT desktop)
  install(FILES ${pages}/kvawizard.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT desktop)
  install(FILES LICENSE DESTINATION ${documents}/kvawizard RENAME copyright COMPONENT desktop)
  install(FILES ${pages}/changelog.gz DESTINATION ${documents}/kvawizard COMPONENT desktop)
endif()
