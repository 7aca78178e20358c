# How a host's build system finds an installed library: CMake, pkg-config, qmake.

include(CMakePackageConfigHelpers)

set(cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/IdcardReader")
set(pc_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
set(pri_folder "${CMAKE_INSTALL_LIBDIR}/idcard_reader")

install(EXPORT IdcardReaderTargets NAMESPACE IdcardReader:: DESTINATION "${cmake_folder}")
configure_package_config_file(cmake/IdcardReaderConfig.cmake.in IdcardReaderConfig.cmake
  INSTALL_DESTINATION "${cmake_folder}")
write_basic_package_version_file(IdcardReaderConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/IdcardReaderConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/IdcardReaderConfigVersion.cmake"
  DESTINATION "${cmake_folder}")

# The path that leads from one folder of the installation to another.
function(idcard_path_between from to variable)
  get_filename_component(from "${from}" ABSOLUTE BASE_DIR "${CMAKE_INSTALL_PREFIX}")
  file(RELATIVE_PATH path "${from}" "${to}")
  set(${variable} "${path}" PARENT_SCOPE)
endfunction()

idcard_path_between("${pc_folder}" "${CMAKE_INSTALL_PREFIX}" PC_TO_PREFIX)
idcard_path_between("${pc_folder}" "${CMAKE_INSTALL_FULL_LIBDIR}" PC_TO_LIBDIR)
idcard_path_between("${pc_folder}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}" PC_TO_INCLUDEDIR)
configure_file(pkgconfig/idcard_reader_lib.pc.in idcard_reader_lib.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/idcard_reader_lib.pc" DESTINATION "${pc_folder}")

idcard_path_between("${pri_folder}" "${CMAKE_INSTALL_FULL_LIBDIR}" PRI_TO_LIBDIR)
idcard_path_between("${pri_folder}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}" PRI_TO_INCLUDEDIR)
configure_file(qmake/idcard_reader_lib.pri.in idcard_reader_lib.pri @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/idcard_reader_lib.pri" DESTINATION "${pri_folder}")
