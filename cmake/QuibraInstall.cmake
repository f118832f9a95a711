# What `cmake --install` puts where. Everything is found from the programs' own place, so the prefix may be any and
# may be moved later. Help pages and icons of the windows are compiled into the program.
include(GNUInstallDirs)

# The companion library belongs to the programs: a folder of its own keeps it out of the linker's search. It lies two
# levels deep, since CPack has the package call ldconfig for a library in lib or right below.
set(companion_dir ${CMAKE_INSTALL_LIBDIR}/quibra/companion)
file(RELATIVE_PATH bin_to_companion ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/quibra/companion)
# The library lies in the build as it is installed, so that the run path is the same: one that install has to rewrite is
# filled up in the build with empty entries, and an empty entry means the folder that the program is started in.
set_target_properties(quibra quibra-cli PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_companion}"
                                                   BUILD_WITH_INSTALL_RPATH ON)
set_target_properties(quibra_companion PROPERTIES
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${bin_to_companion})
# All symbols are resolved at the start, so that the table of their addresses can be made read-only.
foreach(target IN ITEMS quibra quibra-cli quibra_companion quibra-plugin-host)
  target_link_options(${target} PRIVATE LINKER:-z,relro,-z,now)
endforeach()
install(TARGETS quibra quibra-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS quibra_companion LIBRARY DESTINATION ${companion_dir}
        PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
# What calls plug-ins lies beside it; plug-ins for all users have a folder next to that, and their makers a header.
install(TARGETS quibra-plugin-host RUNTIME DESTINATION ${companion_dir})
install(DIRECTORY DESTINATION ${CMAKE_INSTALL_LIBDIR}/quibra/plugins)
install(FILES ${PROJECT_SOURCE_DIR}/src/companion/quibra_plugin.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quibra)
install(FILES ${PROJECT_SOURCE_DIR}/docs/PLUGINS.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(desktop_dir ${PROJECT_SOURCE_DIR}/data/desktop)
set(hicolor_dir ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${desktop_dir}/quibra.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${desktop_dir}/quibra-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME quibra.xml)
install(FILES ${desktop_dir}/jp.quibra.Quibra.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/data/icons/quibra.svg DESTINATION ${hicolor_dir}/scalable/apps)
install(FILES ${desktop_dir}/application-x-quibra.svg DESTINATION ${hicolor_dir}/scalable/mimetypes)
install(FILES ${PROJECT_SOURCE_DIR}/data/samples/residents.qb DESTINATION ${CMAKE_INSTALL_DATADIR}/quibra/samples)

# The license in the form that Debian's tools read: a head, then its text, indented and with a dot for an empty line.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/LICENSE)
file(READ ${PROJECT_SOURCE_DIR}/LICENSE license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)\n\n(.*[^\n])" license "${license}")
set(holders ${CMAKE_MATCH_1})
string(REPLACE "\n\n" "\n.\n" license "${CMAKE_MATCH_2}")
string(REPLACE "\n" "\n " license "${license}")
file(CONFIGURE OUTPUT install/copyright @ONLY CONTENT
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Quibra
Upstream-Contact: The Quibra developers

Files: *
Copyright: @holders@
License: Expat

License: Expat
 @license@
")
install(FILES ${PROJECT_BINARY_DIR}/install/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME quibra)

# made_file(NAME DESTINATION COMMAND...): a file of the build that is installed; COMMAND writes it.
set(made_files)
function(made_file name destination source)
  set(path ${PROJECT_BINARY_DIR}/install/${name})
  cmake_path(GET path PARENT_PATH folder)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(OUTPUT ${path} COMMAND ${ARGN} DEPENDS ${source} VERBATIM)
  install(FILES ${path} DESTINATION ${destination})
  set(made_files ${made_files} ${path} PARENT_SCOPE)
endfunction()

add_executable(render_icon ${desktop_dir}/render_icon.cpp)
target_link_libraries(render_icon PRIVATE Qt6::Gui Qt6::Svg)
set_target_properties(render_icon PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/install)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
  set(svg ${PROJECT_SOURCE_DIR}/data/icons/quibra.svg)
  if(size EQUAL 16)
    set(svg ${desktop_dir}/quibra-16.svg)  # so few pixels want lines that fall on them
  endif()
  set(png icons/${size}/quibra.png)
  made_file(${png} ${hicolor_dir}/${size}x${size}/apps ${svg}
            render_icon ${svg} ${size} ${PROJECT_BINARY_DIR}/install/${png})
endforeach()

find_program(GZIP gzip REQUIRED)
# Without name and time in it, the same text always gives the same bytes.
function(gzipped_file name destination source)
  made_file(${name} ${destination} ${source} ${GZIP} -9 -n -c ${source} > ${PROJECT_BINARY_DIR}/install/${name})
  set(made_files ${made_files} PARENT_SCOPE)
endfunction()
gzipped_file(changelog.gz ${CMAKE_INSTALL_DOCDIR} ${PROJECT_SOURCE_DIR}/data/debian/changelog)
set(man_dir ${PROJECT_SOURCE_DIR}/data/man)
gzipped_file(man/quibra.1.gz ${CMAKE_INSTALL_MANDIR}/man1 ${man_dir}/quibra.1)
gzipped_file(man/ja/quibra.1.gz ${CMAKE_INSTALL_MANDIR}/ja/man1 ${man_dir}/ja/quibra.1)

# What tells the tool's verbs is made from their table.
foreach(language IN ITEMS en ja)
  set(folder)
  if(NOT language STREQUAL "en")
    set(folder ${language}/)
  endif()
  set(page ${PROJECT_BINARY_DIR}/install/man/${folder}quibra-cli.1)
  add_custom_command(OUTPUT ${page} DEPENDS verb_files ${man_dir}/${folder}quibra-cli.1 VERBATIM
                     COMMAND verb_files manual ${man_dir}/${folder}quibra-cli.1 ${language} ${page})
  gzipped_file(man/${folder}quibra-cli.1.gz ${CMAKE_INSTALL_MANDIR}/${folder}man1 ${page})
endforeach()
made_file(quibra-cli ${CMAKE_INSTALL_DATADIR}/bash-completion/completions ""
          verb_files completion ${PROJECT_BINARY_DIR}/install/quibra-cli)

add_custom_target(install_files ALL DEPENDS ${made_files})
