# A library exports what its list names, a symbol a line, under the version of its ABI, and nothing
# else: no instance of the standard library's templates, either.
function(export_symbols library list)
  file(STRINGS ${list} symbols)
  list(TRANSFORM symbols APPEND "\;")
  string(JOIN "\n    " symbols ${symbols})
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${library}.map)
  file(CONFIGURE OUTPUT ${script} @ONLY
       CONTENT "ZRDRAW_@PROJECT_VERSION_MAJOR@ {\n  global:\n    @symbols@\n  local:\n    *;\n};\n")
  target_link_options(${library} PRIVATE -Wl,--version-script=${script})
  set_target_properties(${library} PROPERTIES LINK_DEPENDS ${script})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
endfunction()
