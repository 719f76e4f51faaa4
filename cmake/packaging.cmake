# What `cmake --install` puts where, and the Debian package that CPack makes of it. scripts/package
# runs and checks all of this, scripts/portable makes the archive for systems without Qt.
include(GNUInstallDirs)

# Where the project can be found. Nothing is published yet: these names are reserved for examples,
# and whoever publishes the program sets both.
set(KURBELBUCH_HOMEPAGE "https://kurbelbuch.example/" CACHE STRING "The project's page, ending in /")
set(KURBELBUCH_COMPONENT_ID "org.example.kurbelbuch" CACHE STRING "The AppStream component")

# The newest entry of the changelog dates the release.
file(READ "${PROJECT_SOURCE_DIR}/packaging/debian/changelog" changelog)
if(NOT changelog MATCHES "^kurbelbuch \\(${PROJECT_VERSION}\\)")
  message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}")
endif()
string(REGEX MATCH "  [A-Z][a-z][a-z], ([0-9][0-9]) ([A-Z][a-z][a-z]) ([0-9]+) " dated "${changelog}")
set(day "${CMAKE_MATCH_1}")
set(year "${CMAKE_MATCH_3}")
set(months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
list(FIND months "${CMAKE_MATCH_2}" month)
math(EXPR month "${month} + 1")
if(month LESS 10)
  set(month "0${month}")
endif()
set(KURBELBUCH_RELEASE_DATE "${year}-${month}-${day}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/debian/changelog)

set(icon_sizes 16 22 24 32 48 64 96 128 256 512)
set(icon_directory "${PROJECT_SOURCE_DIR}/packaging/icons")

if(APPLE)
  set_target_properties(kurbelbuch PROPERTIES
    MACOSX_BUNDLE ON
    OUTPUT_NAME Kurbelbuch
    MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in"
    MACOSX_BUNDLE_GUI_IDENTIFIER "${KURBELBUCH_COMPONENT_ID}"
    MACOSX_BUNDLE_BUNDLE_NAME Kurbelbuch
    MACOSX_BUNDLE_BUNDLE_VERSION "${PROJECT_VERSION}"
    MACOSX_BUNDLE_SHORT_VERSION_STRING "${PROJECT_VERSION}"
    MACOSX_BUNDLE_ICON_FILE kurbelbuch.icns)
  target_sources(kurbelbuch PRIVATE "${icon_directory}/kurbelbuch.icns")
  set_source_files_properties("${icon_directory}/kurbelbuch.icns" PROPERTIES
                              MACOSX_PACKAGE_LOCATION Resources)
  install(TARGETS kurbelbuch BUNDLE DESTINATION .)
elseif(WIN32)
  enable_language(RC)
  set_target_properties(kurbelbuch PROPERTIES WIN32_EXECUTABLE ON)
  target_sources(kurbelbuch PRIVATE "${PROJECT_SOURCE_DIR}/packaging/windows/kurbelbuch.rc")
  install(TARGETS kurbelbuch RUNTIME DESTINATION .)
else()
  # The program itself stands aside: what users start is the launcher, which enters the directory of
  # their start settings first. It finds the program from where it lies itself, under any prefix.
  set(program_directory "${CMAKE_INSTALL_LIBEXECDIR}/kurbelbuch")
  file(RELATIVE_PATH KURBELBUCH_BIN_TO_PROGRAM
       "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/kurbelbuch/kurbelbuch")
  file(READ packaging/linux/stop.sh KURBELBUCH_STOP)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/linux/stop.sh)
  configure_file(packaging/linux/kurbelbuch.in packaging/kurbelbuch @ONLY)
  configure_file(packaging/linux/kurbelbuch.metainfo.xml.in
                 "packaging/${KURBELBUCH_COMPONENT_ID}.metainfo.xml" @ONLY)
  install(TARGETS kurbelbuch RUNTIME DESTINATION "${program_directory}")
  install(PROGRAMS "${PROJECT_BINARY_DIR}/packaging/kurbelbuch" TYPE BIN)
  install(FILES packaging/linux/kurbelbuch.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
  install(FILES "${PROJECT_BINARY_DIR}/packaging/${KURBELBUCH_COMPONENT_ID}.metainfo.xml"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
  set(hicolor "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
  foreach(size IN LISTS icon_sizes)
    install(FILES "${icon_directory}/kurbelbuch-${size}.png"
            DESTINATION "${hicolor}/${size}x${size}/apps" RENAME kurbelbuch.png)
  endforeach()
  install(FILES "${icon_directory}/kurbelbuch.svg" DESTINATION "${hicolor}/scalable/apps")
  install(FILES docs/handbuch.md docs/formats.md TYPE DOC)
  file(GLOB manual_pictures CONFIGURE_DEPENDS docs/bilder/*.png)
  install(FILES ${manual_pictures} DESTINATION "${CMAKE_INSTALL_DOCDIR}/bilder")
  install(FILES packaging/debian/copyright TYPE DOC)

  # Manual pages and changelog are kept compressed, without the time and name that gzip would add.
  find_program(KURBELBUCH_GZIP gzip REQUIRED)
  function(install_compressed source destination)
    get_filename_component(name "${source}" NAME)
    string(MD5 key "${source}")
    set(compressed "${PROJECT_BINARY_DIR}/packaging/${key}/${name}.gz")
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/packaging/${key}")
    add_custom_command(OUTPUT "${compressed}"
      COMMAND "${KURBELBUCH_GZIP}" -9 --no-name --stdout "${PROJECT_SOURCE_DIR}/${source}" > "${compressed}"
      DEPENDS "${PROJECT_SOURCE_DIR}/${source}" VERBATIM)
    set_property(GLOBAL APPEND PROPERTY kurbelbuch_compressed "${compressed}")
    install(FILES "${compressed}" DESTINATION "${destination}")
  endfunction()
  install_compressed(packaging/linux/kurbelbuch.1 "${CMAKE_INSTALL_MANDIR}/man1")
  install_compressed(packaging/linux/de/kurbelbuch.1 "${CMAKE_INSTALL_MANDIR}/de/man1")
  install_compressed(packaging/debian/changelog "${CMAKE_INSTALL_DOCDIR}")
  get_property(compressed GLOBAL PROPERTY kurbelbuch_compressed)
  add_custom_target(compressed_documents ALL DEPENDS ${compressed})
endif()

set(CPACK_PACKAGE_NAME kurbelbuch)
set(CPACK_PACKAGE_VENDOR "Die Kurbelbuch-Entwickler")
set(CPACK_PACKAGE_CONTACT "Die Kurbelbuch-Entwickler <post@kurbelbuch.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "${KURBELBUCH_HOMEPAGE}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "charts and care for the trainings on an exercise bike's SD card")
set(CPACK_PACKAGE_DESCRIPTION
"Kurbelbuch reads the trainings that an exercise bike writes to its SD card, and
shows every value of all trainings, or of a single one, over time: as bars,
lines, circles, squares or point clouds, with mean, trend and limits.
.
It exports trainings as CSV, deletes and renumbers them, and keeps a backup
copy on another drive. Its texts are German.")
set(CPACK_GENERATOR DEB)
# CPack's own stripping would leave the compiler's comment.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/strip_program.cmake")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The libraries. Qt's German texts are part of the program and need no package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Without it the program runs in a Wayland session all the same, as a client of its X server.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
# The requesters of GNOME and of its relatives in place of Qt's own.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-gtk-platformtheme")
include(CPack)
