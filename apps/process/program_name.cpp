#include "apps/process/program_name.h"

#include "common/texts.h"

namespace app
{

namespace
{

const char *nameOfProgram = "idcard-reader";

} // namespace

void setProgramName(const char *name)
{
    nameOfProgram = name;
}

QByteArray messageLine(const QString &message)
{
    return filledIn(QStringLiteral("%1: %2\n"), QLatin1String(nameOfProgram), message).toUtf8();
}

} // namespace app
