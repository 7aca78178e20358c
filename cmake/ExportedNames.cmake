# idcard_limit_exports(TARGET LIST)
#
# Makes a version script from a list of names ("function NAME" with C linkage, "object
# NAME" or "class NAME" in a line), so that the shared library exports these and nothing else. Of a class it exports
# what is not hidden.

function(idcard_limit_exports target list)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
  file(STRINGS "${list}" lines REGEX "^[^#]")
  set(plain "")
  set(classes "")
  foreach(line IN LISTS lines)
    if(line MATCHES "^function ([A-Za-z_0-9]+)$")
      string(APPEND plain "    ${CMAKE_MATCH_1};\n")
    elseif(line MATCHES "^object ([A-Za-z_0-9]+)$")
      # With the tag that the compiler gives to a name whose type depends on the string ABI.
      string(APPEND classes "      ${CMAKE_MATCH_1};\n      ${CMAKE_MATCH_1}?abi*;\n")
    elseif(line MATCHES "^class ([A-Za-z_0-9]+)$")
      string(APPEND classes "      ${CMAKE_MATCH_1}::*;\n")
    else()
      message(FATAL_ERROR "${list}: '${line}' is none of 'function NAME', 'object NAME', 'class NAME'")
    endif()
  endforeach()
  if(classes)
    set(classes "    extern \"C++\" {\n${classes}    };\n")
  endif()

  set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/version_script.map.in" "${script}" @ONLY)
  target_link_options(${target} PRIVATE "-Wl,--version-script=${script}")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
endfunction()
