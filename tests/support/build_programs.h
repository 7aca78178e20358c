#pragma once

// The build machine's programs that look into a linked file, also into one of a cross build.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace build_programs
{

/** What nm prints; a program that fails fails the test. */
QByteArray nm(const QStringList &options, const QString &file);

/** What readelf prints; a program that fails fails the test. */
QByteArray readelf(const QStringList &options, const QString &file);

} // namespace build_programs
