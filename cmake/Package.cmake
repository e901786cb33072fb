# The Debian package, made by scripts/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvane)
set(CPACK_PACKAGE_CONTACT "The Quorvane maintainers <maintainers@quorvane.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://quorvane.example/)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "task planner for a small business")
set(CPACK_PACKAGE_DESCRIPTION
"Quorvane keeps the tasks of a small business in one list and shows it in ten
coloured views. Tasks have dates, a status, a priority, a client and a team
member; they can be searched, sorted, hidden, ordered by hand and shared, and
every change can be undone.

Clients and team members are texted their schedules over an SMS gateway. The
list can be copied to a private cloud database. There are a notes pad, a
whiteboard, and a list for the command line.")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)

# What the binaries need is worked out when they are packed; here is what they load or start by name.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/PackageDepends.cmake)
set(modules ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${QUORVANE_MODULE_PATH})
set(CPACK_QUORVANE_FOLDER ${PROJECT_BINARY_DIR}/resources)
set(CPACK_QUORVANE_NEEDED ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/quorvane ${modules}/quorvanephone.so)
set(CPACK_QUORVANE_OPTIONAL ${modules}/quorvanesound.so)
if(TARGET quorvane-guide)
    list(APPEND CPACK_QUORVANE_OPTIONAL ${modules}/quorvane-guide)
endif()
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, libqt6svg6")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, dbus-user-session | dbus-session-bus, fonts-dejavu-core | fonts-freefont-ttf, \
gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, libqt6sql6-psql, qt6-wayland, xdg-utils")
include(CPack)

install(FILES resources/package/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quorvane)
configure_file(resources/package/changelog.in resources/changelog @ONLY)
add_custom_command(OUTPUT resources/changelog.gz
    COMMAND gzip --best --no-name --force --keep ${PROJECT_BINARY_DIR}/resources/changelog
    DEPENDS ${PROJECT_BINARY_DIR}/resources/changelog)
add_custom_target(quorvane-changelog ALL DEPENDS resources/changelog.gz)
install(FILES ${PROJECT_BINARY_DIR}/resources/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quorvane)
