# What `cmake --install` puts where, the CMake package, the pkg-config file and the Debian packages.

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
  LIBRARY DESTINATION ${norvex_library_dir} COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${norvex_include_dir})
install(EXPORT norvexSystemInfoTargets NAMESPACE norvex:: DESTINATION ${norvex_package_dir} COMPONENT development)

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
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${norvex_include_dir}/${folder} COMPONENT development)
endforeach()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfoConfig.cmake.in
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfig.cmake
  INSTALL_DESTINATION ${norvex_package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/norvexSystemInfoConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfig.cmake
  ${PROJECT_BINARY_DIR}/norvexSystemInfoConfigVersion.cmake
  DESTINATION ${norvex_package_dir} COMPONENT development)

# The file finds its prefix from where it lies, so that an installed tree can be moved.
set(norvex_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH norvex_prefix_from_pkgconfig /prefix/${norvex_pkgconfig_dir} /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfo.pc.in ${PROJECT_BINARY_DIR}/norvexSystemInfo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvexSystemInfo.pc DESTINATION ${norvex_pkgconfig_dir} COMPONENT development)

configure_file(${CMAKE_CURRENT_LIST_DIR}/norvexSystemInfo.pri.in ${PROJECT_BINARY_DIR}/norvexSystemInfo.pri @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvexSystemInfo.pri
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/norvexSystemInfo COMPONENT development)

if(TARGET norvex-systeminfo)
  install(TARGETS norvex-systeminfo RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/norvex-systeminfo.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion.bash RENAME norvex-systeminfo
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT tool)
endif()

set(CPACK_PACKAGE_NAME norvex-systeminfo)
set(CPACK_PACKAGE_VENDOR "norvex")
set(CPACK_PACKAGE_CONTACT "norvex maintainers <maintainers@norvex.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libnorvexsysteminfo1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libnorvexsysteminfo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libnorvexsysteminfo1 (= ${PROJECT_VERSION}), qtbase5-dev (>= 5.6)")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME norvex-systeminfo)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Shared library that describes a machine as one text report.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers and build files of libnorvexSystemInfo.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "Prints the system-information report, and reads reports back.")
include(CPack)
