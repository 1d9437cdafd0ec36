# `make package`: a Debian package of what a user runs. Everything that the loader finds relative to the
# executable keeps the build tree's layout under /opt/noticeboard (package and template beside pvconsole,
# adapters and the report library in plugins/), so the installed program runs exactly as bin/ does. The
# folder is not writable for users: the board then keeps zpnbd.ini and its notice board folder in
# ~/.config/noticeboard/ (DataFolder in platform/Process.h). Test adapters are not shipped.
set(NB_INSTALL_DIR opt/noticeboard)
install(TARGETS pvconsole nbtool RUNTIME DESTINATION ${NB_INSTALL_DIR})
foreach(lib noticeboard)
  if(TARGET ${lib})
    install(TARGETS ${lib} LIBRARY DESTINATION ${NB_INSTALL_DIR})
  endif()
endforeach()
foreach(plugin ZNBA_Demo XmlReportingNB)
  install(TARGETS ${plugin} LIBRARY DESTINATION ${NB_INSTALL_DIR}/plugins)
endforeach()
install(FILES ${CMAKE_SOURCE_DIR}/reports/r_base_template.xml DESTINATION ${NB_INSTALL_DIR})
# The settings a first start begins with: the demo adapter playing a monitoring product, so that a new
# user sees the board at work; each user's own copy is made from it.
set(NB_SHIPPED_INI ${CMAKE_SOURCE_DIR}/packaging/zpnbd.ini)
install(FILES ${NB_SHIPPED_INI} DESTINATION ${NB_INSTALL_DIR})
install(FILES ${CMAKE_SOURCE_DIR}/packaging/noticeboard.desktop DESTINATION usr/share/applications)
install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/noticeboard.svg
        DESTINATION usr/share/icons/hicolor/scalable/apps)
# A command on the PATH as well as the menu entry.
install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/usr/bin\")
  file(CREATE_LINK /${NB_INSTALL_DIR}/pvconsole \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/usr/bin/noticeboard\" SYMBOLIC)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME noticeboard)
set(CPACK_PACKAGE_VENDOR "Zarvo Software")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Notice board: the alert console of the Palvane database console")
set(CPACK_PACKAGE_DESCRIPTION
    "Monitoring products reach the board through adapter libraries and push alerts to it; the board shows them in a grid with saved filters and displays, acknowledges and deletes them, prints reports and exports spreadsheets.")
# The build keeps its debugging symbols; the package does not need them.
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "Notice board team <noticeboard@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_SET_DESTDIR OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The Qt, ICU, SimpleIni and libxlsxwriter libraries the binaries link, found by dpkg-shlibdeps.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The package and the plug-ins are loaded at run time, not linked: their libraries count too.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/postinst ${CMAKE_SOURCE_DIR}/packaging/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR})
include(CPack)
