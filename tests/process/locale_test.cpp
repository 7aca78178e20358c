// The words that a program was started with, in the encoding of the locale.

#include <gtest/gtest.h>

#include <QFile>

#include "apps/process/locale.h"

namespace
{

class Encoding : public testing::Test
{
protected:
    void expectName(const char *locale, QByteArray bytes, const QString &name)
    {
        qputenv("LC_ALL", locale);
        app::useEncodingOfLocale();
        QByteArray program("idcard-reader");
        char *words[] = {program.data(), bytes.data()};
        EXPECT_EQ(app::argumentsOf(2, words), QStringList{name}) << locale;
        EXPECT_EQ(QFile::encodeName(name), bytes) << locale;
    }
};

TEST_F(Encoding, OfTheLocaleIsThatOfTheCommandLineAndOfFileNames)
{
    expectName("zh_CN.UTF-8", "\xE5\x87\xBA", "出");
    expectName("zh_CN.GB18030", "\xB3\xF6", "出");
}

TEST_F(Encoding, InTheLocaleOfServicesAndInOneThatIsNotThereIsUtf8)
{
    for (const char *locale : {"C", "zh_CN.no-such-encoding"})
        expectName(locale, "\xE5\x87\xBA", "出");
}

} // namespace
