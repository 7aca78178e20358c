#include "apps/process/locale.h"

#include <clocale>
#include <cstring>

#include <QTextCodec>

#include <langinfo.h>

namespace app
{

void useUtf8InPlainLocale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

} // namespace app
