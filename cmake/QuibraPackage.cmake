# `cpack` in the build folder makes quibra_VERSION_ARCH.deb of what is installed. Icon cache, desktop and MIME database are
# brought up to date by triggers of the packages that own them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quibra)
set(CPACK_PACKAGE_VENDOR "The Quibra developers")
set(CPACK_PACKAGE_CONTACT "The Quibra developers <quibra@quibra.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tabulate questionnaire surveys (Japanese interface)")
set(CPACK_PACKAGE_DESCRIPTION
    "Quibra keeps a whole questionnaire survey, its questions, conditions and
answers, in one file and makes simple and cross totals and lists of free
texts of it. Answers are held bit-packed, so that a million respondents
are counted within seconds.
.
The package holds the desktop program quibra, the command quibra-cli with
the same engine, and a sample survey.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What no library tells: Qt's own buttons in Japanese. The xcb platform and the SVG icons come with Qt's libraries.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-translations-l10n)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk | fonts-japanese-gothic, shared-mime-info, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS qt6-wayland)
include(CPack)
