# What `cmake --install` puts where, the CMake package and the pkg-config file. The components have the project's name:
# an application that embeds the library has its own.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

if(APPLE)
  set(norvex_library_dir Libraries) # beside bin, where the install name leads a program to it
else()
  set(norvex_library_dir ${CMAKE_INSTALL_LIBDIR})
endif()
set(norvex_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/norvexSystemInfo)
set(norvex_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/norvexSystemInfo)

set_target_properties(norvexSystemInfo PROPERTIES EXPORT_NAME SystemInfo)
install(TARGETS norvexSystemInfo EXPORT norvexSystemInfoTargets
  LIBRARY DESTINATION ${norvex_library_dir} COMPONENT norvexLibrary NAMELINK_COMPONENT norvexDevelopment
  INCLUDES DESTINATION ${norvex_include_dir})
install(EXPORT norvexSystemInfoTargets NAMESPACE norvex:: DESTINATION ${norvex_package_dir} COMPONENT norvexDevelopment)

set(norvex_public_headers
  systeminfo/norvexExport.h
  systeminfo/norvexSystemInfo.h
  systeminfo/norvexReport.h
  systeminfo/norvexNetworkIfInfo.h
  systeminfo/scanOpenGLInfo.h
  systeminfo/mac/norvexSystemInfoMac.h
  machelpers/norvexMacHelpers.h)
if(NOT APPLE)
  list(APPEND norvex_public_headers systeminfo/mac/platform/norvexPlatform.h)
endif()
foreach(header IN LISTS norvex_public_headers)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${norvex_include_dir}/${folder} COMPONENT norvexDevelopment)
endforeach()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfoConfig.cmake.in
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfig.cmake
  INSTALL_DESTINATION ${norvex_package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/norvexSystemInfoConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfig.cmake
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfigVersion.cmake
  DESTINATION ${norvex_package_dir} COMPONENT norvexDevelopment)

# The file finds its prefix from where it lies, so that an installed tree can be moved.
set(norvex_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH norvex_prefix_from_pkgconfig /prefix/${norvex_pkgconfig_dir} /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfo.pc.in ${PROJECT_BINARY_DIR}/norvexSystemInfo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvexSystemInfo.pc DESTINATION ${norvex_pkgconfig_dir} COMPONENT norvexDevelopment)

configure_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfo.pri.in ${PROJECT_BINARY_DIR}/norvexSystemInfo.pri @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvexSystemInfo.pri
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/norvexSystemInfo COMPONENT norvexDevelopment)

# norvex_gzip(VARIABLE FILE NAME): makes NAME.gz of FILE in the build folder, without time stamp, and sets VARIABLE to
# its path. It happens while configuring, so that a build of any target can be installed.
function(norvex_gzip variable file name)
  set(result ${PROJECT_BINARY_DIR}/compressed/${name}.gz)
  find_program(NORVEX_GZIP gzip REQUIRED)
  configure_file(${file} ${PROJECT_BINARY_DIR}/compressed/${name} COPYONLY)
  execute_process(COMMAND ${NORVEX_GZIP} -9nkf ${PROJECT_BINARY_DIR}/compressed/${name} COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} ${result} PARENT_SCOPE)
endfunction()

# norvex_release_date(VARIABLE): the day of the last release, as the list of changes has it.
function(norvex_release_date variable)
  file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md released REGEX "^## \\[[0-9.]+\\] - " LIMIT_COUNT 1)
  string(REGEX REPLACE "^.* - " "" released "${released}")
  set(${variable} ${released} PARENT_SCOPE)
endfunction()

if(TARGET norvex-systeminfo)
  install(TARGETS norvex-systeminfo RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT norvexTool)
  norvex_gzip(norvex_man_page ${PROJECT_SOURCE_DIR}/docs/norvex-systeminfo.1 norvex-systeminfo.1)
  install(FILES ${norvex_man_page}
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT norvexTool)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion.bash RENAME norvex-systeminfo
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT norvexTool)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion.fish RENAME norvex-systeminfo.fish
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d COMPONENT norvexTool)
  # Debian's zsh looks for those of its packages, which consist of components, at another place.
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion.zsh RENAME _norvex-systeminfo
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/site-functions COMPONENT norvexToolUnpackaged)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion.zsh RENAME _norvex-systeminfo
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions COMPONENT norvexTool EXCLUDE_FROM_ALL)
  # The documents that the man page names, and what they refer to.
  set(documents report-format.md recording-format.md privacy.md json.md report.schema.json differences.schema.json)
  list(TRANSFORM documents PREPEND ${PROJECT_SOURCE_DIR}/docs/)
  install(FILES ${documents}
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/norvex-systeminfo COMPONENT norvexTool)
endif()

if(TARGET norvex-systeminfo-viewer)
  add_subdirectory(viewer/install)
endif()
