# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# The packages: `cpack -G DEB` or `cpack -G RPM` in the build folder makes one per component.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "The Tactus authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tempo finder for music files")
set(CPACK_PACKAGE_CONTACT "The Tactus authors <authors@tactus.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli library dev)
if(TACTUS_BUILD_DESKTOP)
    list(APPEND CPACK_COMPONENTS_ALL desktop)
endif()
if(TARGET tactus-sound)
    list(APPEND CPACK_COMPONENTS_ALL sound)
endif()
if(TACTUS_BUILD_PYTHON)
    list(APPEND CPACK_COMPONENTS_ALL python)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Where the module for Python finds the library while its dependencies are made out.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src/tactus)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME tactus)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION sound)
set(CPACK_COMPONENT_CLI_DESCRIPTION
"Tactus reads WAV, MP3, AIFF, CAF and M4A files, finds their tempo in beats
per minute and can store it in the tags of MP3 files. The command line does
whole folders at once and writes tables, CSV and JSON.

This package has the program, its completions and the guide.")

set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME tactus-desktop)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS
    "tactus (= ${PROJECT_VERSION}), qt6-qpa-plugins, hicolor-icon-theme")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS
    "tactus-desktop-sound, qt6-wayland, qt6-translations-l10n")
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
"Tactus reads WAV, MP3, AIFF, CAF and M4A files, finds their tempo in beats
per minute and stores it in the tags of MP3 files. Files and folders are
dropped on a table of title, artist and tempo.

This package has the window.")

set(CPACK_DEBIAN_SOUND_PACKAGE_NAME tactus-desktop-sound)
set(CPACK_DEBIAN_SOUND_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_SOUND_PACKAGE_DEPENDS "tactus-desktop (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_SOUND_DESCRIPTION
"Tactus finds the tempo of music files. Its window can play them with a click
on every beat.

This package has the part of the window that plays.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtactus0)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"Tactus finds the tempo, the measures, the key and mix points of music. Its
library has a few functions, for C++ and for C.

This package has the shared library.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libtactus-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libtactus0 (= ${PROJECT_VERSION})")
# For those who build with the stages, not with the shared library.
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "libavformat-dev, libavcodec-dev, libswresample-dev, \
libavutil-dev, libutf8proc-dev, libhwy-dev, libtag1-dev, libsqlitecpp-dev, libsqlite3-dev")
set(CPACK_COMPONENT_DEV_DESCRIPTION
"Tactus finds the tempo, the beat grid, the key and mix points of music. Its
library reads files, profiles them and reads and writes their tags.

This package has the headers, an example, and the stages of the library one by
one as static archives.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-tactus)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
math(EXPR next_python_minor "${Python_VERSION_MINOR} + 1")
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "libtactus0 (= ${PROJECT_VERSION}), \
python3 (>= 3.${Python_VERSION_MINOR}~), python3 (<< 3.${next_python_minor}), python3-numpy")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "tactus (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "beets, python3-distributed, python3-matplotlib")
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
"Tactus finds the tempo, the beats, the key and mix points of music. Its module
for Python hears files and arrays of samples, on many processors or on a Dask
cluster.

This package has the module and a plug-in for beets.")

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_PACKAGE_GROUP "Applications/Multimedia")
set(CPACK_RPM_PACKAGE_RELOCATABLE OFF)
set(CPACK_RPM_CLI_PACKAGE_NAME tactus)
set(CPACK_RPM_DESKTOP_PACKAGE_NAME tactus-desktop)
set(CPACK_RPM_DESKTOP_PACKAGE_REQUIRES "tactus = ${PROJECT_VERSION}")
set(CPACK_RPM_DEV_PACKAGE_NAME tactus-devel)
set(CPACK_RPM_PYTHON_PACKAGE_NAME python3-tactus)
# Folders of the system, which no package owns alone.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/applications /usr/share/bash-completion /usr/share/bash-completion/completions
    /usr/share/fish /usr/share/fish/vendor_completions.d /usr/share/icons /usr/share/icons/hicolor
    /usr/share/man /usr/share/man/man1 /usr/share/metainfo /usr/share/mime /usr/share/mime/packages
    /usr/share/zsh
    /usr/share/zsh/site-functions /usr/share/zsh/vendor-completions
    /usr/${CMAKE_INSTALL_LIBDIR}/cmake /usr/${CMAKE_INSTALL_LIBDIR}/pkgconfig)
foreach(size 16 24 32 48 64 128 256)
    list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
        /usr/share/icons/hicolor/${size}x${size} /usr/share/icons/hicolor/${size}x${size}/apps)
endforeach()
list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/icons/hicolor/scalable /usr/share/icons/hicolor/scalable/apps)

# Policy wants both files in each package's own folder.
configure_file(debian/changelog.in changelog @ONLY)
compress_file(${CMAKE_CURRENT_BINARY_DIR}/changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
foreach(component ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${component} upper)
    set(folder ${data}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    install(FILES debian/copyright DESTINATION ${folder} COMPONENT ${component})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${folder} COMPONENT ${component})
endforeach()
include(CPack)
