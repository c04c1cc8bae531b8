# Packages, made by scripts/package: two for Debian, and an archive for everybody else.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME quillmark)
set(CPACK_PACKAGE_VENDOR "Quillmark")
set(CPACK_PACKAGE_CONTACT "${QUILLMARK_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${QUILLMARK_WEB_FOLDER}")
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/PackageFormats.cmake)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of the one who builds.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE quillmark)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME quillmark-cli)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION utils)
# No tool sees that the program loads GnuTLS for an encrypted PDF, nor that the fontconfig it
# contains reads the system's settings.
set(CPACK_DEBIAN_CLI_PACKAGE_DEPENDS "fontconfig-config, libgnutls30")
set(CPACK_DEBIAN_CLI_DESCRIPTION "check whether fonts may be embedded (command line)
Quillmark reads what each font says about itself and gives it a verdict,
Likely OK to embed, Restricted or Unknown, with the reasons in whole
sentences. It looks at the installed fonts, at folders of fonts, and at
the fonts inside PDFs, and writes its findings as text, JSON, CSV or PDF.
.
This package holds the command line, for terminals, scripts and builds.")

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME quillmark)
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "quillmark-cli (= ${PROJECT_VERSION})")
# Without the first, a window on Wayland is drawn at the wrong scale; the second opens links and
# folders; the third gives GNOME's panels for files.
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils, qt6-gtk-platformtheme")
set(CPACK_DEBIAN_WINDOW_DESCRIPTION "check whether fonts may be embedded in what you sell
Quillmark reads what each font says about itself and gives it a verdict,
Likely OK to embed, Restricted or Unknown, with the reasons in whole
sentences. It looks at the installed fonts, at folders of fonts, and at
the fonts inside PDFs, and keeps your notes on the licenses you hold.
.
It only reads, and keeps everything on this computer. A verdict is a
starting point for checking a license, never a clearance.")

include(CPack)
