# The Debian package, built from the normal build: cmake --build build --target package.
set(CPACK_PACKAGE_NAME lanternic)
set(CPACK_PACKAGE_VENDOR "The Lanternic team")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Lanternic team <team@lanternic.io>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "status of the online services you depend on, in the tray")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://lanternic.io/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The GTK platform theme gives the panel the desktop's light or dark colours on GNOME and XFCE.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-gtk-platformtheme")
# CPack puts the summary first and indents these lines as the long description.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Lanternic watches the public status pages of online services (Atlassian
Statuspage pages, incident.io pages, the Updog cloud-outage feed and its own
relay feed format) and shows their combined health as one icon in the system
tray, with a badge counting the problems. A click opens a panel with one row
per source, a sparkline of the last checks and a menu to silence a source or
one of its components for a while.

lanternic-check runs the same checks from a terminal and follows the
monitoring-plugin exit status convention.")
include(CPack)
