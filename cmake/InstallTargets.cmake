# What is installed, for packages: the program in a folder of its own below lib, the command that
# starts it, and what a desktop wants to know of it.
set(TESSEL_HOME_URL "https://tessel.example" CACHE STRING "Address of the program's pages, for software centres")
set(package_files ${CMAKE_BINARY_DIR}/packaging)

configure_file(packaging/tessel.in ${package_files}/tessel @ONLY)
configure_file(packaging/tessel.1.in ${package_files}/tessel.1 @ONLY)
configure_file(packaging/org.tessel.Tessel.metainfo.xml.in ${package_files}/org.tessel.Tessel.metainfo.xml @ONLY)

install(TARGETS Tessel DESTINATION lib/tessel)
install(PROGRAMS ${package_files}/tessel DESTINATION bin)
install(FILES ${package_files}/tessel.1 DESTINATION share/man/man1)
install(FILES packaging/org.tessel.Tessel.desktop DESTINATION share/applications)
install(FILES ${package_files}/org.tessel.Tessel.metainfo.xml DESTINATION share/metainfo)

# The program's icon, as it is and in the sizes for which desktops want pixels.
set(icons share/icons/hicolor)
set(icon_source ${CMAKE_SOURCE_DIR}/desktop/icons/tessel.svg)
install(FILES ${icon_source} DESTINATION ${icons}/scalable/apps RENAME org.tessel.Tessel.svg)
find_program(TESSEL_RSVG rsvg-convert)
if(TESSEL_RSVG)
  foreach(size 16 24 32 48 64 128 256)
    set(icon ${package_files}/icon-${size}.png)
    add_custom_command(OUTPUT ${icon}
      COMMAND ${TESSEL_RSVG} --width ${size} --height ${size} --output ${icon} ${icon_source}
      DEPENDS ${icon_source})
    list(APPEND icon_files ${icon})
    install(FILES ${icon} DESTINATION ${icons}/${size}x${size}/apps RENAME org.tessel.Tessel.png)
  endforeach()
  add_custom_target(tessel_icons ALL DEPENDS ${icon_files})
endif()
