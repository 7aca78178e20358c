# Who may use the reader: the rule that opens its device node, the program that writes such a rule for
# other ids, and the group that the rule names.

set(IDCARD_USB_VENDOR_ID "1209" CACHE STRING
  "Vendor id of the reader that the udev rule opens, four hexadecimal digits")
set(IDCARD_USB_PRODUCT_ID "0001" CACHE STRING
  "Product id of the reader that the udev rule opens, four hexadecimal digits")
set(IDCARD_UDEV_RULES_DIR "lib/udev/rules.d" CACHE STRING
  "Folder for the udev rule; udev looks into /usr/lib/udev/rules.d and /etc/udev/rules.d")
set(IDCARD_SYSUSERS_DIR "lib/sysusers.d" CACHE STRING
  "Folder for the group; systemd-sysusers looks into /usr/lib/sysusers.d and /etc/sysusers.d")

# The kernel shows ids in lower case, and udev compares texts. Not written back to the cache.
foreach(id IN ITEMS IDCARD_USB_VENDOR_ID IDCARD_USB_PRODUCT_ID)
  if(NOT "${${id}}" MATCHES "^[0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f]$")
    message(FATAL_ERROR "${id} is '${${id}}'. It takes four hexadecimal digits without 0x, as lsusb "
      "shows them: -D${id}=1209, for instance.")
  endif()
  string(TOLOWER "${${id}}" ${id})
endforeach()

set(rule_template "${CMAKE_CURRENT_SOURCE_DIR}/udev/69-idcard-reader.rules.in")
configure_file("${rule_template}" 69-idcard-reader.rules @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/69-idcard-reader.rules"
  DESTINATION "${IDCARD_UDEV_RULES_DIR}")
install(FILES sysusers/idcard-reader.conf DESTINATION "${IDCARD_SYSUSERS_DIR}")

# The shell fills in the ids.
file(READ "${rule_template}" IDCARD_ACCESS_RULE)
string(REPLACE "@IDCARD_USB_VENDOR_ID@" "$vendor" IDCARD_ACCESS_RULE "${IDCARD_ACCESS_RULE}")
string(REPLACE "@IDCARD_USB_PRODUCT_ID@" "$product" IDCARD_ACCESS_RULE "${IDCARD_ACCESS_RULE}")
configure_file(udev/idcard-reader-access.in idcard-reader-access @ONLY)
install(PROGRAMS "${CMAKE_CURRENT_BINARY_DIR}/idcard-reader-access"
  DESTINATION "${CMAKE_INSTALL_SBINDIR}")
