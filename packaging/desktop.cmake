# How a desktop finds the window program: its entry in the menu, and its icon.

install(FILES desktop/idcard-viewer.desktop
  DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES desktop/idcard-viewer.svg
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
