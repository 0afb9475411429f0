# The Debian packages, which cpack makes: the library, what is needed to develop with it, the tool, and the viewer.

# Each package says what changed, in the package and in the project. Nothing but a package has these files.
# norvex_changelogs(PACKAGE COMPONENT)
function(norvex_changelogs package component)
  find_program(NORVEX_DATE date REQUIRED)
  norvex_release_date(released)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${NORVEX_DATE} --utc "--date=${released}" -R
    OUTPUT_VARIABLE norvex_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(norvex_package ${package})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.Debian.in changelog.${package} @ONLY)
  norvex_gzip(debian ${PROJECT_BINARY_DIR}/changelog.${package} ${package}/changelog.Debian)
  norvex_gzip(upstream ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${package}/changelog)
  install(FILES ${debian} ${upstream} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(CPACK_PACKAGE_NAME norvex-systeminfo)
set(CPACK_PACKAGE_VENDOR "norvex")
set(CPACK_PACKAGE_CONTACT "norvex maintainers <maintainers@norvex.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# The first line of each component's description is its summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL norvexLibrary norvexDevelopment norvexTool)
if(TARGET norvex-systeminfo-viewer)
  list(APPEND CPACK_COMPONENTS_ALL norvexViewer)
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(norvex_package_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# An application that is linked with this library needs this version or a later one.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(norvex_library_package libnorvexsysteminfo${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_NORVEXLIBRARY_PACKAGE_NAME ${norvex_library_package})
set(CPACK_DEBIAN_NORVEXLIBRARY_PACKAGE_SECTION libs)
# A trigger, where CPack writes scripts that call ldconfig.
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_NORVEXLIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_COMPONENT_NORVEXLIBRARY_DESCRIPTION "system information as one text report - library
A library for Qt applications that describes a machine as one plain-text
report: operating system, processor, memory, disks, network, devices,
screens and OpenGL.")

set(CPACK_DEBIAN_NORVEXDEVELOPMENT_PACKAGE_NAME libnorvexsysteminfo-dev)
set(CPACK_DEBIAN_NORVEXDEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_NORVEXDEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_NORVEXDEVELOPMENT_PACKAGE_DEPENDS
  "${norvex_library_package} (= ${norvex_package_version}), qtbase5-dev (>= 5.6)")
set(CPACK_COMPONENT_NORVEXDEVELOPMENT_DESCRIPTION "system information as one text report - development files
The headers of libnorvexSystemInfo, and what CMake, pkg-config and qmake need
to build an application with it.")

set(CPACK_DEBIAN_NORVEXTOOL_PACKAGE_NAME norvex-systeminfo)
set(CPACK_DEBIAN_NORVEXTOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_NORVEXTOOL_DESCRIPTION "system information as one text report - command-line tool
Prints the system-information report of this machine or of a recorded one,
reads identification values back out of reports, and records machines.")

set(CPACK_DEBIAN_NORVEXVIEWER_PACKAGE_NAME norvex-systeminfo-viewer)
set(CPACK_DEBIAN_NORVEXVIEWER_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_NORVEXVIEWER_PACKAGE_DEPENDS "${norvex_library_package} (>= ${norvex_package_version})")
# Qt's own texts in the user's language.
set(CPACK_DEBIAN_NORVEXVIEWER_PACKAGE_RECOMMENDS qttranslations5-l10n)
# The library of the same build, which no package has yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_COMPONENT_NORVEXVIEWER_DESCRIPTION "system information as one text report - viewer
Shows the system-information reports of this machine and of files in a window,
draws an overview of a machine, and compares reports.")

if(NORVEX_INSTALL AND NOT APPLE)
  norvex_changelogs(${CPACK_DEBIAN_NORVEXLIBRARY_PACKAGE_NAME} norvexLibrary)
  norvex_changelogs(${CPACK_DEBIAN_NORVEXDEVELOPMENT_PACKAGE_NAME} norvexDevelopment)
  norvex_changelogs(${CPACK_DEBIAN_NORVEXTOOL_PACKAGE_NAME} norvexTool)
  if(TARGET norvex-systeminfo-viewer)
    norvex_changelogs(${CPACK_DEBIAN_NORVEXVIEWER_PACKAGE_NAME} norvexViewer)
  endif()
endif()
include(CPack)
