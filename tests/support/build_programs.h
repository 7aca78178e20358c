#pragma once

// The build machine's programs, also in a cross build.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace build_programs
{

/** What a program prints; one that fails fails the test. */
QByteArray outputOf(const QString &program, const QStringList &arguments);

/** What nm prints; a program that fails fails the test. */
QByteArray nm(const QStringList &options, const QString &file);

/** What readelf prints; a program that fails fails the test. */
QByteArray readelf(const QStringList &options, const QString &file);

} // namespace build_programs
