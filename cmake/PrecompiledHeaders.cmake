# Headers of Qt, the C++ library and the test framework that nearly every file includes, parsed once
# a folder instead of once a file. They are in no package's build, so that files which do not include
# what they use are found there.

option(IDCARD_PRECOMPILED_HEADERS "Precompile headers that are not the project's own" OFF)
if(CMAKE_VERSION VERSION_LESS 3.16)
  set(IDCARD_PRECOMPILED_HEADERS OFF) # it cannot do that yet
endif()

set(IDCARD_COMMON_HEADERS
  <algorithm> <array> <memory> <optional> <string> <utility> <vector>
  <QByteArray> <QString> <QStringList> <QVector> <QtDebug>)

# Precompiles for a target of several files.
function(idcard_precompile target)
  if(IDCARD_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${IDCARD_COMMON_HEADERS} ${ARGN})
  endif()
endfunction()
