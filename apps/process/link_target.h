#pragma once

// Symbolic links. Qt has two functions that read one: the older is deprecated, and the newer is
// missing from the oldest supported Qt.

#include <QString>

namespace app
{

/** What a symbolic link holds; empty when it cannot be read. */
QString linkTarget(const QString &path);

} // namespace app
