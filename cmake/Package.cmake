# The packages: `kvamigrate` and `kvawizard` for Debian, and kvamigrate_static, the program for any x86-64 Linux.

# Not named kvamigrate, which would be the name of two targets for Ninja.
add_executable(kvamigrate_static EXCLUDE_FROM_ALL cli/Main.cpp)
set_target_properties(kvamigrate_static PROPERTIES
  KVA_STATIC ON
  POSITION_INDEPENDENT_CODE OFF
  RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/static)
target_link_libraries(kvamigrate_static PRIVATE kva_cli kva_rules)
target_link_options(kvamigrate_static PRIVATE -static -no-pie -Wl,--gc-sections -s)

# The change log of the packages themselves, compressed as Debian wants it. A plain `cmake --install` leaves it out.
set(date ${KVA_RELEASE_DATE})
foreach(package kvamigrate kvawizard)
  set(folder ${CMAKE_BINARY_DIR}/packaging/${package})
  configure_file(packaging/changelog.Debian.in ${folder}/changelog.Debian @ONLY)
  add_custom_command(
    OUTPUT ${folder}/changelog.Debian.gz
    COMMAND gzip -9nkf ${folder}/changelog.Debian
    DEPENDS ${folder}/changelog.Debian
    VERBATIM)
  list(APPEND logs ${folder}/changelog.Debian.gz)
endforeach()
add_custom_target(kva_packagelogs ALL DEPENDS ${logs})
install(FILES ${CMAKE_BINARY_DIR}/packaging/kvamigrate/changelog.Debian.gz
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kvamigrate COMPONENT cli EXCLUDE_FROM_ALL)
if(KVA_DESKTOP)
  install(FILES ${CMAKE_BINARY_DIR}/packaging/kvawizard/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kvawizard COMPONENT desktop EXCLUDE_FROM_ALL)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "the kvamigrate authors")
# The format wants an address. The authors have none: the domain "invalid" is reserved for saying so.
set(CPACK_PACKAGE_CONTACT "the kvamigrate authors <kvamigrate@kvamigrate.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli)
if(KVA_DESKTOP)
  list(APPEND CPACK_COMPONENTS_ALL desktop)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_CLI_PACKAGE_NAME kvamigrate)
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS kvawizard)
set(CPACK_DEBIAN_CLI_DESCRIPTION
"Converts units and forms of Delphi applications from the BDE and IBX
database components to the KORVA data-access components, object by object,
with backups, an undo file and a log.")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME kvawizard)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS kvamigrate)
set(CPACK_DEBIAN_DESKTOP_DESCRIPTION
"Shows the units and forms of a Delphi project in a window and converts them
from the BDE and IBX database components to the KORVA data-access components.")
include(CPack)
