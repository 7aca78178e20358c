// The manual pages against the headers: the exported names, the public members of the classes and
// the result codes; and those in Chinese against those in English.

#include <gmock/gmock.h>

#include <set>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "tests/support/process.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

using Names = std::set<std::string>;

const QString SOURCE = QStringLiteral(IDCARD_SOURCE_DIR "/");

QString textOf(const QString &path)
{
    QFile file(SOURCE + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QString pageOf(const QString &name)
{
    return textOf(QStringLiteral("docs/man/%1").arg(name));
}

/** The first captures of all matches of `pattern` in `text`. */
Names namesIn(const QString &text, const QString &pattern)
{
    Names names;
    auto matches =
        QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext())
        names.insert(matches.next().captured(1).toStdString());
    return names;
}

QStringList pagesIn(const char *folder, const QStringList &sections)
{
    return QDir(SOURCE + QLatin1String(folder)).entryList(sections, QDir::Files, QDir::Name);
}

QStringList pages()
{
    return pagesIn("docs/man",
                   {QStringLiteral("*.1"), QStringLiteral("*.3"), QStringLiteral("*.8")});
}

/** The pages that are in Chinese too: those of the programs. */
QStringList chinesePages()
{
    return pagesIn("docs/man", {QStringLiteral("*.1"), QStringLiteral("*.8")});
}

QString chinesePageOf(const QString &name)
{
    return pageOf(QStringLiteral("zh_CN/") + name);
}

/** The synopsis of a page. */
QString synopsisOf(const QString &page)
{
    return page.section(QStringLiteral(".Sh SYNOPSIS\n"), 1)
        .section(QStringLiteral("\n.Sh "), 0, 0);
}

/** The part of a page or a help text under a heading, up to the next one. */
QString under(const QString &heading, const QString &text, const QString &nextHeading)
{
    const auto match =
        QRegularExpression(QStringLiteral("^%1\\n((?:(?!%2).*\\n)*)")
                               .arg(QRegularExpression::escape(heading), nextHeading),
                           QRegularExpression::MultilineOption)
            .match(text);
    return match.captured(1);
}

/** What the class `name` declares as public in its header: functions and constants. */
struct Members {
    Names functions;
    Names constants;
};

Members publicMembers(const QString &header, const QString &name)
{
    QString text = textOf(header);
    text.remove(QRegularExpression(QStringLiteral("/\\*.*?\\*/|//[^\\n]*"),
                                   QRegularExpression::DotMatchesEverythingOption));
    const auto body =
        QRegularExpression(
            QStringLiteral("class IDCARD_READER_EXPORT %1\\b.*?\\n\\{\\n(.*?)\\n\\};").arg(name),
            QRegularExpression::DotMatchesEverythingOption)
            .match(text);
    EXPECT_TRUE(body.hasMatch()) << name.toStdString();
    const QString publicPart =
        body.captured(1)
            .section(QStringLiteral("public:"), 1)
            .section(QRegularExpression(QStringLiteral("(protected|private):")), 0, 0);
    Members members;
    for (const QString &declaration : publicPart.split(QLatin1Char(';'))) {
        const bool isDeleted = declaration.contains(QStringLiteral("= delete"));
        const auto function =
            QRegularExpression(QStringLiteral("(~?\\w+)\\s*\\(")).match(declaration);
        const auto constant =
            QRegularExpression(QStringLiteral("constexpr [\\w ]+ (\\w+) =")).match(declaration);
        if (constant.hasMatch())
            members.constants.insert(constant.captured(1).toStdString());
        else if (function.hasMatch() && !isDeleted && !function.captured(1).startsWith('~'))
            members.functions.insert(function.captured(1).toStdString());
    }
    return members;
}

struct DocumentedClass {
    const char *name;
    const char *header;
    const char *page;
};

constexpr DocumentedClass CLASSES[] = {
    {"CCommon", "common/common.h", "CCommon.3"},
    {"CIdData", "iddata/iddata.h", "CIdData.3"},
    {"CLibUsbEx", "reader/libusbex.h", "CUsbIdReader.3"},
    {"CUsbIdReader", "reader/usbidreader.h", "CUsbIdReader.3"},
    {"Idcard_reader_lib", "api/idcard_reader_lib.h", "Idcard_reader_lib.3"},
    {"MakeCardImg", "render/makecardimg.h", "MakeCardImg.3"},
    {"Tools", "render/tools.h", "Tools.3"},
};

/** A page with its options as they are read, whichever macros it has. */
QString readable(QString page)
{
    page.remove(QRegularExpression(QStringLiteral("\\\\f[BIR]")));
    page.replace(QStringLiteral("\\-"), QStringLiteral("-"));
    return page.replace(QStringLiteral("Fl -"), QStringLiteral("--"));
}

QString sectionOf(const QString &page, const QString &heading)
{
    return page.section(QStringLiteral("\n.%1\n").arg(heading), 1)
        .section(QRegularExpression(QStringLiteral("\n\\.S[hH] ")), 0, 0);
}

/** The commands of the examples, one a line. */
std::string examplesOf(const QString &page, const QString &heading)
{
    static const QRegularExpression command(QStringLiteral("^(?:\\.Dl )?([a-z].*)$"));
    QStringList commands;
    for (const QString &line : readable(sectionOf(page, heading)).split(QLatin1Char('\n'))) {
        if (command.match(line).hasMatch())
            commands << command.match(line).captured(1);
    }
    return commands.join(QLatin1Char('\n')).toStdString();
}

/** The forms of a command in the synopsis of a page in mdoc(7), without what a user fills in. */
std::string formsOf(const QString &synopsis, const QString &program)
{
    static const QRegularExpression fixed(QStringLiteral("(?:Cm|Fl) (\\S+)"));
    QStringList forms;
    for (const QString &line : synopsis.split(QLatin1Char('\n'))) {
        if (line == QLatin1String(".Nm"))
            forms << program;
        auto words = fixed.globalMatch(line);
        while (words.hasNext()) {
            const auto word = words.next();
            const bool isOption = word.captured().startsWith(QStringLiteral("Fl"));
            forms.last() += QLatin1String(isOption ? " -" : " ") + word.captured(1);
        }
    }
    return forms.join(QLatin1Char('\n')).toStdString();
}

/** The same of a page in man(7), which has fixed words in bold, and a form in every other line. */
std::string formsInBold(const QString &synopsis)
{
    static const QRegularExpression bold(QStringLiteral("\\\\fB(.*?)\\\\fR"));
    QStringList forms;
    for (const QString &line : synopsis.split(QStringLiteral("\n.br\n"))) {
        QStringList words;
        auto found = bold.globalMatch(line);
        while (found.hasNext())
            words << readable(found.next().captured(1));
        forms << words.join(QLatin1Char(' '));
    }
    return forms.join(QLatin1Char('\n')).toStdString();
}

/** The manual pages that a page refers to, such as "readIDCard 3". */
Names referencesOf(const QString &page)
{
    return namesIn(readable(page).replace(
                       QRegularExpression(QStringLiteral("(\\.BR |\\b)([\\w-]+) ?\\((\\d)\\)")),
                       QStringLiteral("\n.Xr \\2 \\3\n")),
                   QStringLiteral("^\\.Xr (\\S+ \\d)"));
}

} // namespace

TEST(ManualPages, ExportedNames_HaveAPageThatNamesThem)
{
    QMap<QString, QString> pageByName;
    for (const QString &file : pages()) {
        const QString name =
            under(QStringLiteral(".Sh NAME"), pageOf(file), QStringLiteral("\\.Sh"));
        for (const std::string &named : namesIn(name, QStringLiteral("^\\.Nm (\\w+)")))
            pageByName[QString::fromStdString(named)] = file;
    }
    const Names exported = namesIn(textOf(QStringLiteral("api/exported_names.txt")),
                                   QStringLiteral("^(?:function|object|class) (\\w+)$"));
    EXPECT_THAT(exported, Not(IsEmpty()));
    for (const std::string &name : exported)
        EXPECT_TRUE(pageByName.contains(QString::fromStdString(name))) << name;
}

TEST(ManualPages, ExportedClasses_AreAllComparedWithTheirHeaders)
{
    Names compared;
    for (const DocumentedClass &row : CLASSES)
        compared.insert(row.name);
    EXPECT_EQ(compared, namesIn(textOf(QStringLiteral("api/exported_names.txt")),
                                QStringLiteral("^class (\\w+)$")));
}

TEST(ManualPages, PublicMembersOfTheHeaders_AreInTheSynopsisAndNoOthers)
{
    QMap<QString, Names> declared;
    for (const DocumentedClass &row : CLASSES) {
        const Members members =
            publicMembers(QString::fromLatin1(row.header), QString::fromLatin1(row.name));
        EXPECT_THAT(members.functions, Not(IsEmpty())) << row.name;
        declared[QString::fromLatin1(row.page)].insert(members.functions.begin(),
                                                       members.functions.end());
        const QString page = pageOf(QString::fromLatin1(row.page));
        EXPECT_TRUE(page.contains(QStringLiteral(".In %1\n").arg(QString::fromLatin1(row.header))));
        for (const std::string &constant : members.constants)
            EXPECT_TRUE(page.contains(QStringLiteral(".Dv %1\n").arg(constant.c_str())))
                << constant;
    }
    for (auto page = declared.cbegin(); page != declared.cend(); ++page) {
        EXPECT_EQ(
            namesIn(synopsisOf(pageOf(page.key())), QStringLiteral("^\\.F[no] (?:\\w+::)?(\\w+)")),
            page.value())
            << page.key().toStdString();
    }
}

TEST(ManualPages, FunctionsOfTheSynopsis_AreDescribed)
{
    for (const DocumentedClass &row : CLASSES) {
        const QString page = pageOf(QString::fromLatin1(row.page));
        const QString description = page.section(QStringLiteral(".Sh DESCRIPTION\n"), 1);
        const Names members =
            publicMembers(QString::fromLatin1(row.header), QString::fromLatin1(row.name)).functions;
        for (const std::string &name : members) {
            const auto item =
                QRegularExpression(QStringLiteral("^\\.It .*\\bFn %1\\b").arg(name.c_str()),
                                   QRegularExpression::MultilineOption);
            EXPECT_TRUE(name == row.name || item.match(description).hasMatch()) << name;
        }
    }
}

TEST(ManualPages, ResultCodes_AreListedWithTheirNumbers)
{
    const struct {
        const char *header;
        const char *page;
    } rows[] = {{"api/result_codes.h", "readIDCard.3"}, {"reader/usb_codes.h", "CUsbIdReader.3"}};
    for (const auto &row : rows) {
        auto codes = QRegularExpression(QStringLiteral("^    (\\w+) = (-?\\d+),"),
                                        QRegularExpression::MultilineOption)
                         .globalMatch(textOf(QString::fromLatin1(row.header)));
        EXPECT_TRUE(codes.hasNext());
        while (codes.hasNext()) {
            const auto code = codes.next();
            const QString item =
                QStringLiteral("\n.It %1 Dv %2\n")
                    .arg(code.captured(2).replace(QLatin1Char('-'), QStringLiteral("\\-")),
                         code.captured(1));
            EXPECT_TRUE(pageOf(QString::fromLatin1(row.page)).contains(item)) << item.toStdString();
        }
    }
}

TEST(ManualPages, Pages_FormatWithoutAWarning)
{
    ProcessInput input;
    input.emulated = false;
    input.environment[QStringLiteral("MANWIDTH")] = QStringLiteral("80");
    for (const QString &page : pages()) {
        const QString path = SOURCE + QStringLiteral("docs/man/") + page;
        const ProcessResult lint =
            runProcess(QStringLiteral(IDCARD_MANDOC),
                       {QStringLiteral("-Tlint"), QStringLiteral("-Wwarning"), path}, input);
        EXPECT_EQ(lint.exitStatus, 0) << lint.standardOutput.toStdString();
        // From version 1.23 on, groff warns of a line of one word, which it cannot justify.
        const ProcessResult formatted =
            runProcess(QStringLiteral(IDCARD_MAN),
                       {QStringLiteral("--warnings"), QStringLiteral("--no-justification"),
                        QStringLiteral("-E"), QStringLiteral("UTF-8"), QStringLiteral("-l"), path},
                       input);
        EXPECT_EQ(formatted.exitStatus, 0) << path.toStdString();
        EXPECT_THAT(formatted.standardError.toStdString(), IsEmpty()) << path.toStdString();
        EXPECT_THAT(formatted.standardOutput.toStdString(), Not(IsEmpty()));
    }
}

TEST(ManualPagesInChinese, Pages_AreThoseOfAllPrograms)
{
    EXPECT_THAT(chinesePages(), Not(IsEmpty()));
    EXPECT_EQ(pagesIn("docs/man/zh_CN", {}).join(QLatin1Char(' ')).toStdString(),
              chinesePages().join(QLatin1Char(' ')).toStdString());
}

TEST(ManualPagesInChinese, SynopsisSectionsTagsAndExamples_AreThoseOfTheEnglishPage)
{
    for (const QString &file : chinesePages()) {
        const QString english = pageOf(file);
        const QString chinese = chinesePageOf(file);
        EXPECT_EQ(chinese.count(QStringLiteral("\n.SH ")), english.count(QStringLiteral("\n.Sh ")))
            << file.toStdString();
        EXPECT_EQ(chinese.count(QStringLiteral("\n.SS ")), english.count(QStringLiteral("\n.Ss ")))
            << file.toStdString();
        EXPECT_EQ(chinese.count(QStringLiteral("\n.TP\n")), english.count(QStringLiteral("\n.It ")))
            << file.toStdString();
        EXPECT_EQ(examplesOf(chinese, QStringLiteral("SH 示例")),
                  examplesOf(english, QStringLiteral("Sh EXAMPLES")))
            << file.toStdString();
        EXPECT_EQ(formsInBold(sectionOf(chinese, QStringLiteral("SH 概要"))),
                  formsOf(synopsisOf(english), file.section(QLatin1Char('.'), 0, 0)))
            << file.toStdString();
    }
}

TEST(ManualPagesInChinese, OptionsVariablesFilesAndReferences_AreThoseOfTheEnglishPage)
{
    const QString name = QStringLiteral(
        "(--[a-z][a-z-]+|\\b[A-Z]+_[A-Z_]+\\b|/[a-z/]+/[\\w.-]*\\w|\\b[a-z]+\\.[a-z]{3,4}\\b)");
    for (const QString &file : chinesePages()) {
        const QString english = pageOf(file);
        const QString chinese = chinesePageOf(file);
        EXPECT_EQ(namesIn(readable(chinese), name), namesIn(readable(english), name))
            << file.toStdString();
        EXPECT_EQ(referencesOf(chinese), referencesOf(english)) << file.toStdString();
    }
}

// In the folder of its language, where it is installed, man formats it by the rules of the
// language.
TEST(ManualPagesInChinese, Pages_FormatWithoutAWarningInTheirLanguage)
{
    const QTemporaryDir folder;
    ProcessInput input;
    input.emulated = false;
    input.environment[QStringLiteral("MANWIDTH")] = QStringLiteral("80");
    for (const QString &file : chinesePages()) {
        const QString path = SOURCE + QStringLiteral("docs/man/zh_CN/") + file;
        const ProcessResult lint =
            runProcess(QStringLiteral(IDCARD_MANDOC),
                       {QStringLiteral("-Tlint"), QStringLiteral("-Wwarning"), path}, input);
        EXPECT_EQ(lint.exitStatus, 0) << lint.standardOutput.toStdString();

        const QString section = file.section(QLatin1Char('.'), -1);
        const QString installed = folder.filePath(QStringLiteral("man/zh_CN/man") + section);
        ASSERT_TRUE(QDir().mkpath(installed));
        ASSERT_TRUE(QFile::copy(path, installed + QLatin1Char('/') + file));
        const ProcessResult formatted =
            runProcess(QStringLiteral(IDCARD_MAN),
                       {QStringLiteral("--warnings"), QStringLiteral("-E"), QStringLiteral("UTF-8"),
                        QStringLiteral("-l"), installed + QLatin1Char('/') + file},
                       input);
        EXPECT_EQ(formatted.exitStatus, 0) << file.toStdString();
        EXPECT_THAT(formatted.standardError.toStdString(), IsEmpty()) << file.toStdString();
        EXPECT_THAT(formatted.output(), HasSubstr("\n名称\n       idcard-")) << file.toStdString();
    }
}

TEST(ManualPages, References_LeadToAPageOfTheProjectOrOfTheCLibrary)
{
    const Names others = {"dlopen 3", "iconv 3"};
    for (const QString &file : pages()) {
        for (const std::string &reference :
             namesIn(pageOf(file), QStringLiteral("^\\.Xr (\\S+ \\d)"))) {
            const QString name = QString::fromStdString(reference).replace(' ', '.');
            EXPECT_TRUE(others.count(reference) == 1 || pages().contains(name))
                << file.toStdString() << ": " << reference;
        }
    }
}
