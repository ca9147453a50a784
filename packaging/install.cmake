# Where everything goes below the prefix, and the Debian package, which has the same layout.
#
#   bin/mertu                  the launcher
#   lib/mertu/                 the program, the notice window, the scripts that the launcher reads
#   share/mertu/starter/       the first lessons
#   share/doc/mertu/           README, changes, docs, licence
#   share/man/                 mertu(1), mertu.conf(5), mertu-dictionary(5)
#   share/applications/, share/metainfo/, share/icons/    the desktop's view of it

set(MERTU_PACKAGING ${PROJECT_SOURCE_DIR}/packaging)
set(MERTU_MADE ${PROJECT_BINARY_DIR}/packaging)

# mertu_compressed(SOURCE NAME DIRECTORY [install arguments...]): installs a file compressed, as
# NAME.gz, without the time of the compression.
set(MERTU_COMPRESSED "")
function(mertu_compressed source name directory)
  set(made ${MERTU_MADE}/${name}.gz)
  add_custom_command(
    OUTPUT ${made}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${MERTU_MADE}
    COMMAND gzip -9nc ${source} > ${made}
    DEPENDS ${source}
    VERBATIM)
  set(MERTU_COMPRESSED ${MERTU_COMPRESSED} ${made} PARENT_SCOPE)
  install(FILES ${made} DESTINATION ${directory} ${ARGN})
endfunction()

configure_file(${MERTU_PACKAGING}/mertu.in ${MERTU_MADE}/mertu @ONLY)
install(PROGRAMS ${MERTU_MADE}/mertu DESTINATION bin)
install(TARGETS mertu.x mertu-notice.x DESTINATION lib/mertu)
install(FILES tools/learner-dir.sh tools/launch.sh DESTINATION lib/mertu)
install(DIRECTORY share/starter DESTINATION share/mertu)

install(FILES README.md CHANGELOG.md DESTINATION share/doc/mertu)
install(DIRECTORY docs DESTINATION share/doc/mertu)
mertu_compressed(${MERTU_PACKAGING}/man/mertu.1 mertu.1 share/man/man1)
mertu_compressed(${MERTU_PACKAGING}/man/mertu.conf.5 mertu.conf.5 share/man/man5)
mertu_compressed(${MERTU_PACKAGING}/man/mertu-dictionary.5 mertu-dictionary.5 share/man/man5)

install(FILES packaging/org.mertu.mertu.desktop DESTINATION share/applications)
install(FILES packaging/org.mertu.mertu.metainfo.xml DESTINATION share/metainfo)
install(FILES packaging/icons/org.mertu.mertu.svg DESTINATION share/icons/hicolor/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256)
  install(FILES packaging/icons/${size}.png RENAME org.mertu.mertu.png
          DESTINATION share/icons/hicolor/${size}x${size}/apps)
endforeach()

# A Debian system has the licence's text; there the package tells where.
install(FILES LICENSE DESTINATION share/doc/mertu COMPONENT licence)
install(FILES packaging/debian/copyright DESTINATION share/doc/mertu
        COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES packaging/debian/lintian-overrides DESTINATION share/lintian/overrides RENAME mertu
        COMPONENT debian EXCLUDE_FROM_ALL)
mertu_compressed(${MERTU_PACKAGING}/debian/changelog changelog share/doc/mertu
                 COMPONENT debian EXCLUDE_FROM_ALL)
add_custom_target(mertu_compressed ALL DEPENDS ${MERTU_COMPRESSED})

# cmake --build DIR --target package
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mertu)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Mertu maintainers <maintainers@mertu.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "vocabulary trainer for one learner")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${MERTU_PACKAGING}/debian/description)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};Mertu;Unspecified;/" "${PROJECT_BINARY_DIR};Mertu;debian;/")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
include(CPack)
