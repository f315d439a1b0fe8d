# SPDX-License-Identifier: GPL-3.0-or-later
# What `cmake --install` puts where, and the Debian package built from it (scripts/package).
# Read-only data lives in share/tolvane beside bin/; the build tree is laid out the same way
# (build/PRESET/share/tolvane), so the program finds its data relative to itself everywhere.

set(tolvane_share ${CMAKE_INSTALL_DATADIR}/tolvane)

# The dictionaries are compiled into the source tree by scripts/setup; the build tree links to them.
set(tolvane_dictionaries ${PROJECT_SOURCE_DIR}/data/dictionaries)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/share/tolvane)
if(NOT EXISTS ${PROJECT_BINARY_DIR}/share/tolvane/dictionaries)
    file(CREATE_LINK ${tolvane_dictionaries} ${PROJECT_BINARY_DIR}/share/tolvane/dictionaries SYMBOLIC)
endif()
install(DIRECTORY ${tolvane_dictionaries}/ DESTINATION ${tolvane_share}/dictionaries
        FILES_MATCHING PATTERN "*.tdict")

# Desktop integration: the launcher entry, the software-centre description, icons, the manual.
set(tolvane_desktop ${PROJECT_SOURCE_DIR}/data/desktop)
set(tolvane_icons ${PROJECT_SOURCE_DIR}/data/icons)
install(FILES ${tolvane_desktop}/tolvane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${tolvane_desktop}/app.tolvane.tolvane.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${tolvane_icons}/tolvane.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${tolvane_icons}/tolvane-symbolic.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps)

find_program(RSVG_CONVERT rsvg-convert)
if(RSVG_CONVERT)
    set(tolvane_icon_pngs)
    foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
        set(png ${PROJECT_BINARY_DIR}/icons/${size}x${size}/tolvane.png)
        add_custom_command(
            OUTPUT ${png}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/icons/${size}x${size}
            COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${tolvane_icons}/tolvane.svg
            DEPENDS ${tolvane_icons}/tolvane.svg
            COMMENT "Rendering the ${size} px application icon"
            VERBATIM)
        list(APPEND tolvane_icon_pngs ${png})
        install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
    endforeach()
    add_custom_target(tolvane_icons ALL DEPENDS ${tolvane_icon_pngs})
else()
    message(STATUS "rsvg-convert not found: only the scalable icon is installed (scripts/setup installs it)")
endif()

# Debian wants the manual compressed, reproducibly (no name, no time stamp in the header).
set(tolvane_manual ${PROJECT_BINARY_DIR}/man/tolvane.1.gz)
add_custom_command(
    OUTPUT ${tolvane_manual}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/man
    COMMAND sh -c "gzip -9n < '${tolvane_desktop}/tolvane.1' > '${tolvane_manual}'"
    DEPENDS ${tolvane_desktop}/tolvane.1
    COMMENT "Compressing the manual page"
    VERBATIM)
add_custom_target(tolvane_manual ALL DEPENDS ${tolvane_manual})
install(FILES ${tolvane_manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The licence and the notices of the sources the data is compiled from, and the release history.
set(tolvane_docdir ${CMAKE_INSTALL_DATAROOTDIR}/doc/tolvane)
install(FILES ${tolvane_desktop}/copyright DESTINATION ${tolvane_docdir})
set(tolvane_changelog ${PROJECT_BINARY_DIR}/doc/changelog.gz)
add_custom_command(
    OUTPUT ${tolvane_changelog}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/doc
    COMMAND sh -c "gzip -9n < '${tolvane_desktop}/changelog' > '${tolvane_changelog}'"
    DEPENDS ${tolvane_desktop}/changelog
    COMMENT "Compressing the release history"
    VERBATIM)
add_custom_target(tolvane_changelog ALL DEPENDS ${tolvane_changelog})
install(FILES ${tolvane_changelog} DESTINATION ${tolvane_docdir})

# The Debian package: CPack, so the package holds exactly what `cmake --install` installs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Tolvane developers <tolvane@tolvane.app>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "language-learning assistant: translate the word under the pointer")
# The synopsis is the summary above; CPack indents each line of the long description itself.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tolvane lives in the system tray. Rest the pointer on a word in any
application, or select a passage, press the look-up hotkey, and a small card
beside the pointer shows the translation without taking the keyboard focus.
Every look-up feeds a flashcard deck, reminders, statistics and milestones.
.
Translation happens on the computer, from dictionaries installed with the
package, for Chinese, French, German, Italian, Japanese, Korean, Portuguese,
Russian and Spanish with English.")
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://tolvane.app)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What a look-up needs at run time beyond the libraries: the X platform plugin, fonts for every
# script, the accessibility bus, the Japanese reader's dictionary, English spelling and OCR data.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qt6-qpa-plugins, fonts-dejavu-core, fonts-noto-cjk, at-spi2-core, mecab-ipadic-utf8, hunspell-en-us, tesseract-ocr-eng")
# Passages in Spanish, French, Italian and Portuguese, speech, and reading the other scripts.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "apertium-eng-spa, apertium-fr-es, apertium-spa-ita, apertium-es-pt, speech-dispatcher | espeak-ng-data, tesseract-ocr-fra, tesseract-ocr-deu, tesseract-ocr-ita, tesseract-ocr-por, tesseract-ocr-rus, tesseract-ocr-spa, notification-daemon | notification-daemon-provider")
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_STRIP_FILES ON)
include(CPack)
