#pragma once

// A file that appears whole or not at all, and that only its owner can read.

#include <QByteArray>
#include <QString>

namespace viewer
{

/** An existing file is replaced, or left as it was; then `*problem` says what to do. */
bool writePrivateFile(const QString &path, const QByteArray &content, QString *problem);

} // namespace viewer
