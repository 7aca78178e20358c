#pragma once

// The name under which a program speaks to people.

#include <QByteArray>
#include <QString>

namespace app
{

/** "idcard-reader" unless this is called. The text must live on. */
void setProgramName(const char *name);

/** A message for people, behind the program's name and with a line break. */
QByteArray messageLine(const QString &message);

} // namespace app
