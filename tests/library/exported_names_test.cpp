// What the shared library exports, against the list of names it is meant to export.

#include <set>

#include <gtest/gtest.h>

#include <QRegularExpression>

#include "tests/support/build_programs.h"
#include "tests/support/files.h"

namespace
{

const QString LIBRARY = QStringLiteral(IDCARD_BUILD_LIB_DIR "/libidcard_reader_lib.so");

struct Expected {
    std::set<QString> names;   ///< functions and objects, by their plain name
    std::set<QString> classes; ///< the public members of these
};

Expected expectedNames()
{
    Expected expected;
    for (const QString &line : sourceText(QStringLiteral("api/exported_names.txt")).split('\n')) {
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

/** Parameters of a function, by the text between its parentheses. */
int parameterCount(const QString &parameters)
{
    if (parameters.trimmed().isEmpty())
        return 0;
    int depth = 0;
    int count = 1;
    for (const QChar character : parameters) {
        depth += character == '<' || character == '(' ? 1 : 0;
        depth -= character == '>' || character == ')' ? 1 : 0;
        count += character == ',' && depth == 0 ? 1 : 0;
    }
    return count;
}

/** "name(2)" for a function of two parameters; its whole text for anything else. */
QString functionOf(const QString &declaration)
{
    static const QRegularExpression function(QStringLiteral("(~?\\w+)\\s*\\((.*)\\)"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const auto match = function.match(declaration);
    return match.hasMatch() ? QStringLiteral("%1(%2)")
                                  .arg(match.captured(1))
                                  .arg(parameterCount(match.captured(2)))
                            : declaration.trimmed();
}

/** What is between the braces of the class `name`, without comments, as a public header has it. */
QString bodyOf(const QString &name)
{
    static const QRegularExpression comments(QStringLiteral("/\\*.*?\\*/|//[^\\n]*"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpression body(
        QStringLiteral("\\nclass IDCARD_READER_EXPORT %1\\b[^;{]*\\n\\{\\n(.*?)\\n\\};").arg(name),
        QRegularExpression::DotMatchesEverythingOption);
    for (const QString &header :
         sourceText(QStringLiteral("packaging/public-headers.txt")).split('\n')) {
        if (header.isEmpty() || header.startsWith('#'))
            continue;
        const auto match = body.match(sourceText(header).remove(comments));
        if (match.hasMatch())
            return match.captured(1);
    }
    ADD_FAILURE() << "no public header has the class " << name.toStdString();
    return {};
}

/** The functions that the class `name` declares as public and has defined in the library. */
QStringList publicFunctions(const QString &name)
{
    static const QRegularExpression defined(QStringLiteral("\\{[^{}]*\\}"));
    static const QRegularExpression access(QStringLiteral("(public|protected|private):"));
    QString body = bodyOf(name);
    while (body.contains(defined))
        body.replace(defined, QStringLiteral("= inline;")); // and what else is in braces
    QStringList functions;
    bool isPublic = false;
    for (QString declaration : body.split(';')) {
        for (auto match = access.match(declaration); match.hasMatch();
             match = access.match(declaration)) {
            isPublic = match.captured(1) == QLatin1String("public");
            declaration = declaration.mid(match.capturedEnd());
        }
        const bool isMade = declaration.contains('='); // deleted, inline, a constant
        if (isPublic && !isMade && !declaration.trimmed().isEmpty())
            functions << functionOf(declaration);
    }
    functions.sort();
    return functions;
}

/** The public constants of the class, which an unoptimised build defines where they are used. */
QStringList publicConstants(const QString &name)
{
    static const QRegularExpression constant(QStringLiteral("static constexpr [\\w ]+ (\\w+) ="));
    const QString body = bodyOf(name);
    const QString publicPart =
        body.left(body.indexOf(QRegularExpression(QStringLiteral("protected:|private:"))));
    QStringList constants;
    for (auto match = constant.globalMatch(publicPart); match.hasNext();)
        constants << match.next().captured(1);
    return constants;
}

/** The same as the library exports them. */
QStringList exportedFunctions(const QString &name)
{
    const QStringList constants = publicConstants(name);
    QStringList functions;
    const QString beginning = name + QStringLiteral("::");
    QStringList names = exportedNames();
    names.removeDuplicates(); // there is one constructor for whole objects and one for bases
    for (const QString &exported : names)
        if (exported.startsWith(beginning) && !constants.contains(exported.mid(beginning.size())))
            functions << functionOf(exported.mid(beginning.size()));
    functions.sort();
    return functions;
}

} // namespace

TEST(ExportedNames, EveryClass_ExportsThePublicFunctionsOfItsHeaderAndNoOthers)
{
    for (const QString &name : expectedNames().classes) {
        const QStringList functions = publicFunctions(name);
        EXPECT_FALSE(functions.isEmpty()) << name.toStdString();
        EXPECT_EQ(exportedFunctions(name).join(' ').toStdString(),
                  functions.join(' ').toStdString())
            << name.toStdString();
    }
}

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
