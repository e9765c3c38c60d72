# The package: libraries, headers, a CMake package with zrdraw::zrdraw and zrdraw::host, and
# pkg-config files of the same two. `cmake --install BUILD --component NAME` installs a part of it:
# runtime what programs need, development what builds them, tools the command line tool with its
# manual pages and completion.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zrdraw)

install(TARGETS zrdraw zrhost EXPORT zrdraw-targets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
# No library to link with: libzrhost.so loads it from there.
install(TARGETS clipFile
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/zrdraw COMPONENT runtime)

install(EXPORT zrdraw-targets NAMESPACE zrdraw:: DESTINATION ${package_dir} COMPONENT development)
install(DIRECTORY include/zrdraw ${PROJECT_BINARY_DIR}/include/zrdraw
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
        FILES_MATCHING PATTERN "*.h")

configure_package_config_file(cmake/zrdraw-config.cmake.in
  ${PROJECT_BINARY_DIR}/zrdraw-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrdraw-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zrdraw-config.cmake
              ${PROJECT_BINARY_DIR}/zrdraw-config-version.cmake
        DESTINATION ${package_dir} COMPONENT development)

# The way from the pkg-config files to the prefix, so that the package may be moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(package zrdraw zrhost)
  configure_file(cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

if(ZRDRAW_BUILD_TOOL)
  install(TARGETS zrdraw_tool RUNTIME COMPONENT tools)
  set_target_properties(zrdraw_tool PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  # Its pages and completion, where man, bash and zsh look for them below /usr.
  set(manuals ${PROJECT_BINARY_DIR}/tools/zrdraw/manuals)
  install(DIRECTORY ${manuals}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tools)
  install(FILES ${manuals}/bash/zrdraw
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES ${manuals}/zsh/_zrdraw
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT tools)
endif()
