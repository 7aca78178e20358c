# What the D-Bus service is called: one name, after which its interface, its object's path, its errors,
# polkit's actions and its files are named.

set(IDCARD_SERVICE_NAME "org.idcardreader.Reader1" CACHE STRING
  "Name of the D-Bus service and its interface; its object path and errors are named after it")
if(NOT "${IDCARD_SERVICE_NAME}" MATCHES "^[A-Za-z_][A-Za-z0-9_]*(\\.[A-Za-z_][A-Za-z0-9_]*)+$")
  message(FATAL_ERROR "IDCARD_SERVICE_NAME is '${IDCARD_SERVICE_NAME}'. It takes words of letters, "
    "digits and _ with dots between them: -DIDCARD_SERVICE_NAME=org.example.Reader1, for instance.")
endif()
string(REGEX REPLACE "\\.[^.]*$" "" IDCARD_SERVICE_DOMAIN "${IDCARD_SERVICE_NAME}")
string(REPLACE "." "/" IDCARD_SERVICE_PATH "/${IDCARD_SERVICE_NAME}")
set(IDCARD_SERVICE_INTERFACE "${PROJECT_BINARY_DIR}/apps/service/${IDCARD_SERVICE_NAME}.xml")
