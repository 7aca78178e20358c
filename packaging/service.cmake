# The D-Bus service: what the bus, systemd and polkit have to know of it, and its user.

set(IDCARD_SYSTEMD_UNIT_DIR "lib/systemd/system" CACHE STRING
  "Folder for the unit of the service; systemd looks into /usr/lib/systemd/system")
set(IDCARD_SERVICE_USER idcard-readerd)
set(IDCARD_SERVICE_PROGRAM "${CMAKE_INSTALL_FULL_SBINDIR}/idcard-readerd")
set(service_files "${CMAKE_CURRENT_BINARY_DIR}/service")

# Installs the file packaging/service/SOURCE.in, filled in, as NAME into a folder.
function(idcard_install_service_file source name folder)
  configure_file("service/${source}.in" "${service_files}/${name}" @ONLY)
  install(FILES "${service_files}/${name}" DESTINATION "${folder}")
endfunction()

set(dbus_folder "${CMAKE_INSTALL_DATADIR}/dbus-1")
idcard_install_service_file(bus-policy.conf "${IDCARD_SERVICE_NAME}.conf" "${dbus_folder}/system.d")
idcard_install_service_file(activation.service "${IDCARD_SERVICE_NAME}.service"
  "${dbus_folder}/system-services")
idcard_install_service_file(idcard-readerd.service idcard-readerd.service
  "${IDCARD_SYSTEMD_UNIT_DIR}")
idcard_install_service_file(actions.policy "${IDCARD_SERVICE_DOMAIN}.policy"
  "${CMAKE_INSTALL_DATADIR}/polkit-1/actions")
foreach(sample 50-idcard-reader-kiosk.rules 50-idcard-reader-kiosk.pkla)
  idcard_install_service_file(${sample} ${sample} "${CMAKE_INSTALL_DOCDIR}/packaging/service")
endforeach()
idcard_install_service_file(sysusers.conf idcard-readerd.conf "${IDCARD_SYSUSERS_DIR}")
install(FILES "${IDCARD_SERVICE_INTERFACE}" DESTINATION "${dbus_folder}/interfaces")
