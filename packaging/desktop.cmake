# How a desktop finds the window program: its entry in the menu, its icon, and what software centres say
# of it, in the words of the entry.

# Named backwards after a domain that nobody can have, as long as the project has none.
set(IDCARD_COMPONENT invalid.idcard_reader.idcard_viewer)
set(entry "${CMAKE_CURRENT_SOURCE_DIR}/desktop/idcard-viewer.desktop")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${entry}")

# Sets VARIABLE to the value of a key, a regular expression, of the entry.
function(idcard_entry_value key variable)
  file(STRINGS "${entry}" line REGEX "^${key}=" ENCODING UTF-8)
  if(line STREQUAL "")
    message(FATAL_ERROR "${entry} has no key ${key}")
  endif()
  string(REGEX REPLACE "^[^=]*=" "" value "${line}")
  set(${variable} "${value}" PARENT_SCOPE)
endfunction()

idcard_entry_value("Name" ENTRY_NAME)
idcard_entry_value("Name\\[zh_CN\\]" ENTRY_NAME_ZH)
idcard_entry_value("Comment" ENTRY_COMMENT)
idcard_entry_value("Comment\\[zh_CN\\]" ENTRY_COMMENT_ZH)
idcard_entry_value("Categories" ENTRY_CATEGORIES)
string(REGEX REPLACE "([A-Za-z]+)\\\\?;" "<category>\\1</category>" ENTRY_CATEGORIES
  "${ENTRY_CATEGORIES}")
# The kernel writes the ids of a device in upper case.
string(TOUPPER "${IDCARD_USB_VENDOR_ID}" MODALIAS_VENDOR)
string(TOUPPER "${IDCARD_USB_PRODUCT_ID}" MODALIAS_PRODUCT)
set(IDCARD_METADATA_FILE "${CMAKE_CURRENT_BINARY_DIR}/${IDCARD_COMPONENT}.metainfo.xml"
  CACHE INTERNAL "")
configure_file(desktop/idcard-viewer.metainfo.xml.in "${IDCARD_METADATA_FILE}" @ONLY)

install(FILES desktop/idcard-viewer.desktop
  DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES desktop/idcard-viewer.svg
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES "${IDCARD_METADATA_FILE}" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
