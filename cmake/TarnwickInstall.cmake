# What cmake --install adds beside the programs (each folder installs its own), and the Debian package of it all:
#   bin/tarnwick, bin/tarnwick-cli
#   share/tarnwick/Images/hud.img                          the HUD preview's sheet, found from bin/ as ../share/tarnwick
#   share/applications, share/mime/packages, share/icons   the desktop entry, the MIME package, the icons
#   share/man/man1/tarnwick.1.gz, tarnwick-cli.1.gz
#   share/doc/tarnwick/copyright

# The manual pages carry the project's version; Debian wants them compressed with gzip -9n.
find_program(TARNWICK_GZIP gzip)
set(_tarnwick_man ${PROJECT_BINARY_DIR}/man)
foreach(page tarnwick.1 tarnwick-cli.1)
    configure_file(${PROJECT_SOURCE_DIR}/dist/${page} ${_tarnwick_man}/${page} @ONLY)
    if(TARNWICK_GZIP)
        add_custom_command(OUTPUT ${_tarnwick_man}/gz/${page}.gz
            COMMAND ${CMAKE_COMMAND} -E copy ${_tarnwick_man}/${page} ${_tarnwick_man}/gz/${page}
            COMMAND ${TARNWICK_GZIP} -9nf ${_tarnwick_man}/gz/${page}
            DEPENDS ${_tarnwick_man}/${page}
            VERBATIM)
        list(APPEND _tarnwick_pages ${_tarnwick_man}/gz/${page}.gz)
    else()
        list(APPEND _tarnwick_pages ${_tarnwick_man}/${page})
    endif()
endforeach()
add_custom_target(tarnwick_man_pages ALL DEPENDS ${_tarnwick_pages})
install(FILES ${_tarnwick_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/dist/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarnwick)

# cpack -G DEB in the build folder. Depends comes from dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_VENDOR "The Tarnwick developers")
set(TARNWICK_PACKAGE_MAINTAINER "The Tarnwick developers <maintainers@tarnwick.invalid>"
    CACHE STRING "The Maintainer field of the Debian package")
set(CPACK_PACKAGE_CONTACT "${TARNWICK_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor for Quake III Arena configuration files")
# The summary comes first; cpack indents these lines.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Tarnwick opens q3config.cfg or any other game configuration file, shows every
known setting as a labelled control on themed pages, lists every variable of
the file in one table, binds the game's actions to keys and saves the file in
canonical form. It also exports and imports single areas of the settings,
starts timedemos, lists PK3 archives, browses player models and previews the
HUD. tarnwick-cli does the same file work from the command line.")
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://github.com/tarnwick/tarnwick)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libzip is opened by name when an archive first needs it, out of dpkg-shlibdeps' sight: its package is named the
# way Debian names a library's package after the library (libzip.so.4 is in libzip4).
# The icons written into the user's data folder are drawn by Qt's SVG image plugin, which libqt6svg6 carries.
set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)
if(TARNWICK_LIBZIP_SONAME MATCHES "^lib([^.]+)\\.so\\.([0-9]+)$")
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", lib${CMAKE_MATCH_1}${CMAKE_MATCH_2}")
endif()
# The free Tahoma the window text is set in.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-wine)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
include(CPack)
