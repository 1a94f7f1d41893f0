# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# cpack -G DEB: a Debian package of what the install rules install. Made from the
# "package" preset, which is configured for /usr, so the paths the program and its bus
# service file carry are the package's own.
set(CPACK_PACKAGE_NAME ledgewise)
set(CPACK_PACKAGE_VENDOR "Ledgewise developers")
set(CPACK_PACKAGE_CONTACT "Ledgewise developers <developers@ledgewise.org>")
set(CPACK_PACKAGE_HOMEPAGE_URL https://ledgewise.org)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "clipboard history, Downloads, a timer and a launcher beside the notch")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "Ledgewise hangs up to two small dark surfaces at the top edge of the screen,\n"
  "beside a laptop's camera notch. A surface widens to a glance on hover and\n"
  "expands into a panel on a click, a global shortcut or a drag: clipboard\n"
  "history, the newest Downloads, a countdown timer and a launcher of pinned\n"
  "applications, files and sites. Everything stays on the machine.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
# ledgewise_VERSION_ARCH.deb
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The shared libraries come from dpkg-shlibdeps; what it cannot see, the QML modules
# the views import and the X11 platform plugin Qt loads at run time, is listed here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(ledgewise_runtime_packages
  qml6-module-qtquick qml6-module-qtquick-layouts qml6-module-qtquick-window
  qml6-module-qtqml-workerscript qt6-qpa-plugins)
list(JOIN ledgewise_runtime_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
include(CPack)
