# The Debian package: `cpack` in a build folder, or scripts/package from the sources.
set(TARN_MAINTAINER "The Tarn developers <tarn-developers@users.noreply.github.com>" CACHE STRING
  "Name and address of who makes the package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarn)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${TARN_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION mail)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "seven web apps with profiles in one native window
Tarn keeps seven Google web apps in one native window: Gmail, Calendar, Drive,
Gemini, Keep, Tasks and Contacts. Several profiles, each with a sign-in of its
own, live side by side and never meet.
.
It shows the notifications of the pages on the desktop, counts unread mail on
the dock, opens foreign links in the browser and can be the default
application for e-mail links.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no linker sees: TLS, the sandbox of the pages and its way to the session bus, icons and their renderer.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "adwaita-icon-theme, bubblewrap, glib-networking, librsvg2-common, xdg-dbus-proxy")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, xdg-utils, notification-daemon")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gstreamer1.0-libav, gstreamer1.0-plugins-good")

include(CPack)

# Beside the program: what a Debian package must say of itself.
if(TARN_PACKAGE)
  set(changelog ${PROJECT_BINARY_DIR}/changelog.gz)
  add_custom_command(OUTPUT ${changelog}
    COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/debian/changelog > ${changelog}
    DEPENDS ${PROJECT_SOURCE_DIR}/packaging/debian/changelog VERBATIM)
  add_custom_target(changelog ALL DEPENDS ${changelog})
  install(FILES ${changelog} ${PROJECT_SOURCE_DIR}/packaging/debian/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarn)
endif()
