#include "apps/process/locale.h"

#include <clocale>
#include <cstring>

#include <QTextCodec>

#include <langinfo.h>

namespace app
{

void useEncodingOfLocale()
{
    std::setlocale(LC_ALL, "");
    const char *const encoding = nl_langinfo(CODESET);
    const bool isPlain = std::strcmp(encoding, "ANSI_X3.4-1968") == 0;
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(isPlain ? "UTF-8" : encoding));
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

} // namespace app
