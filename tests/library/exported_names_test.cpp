// What the shared library exports, against the list of names it is meant to export.

#include <set>

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include "tests/support/build_programs.h"

namespace
{

const QString LIBRARY = QStringLiteral(IDCARD_BUILD_LIB_DIR "/libidcard_reader_lib.so");

struct Expected {
    std::set<QString> names;   ///< functions and objects, by their plain name
    std::set<QString> classes; ///< every member of these
};

Expected expectedNames()
{
    QFile file(QStringLiteral(IDCARD_SOURCE_DIR "/api/exported_names.txt"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    Expected expected;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const QStringList words = line.split(' ');
        EXPECT_EQ(words.size(), 2) << line.toStdString();
        (words.first() == QLatin1String("class") ? expected.classes : expected.names)
            .insert(words.last());
    }
    return expected;
}

/** Demangled names that the library defines for others, without the tag of the string ABI. */
QStringList exportedNames()
{
    const QByteArray output =
        build_programs::nm({QStringLiteral("-DC"), QStringLiteral("--defined-only")}, LIBRARY);
    QStringList names;
    static const QRegularExpression line(QStringLiteral("^\\S+ \\S (.*)$"));
    for (const QString &text : QString::fromUtf8(output).split('\n')) {
        QString name = line.match(text).captured(1);
        if (!text.isEmpty())
            names << name.remove(QStringLiteral("[abi:cxx11]"));
    }
    return names;
}

} // namespace

TEST(ExportedNames, EveryExportedName_IsOnTheList)
{
    const Expected expected = expectedNames();
    const QStringList names = exportedNames();
    ASSERT_FALSE(names.isEmpty());
    for (const QString &name : names) {
        const QString className = name.section(QStringLiteral("::"), 0, 0);
        EXPECT_TRUE(expected.names.count(name) == 1 ||
                    (name != className && expected.classes.count(className) == 1))
            << name.toStdString();
    }
}

TEST(ExportedNames, EveryNameOnTheList_IsExported)
{
    const Expected expected = expectedNames();
    const QStringList names = exportedNames();
    for (const QString &name : expected.names)
        EXPECT_TRUE(names.contains(name)) << name.toStdString();
    for (const QString &name : expected.classes) {
        const QString constructor = name + QStringLiteral("::");
        EXPECT_FALSE(names.filter(QRegularExpression('^' + constructor)).isEmpty())
            << name.toStdString();
    }
}

TEST(ExportedNames, CopiesOfTheCountryTable_ArePrivate)
{
    const QByteArray output = build_programs::nm({QStringLiteral("-C")}, LIBRARY);
    EXPECT_EQ(output.count(" b STR_LIST\n"), 2)
        << "one beside the entry point, one beside the decoder of raw records";
}

TEST(ExportedNames, List_HoldsTheEntryPoints)
{
    const Expected expected = expectedNames();
    EXPECT_EQ(expected.names.count(QStringLiteral("readIDCard")), 1U);
    EXPECT_EQ(expected.names.count(QStringLiteral("getSDKVersion")), 1U);
    EXPECT_EQ(expected.names.count(QStringLiteral("COUNTRY_CODE_LIST")), 1U);
}
