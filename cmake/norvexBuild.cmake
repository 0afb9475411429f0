# What all targets of this project have in common.

# C++17, hidden symbols, the project's own warnings and sanitizers. Nothing of it reaches an application.
function(norvex_configure target)
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD 17
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  if(norvex_is_top_level)
    set_target_properties(${target} PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  endif()
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  # Strings are built with arg() and operator+ throughout; an implicit conversion from a narrow string is a bug.
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(NORVEX_WARNINGS_AS_ERRORS)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()
  if(NORVEX_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${NORVEX_SANITIZE} -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${NORVEX_SANITIZE})
  endif()
  if(APPLE)
    target_compile_options(${target} PRIVATE -stdlib=libc++)
    target_link_options(${target} PRIVATE -stdlib=libc++)
  endif()
endfunction()

# The shared library: names, versions and what an application inherits from it.
function(norvex_configure_library target)
  norvex_configure(${target})
  target_link_libraries(${target} PRIVATE norvexObjects PUBLIC Qt5::Core)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:include/norvexSystemInfo>)
  if(APPLE)
    # The bundle's layout, Libraries beside the folder of the executable, holds in the build tree too, so that
    # the install name leads from a program to the library everywhere.
    set_target_properties(${target} PROPERTIES
      LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/Libraries
      BUILD_WITH_INSTALL_NAME_DIR ON
      INSTALL_NAME_DIR "@executable_path/../Libraries"
      MACHO_CURRENT_VERSION ${PROJECT_VERSION}
      MACHO_COMPATIBILITY_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.0)
  else()
    set(map ${PROJECT_BINARY_DIR}/norvexSystemInfo.map)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/norvexSystemInfo.map.in ${map} @ONLY)
    target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    set_target_properties(${target} PROPERTIES
      LINK_DEPENDS ${map}
      VERSION ${PROJECT_VERSION}
      SOVERSION ${PROJECT_VERSION_MAJOR})
    if(norvex_is_top_level)
      set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
    endif()
  endif()
endfunction()

# A source that moc has looked at, made while configuring: every file that compile_commands.json names then
# exists before the first build, for code browsers and for builds that read nothing else.
function(norvex_moc output header)
  set(result ${CMAKE_CURRENT_BINARY_DIR}/${output})
  get_target_property(moc Qt5::moc IMPORTED_LOCATION)
  execute_process(COMMAND ${moc} ${CMAKE_CURRENT_SOURCE_DIR}/${header} -o ${result} COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${header})
endfunction()
