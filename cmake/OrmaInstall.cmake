# What `cmake --install` puts where, and the package that CPack makes of it (`./dev package`).

include(GNUInstallDirs)

install(TARGETS orma orma-edit orma-setup)
install(TARGETS orma_network LIBRARY DESTINATION lib/orma-edit)
foreach(shape Portrait Square Landscape)
  install(DIRECTORY ${CMAKE_BINARY_DIR}/${ORMA_SKINS}/${shape} DESTINATION ${ORMA_SKINS})
endforeach()
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/icons DESTINATION ${CMAKE_INSTALL_DATADIR})
install(FILES assets/icon/orma-edit.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

install(FILES assets/desktop/orma-edit.desktop assets/desktop/orma-setup.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES assets/desktop/orma-edit.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
configure_file(assets/desktop/org.ormaedit.OrmaEdit.metainfo.xml
  ${CMAKE_BINARY_DIR}/org.ormaedit.OrmaEdit.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/org.ormaedit.OrmaEdit.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
set(completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES assets/desktop/orma.bash DESTINATION ${completions} RENAME orma)
install(FILES assets/desktop/orma.bash DESTINATION ${completions} RENAME orma-edit)
install(FILES assets/desktop/orma.bash DESTINATION ${completions} RENAME orma-setup)

# compressed(SOURCE NAME FOLDER): installs a text as Debian wants it, without a time in the result
function(compressed source name folder)
  set(packed ${CMAKE_BINARY_DIR}/install/${name}.gz)
  add_custom_command(OUTPUT ${packed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/install
    COMMAND gzip -9nc ${source} > ${packed}
    DEPENDS ${source} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY orma_compressed ${packed})
  install(FILES ${packed} DESTINATION ${folder})
endfunction()

set(docs ${CMAKE_INSTALL_DATADIR}/doc/orma-edit)
configure_file(assets/desktop/changelog.in ${CMAKE_BINARY_DIR}/install/changelog @ONLY)
compressed(${CMAKE_SOURCE_DIR}/docs/man/orma.1 orma.1 ${CMAKE_INSTALL_MANDIR}/man1)
compressed(${CMAKE_SOURCE_DIR}/docs/man/orma-edit.1 orma-edit.1 ${CMAKE_INSTALL_MANDIR}/man1)
compressed(${CMAKE_SOURCE_DIR}/docs/man/orma-setup.1 orma-setup.1 ${CMAKE_INSTALL_MANDIR}/man1)
compressed(${CMAKE_SOURCE_DIR}/CHANGELOG.md changelog ${docs})
compressed(${CMAKE_BINARY_DIR}/install/changelog changelog.Debian ${docs})
install(FILES assets/desktop/copyright DESTINATION ${docs})
get_property(packed GLOBAL PROPERTY orma_compressed)
add_custom_target(orma_install_texts ALL DEPENDS ${packed})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orma-edit)
set(CPACK_PACKAGE_VENDOR "Orma Edit")
set(CPACK_PACKAGE_CONTACT "The Orma Edit developers <developers@ormaedit.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reporter's recorder for speech")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Orma Edit takes speech from a microphone into a project, lets a reporter set
marks while recording, trim and cut the take and collect clips, and publishes
them as one Broadcast-Wave file to the newsroom: by FTP, by e-mail, or as a
file.

It records 16-bit WAV or MPEG-1 Layer II. Nothing recorded is ever lost, and a
broken upload goes on at the byte where it stopped.

The package also has orma, the same on the command line.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-inter, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pulseaudio | pipewire-pulse, xdg-utils, ca-certificates")
include(CPack)
