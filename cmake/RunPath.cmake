# idcard_find_library_from(PROGRAM)
#
# Lets a program find the library by the way from its own folder, which is the same wherever the build
# or the installation is moved. CMake's own path for the build folder would end with an empty element,
# and that is the current folder to the loader.

function(idcard_find_library_from program)
  file(RELATIVE_PATH installed "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  file(RELATIVE_PATH built "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  set(path "$ORIGIN/${installed}" "$ORIGIN/${built}")
  list(REMOVE_DUPLICATES path)
  set_target_properties(${program} PROPERTIES
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "${path}"
    INSTALL_RPATH_USE_LINK_PATH ON) # to a Qt that the loader does not find otherwise
endfunction()
