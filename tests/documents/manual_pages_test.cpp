// The manual pages against the headers: the exported names, the public members of the classes and
// the result codes; and those in Chinese against those in English.

#include <gmock/gmock.h>

#include <set>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "tests/support/files.h"
#include "tests/support/matches.h"
#include "tests/support/process.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

using Names = std::set<std::string>;

const QString SOURCE = IDCARD_SOURCE_DIR "/";

QString pageOf(const QString &name)
{
    return sourceText("docs/man/" + name);
}

/** The first captures of all matches of `pattern` in `text`. */
Names namesIn(const QString &text, const QString &pattern)
{
    Names names;
    for (const QString &name : matches(text, pattern))
        names.insert(name.toStdString());
    return names;
}

QStringList pagesIn(const char *folder, const QStringList &sections)
{
    return QDir(SOURCE + QLatin1String(folder)).entryList(sections, QDir::Files, QDir::Name);
}

QStringList pages()
{
    return pagesIn("docs/man", {"*.1", "*.3", "*.8"});
}

/** The pages that are in Chinese too: those of the programs. */
QStringList chinesePages()
{
    return pagesIn("docs/man", {"*.1", "*.8"});
}

QString chinesePageOf(const QString &name)
{
    return pageOf("zh_CN/" + name);
}

/** The synopsis of a page. */
QString synopsisOf(const QString &page)
{
    return page.section(".Sh SYNOPSIS\n", 1).section("\n.Sh ", 0, 0);
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
    QString text = sourceText(header);
    text.remove(QRegularExpression("/\\*.*?\\*/|//[^\\n]*",
                                   QRegularExpression::DotMatchesEverythingOption));
    const auto body =
        QRegularExpression(
            QStringLiteral("class IDCARD_READER_EXPORT %1\\b.*?\\n\\{\\n(.*?)\\n\\};").arg(name),
            QRegularExpression::DotMatchesEverythingOption)
            .match(text);
    EXPECT_TRUE(body.hasMatch()) << name.toStdString();
    const QString publicPart = body.captured(1)
                                   .section("public:", 1)
                                   .section(QRegularExpression("(protected|private):"), 0, 0);
    Members members;
    for (const QString &declaration : publicPart.split(';')) {
        const bool isDeleted = declaration.contains("= delete");
        const auto function = QRegularExpression("(~?\\w+)\\s*\\(").match(declaration);
        const auto constant = QRegularExpression("constexpr [\\w ]+ (\\w+) =").match(declaration);
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
    page.remove(QRegularExpression("\\\\f[BIR]"));
    page.replace("\\-", "-");
    return page.replace("Fl -", "--");
}

QString sectionOf(const QString &page, const QString &heading)
{
    return page.section(QStringLiteral("\n.%1\n").arg(heading), 1)
        .section(QRegularExpression("\n\\.S[hH] "), 0, 0);
}

/** The commands of the examples, one a line. */
std::string examplesOf(const QString &page, const QString &heading)
{
    return matches(readable(sectionOf(page, heading)), "^(?:\\.Dl )?([a-z].*)$")
        .join('\n')
        .toStdString();
}

/** The forms of a command in the synopsis of a page in mdoc(7), without what a user fills in. */
std::string formsOf(const QString &synopsis, const QString &program)
{
    QStringList forms;
    for (const QString &line : QString(synopsis).replace("Fl ", "Cm -").split('\n')) {
        if (line == ".Nm")
            forms << program;
        for (const QString &word : matches(line, "Cm (\\S+)"))
            forms.last() += ' ' + word;
    }
    return forms.join('\n').toStdString();
}

/** The same of a page in man(7), which has fixed words in bold, and a form in every other line. */
std::string formsInBold(const QString &synopsis)
{
    QStringList forms;
    for (const QString &line : synopsis.split("\n.br\n"))
        forms << readable(matches(line, "\\\\fB(.*?)\\\\fR").join(' '));
    return forms.join('\n').toStdString();
}

/** The page of a source, which is in order, as man shows it from where it is installed. */
std::string formatted(const QString &source, const QString &installed, const QStringList &options)
{
    ProcessInput input;
    input.environment["MANWIDTH"] = "80";
    const ProcessResult lint = runProcess(IDCARD_MANDOC, {"-Tlint", "-Wwarning", source}, input);
    EXPECT_EQ(lint.exitStatus, 0) << lint.output();
    const QStringList arguments = {"--warnings", "-E", "UTF-8", "-l", installed};
    const ProcessResult shown = runProcess(IDCARD_MAN, options + arguments, input);
    expectEnd(shown, 0);
    return shown.output();
}

/** The manual pages that a page refers to, such as "readIDCard 3". */
Names referencesOf(const QString &page)
{
    return namesIn(readable(page).replace(QRegularExpression("(\\.BR |\\b)([\\w-]+) ?\\((\\d)\\)"),
                                          "\n.Xr \\2 \\3\n"),
                   "^\\.Xr (\\S+ \\d)");
}

} // namespace

TEST(ManualPages, ExportedNames_HaveAPageThatNamesThem)
{
    QMap<QString, QString> pageByName;
    for (const QString &file : pages()) {
        const QString name = under(".Sh NAME", pageOf(file), "\\.Sh");
        for (const std::string &named : namesIn(name, "^\\.Nm (\\w+)"))
            pageByName[QString::fromStdString(named)] = file;
    }
    const Names exported =
        namesIn(sourceText("api/exported_names.txt"), "^(?:function|object|class) (\\w+)$");
    EXPECT_THAT(exported, Not(IsEmpty()));
    for (const std::string &name : exported)
        EXPECT_TRUE(pageByName.contains(QString::fromStdString(name))) << name;
}

TEST(ManualPages, ExportedClasses_AreAllComparedWithTheirHeaders)
{
    Names compared;
    for (const DocumentedClass &row : CLASSES)
        compared.insert(row.name);
    EXPECT_EQ(compared, namesIn(sourceText("api/exported_names.txt"), "^class (\\w+)$"));
}

TEST(ManualPages, PublicMembersOfTheHeaders_AreInTheSynopsisAndNoOthers)
{
    QMap<QString, Names> declared;
    for (const DocumentedClass &row : CLASSES) {
        const Members members = publicMembers(row.header, row.name);
        EXPECT_THAT(members.functions, Not(IsEmpty())) << row.name;
        declared[row.page].insert(members.functions.begin(), members.functions.end());
        const QString page = pageOf(row.page);
        EXPECT_TRUE(page.contains(QStringLiteral(".In %1\n").arg(row.header)));
        for (const std::string &constant : members.constants)
            EXPECT_TRUE(page.contains(QStringLiteral(".Dv %1\n").arg(constant.c_str())))
                << constant;
    }
    for (auto page = declared.cbegin(); page != declared.cend(); ++page) {
        EXPECT_EQ(namesIn(synopsisOf(pageOf(page.key())), "^\\.F[no] (?:\\w+::)?(\\w+)"),
                  page.value())
            << page.key().toStdString();
    }
}

TEST(ManualPages, FunctionsOfTheSynopsis_AreDescribed)
{
    for (const DocumentedClass &row : CLASSES) {
        const QString page = pageOf(row.page);
        const QString description = page.section(".Sh DESCRIPTION\n", 1);
        const Names members = publicMembers(row.header, row.name).functions;
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
        auto codes =
            QRegularExpression("^    (\\w+) = (-?\\d+),", QRegularExpression::MultilineOption)
                .globalMatch(sourceText(row.header));
        EXPECT_TRUE(codes.hasNext());
        while (codes.hasNext()) {
            const auto code = codes.next();
            const QString item = QStringLiteral("\n.It %1 Dv %2\n")
                                     .arg(code.captured(2).replace('-', "\\-"), code.captured(1));
            EXPECT_TRUE(pageOf(row.page).contains(item)) << item.toStdString();
        }
    }
}

TEST(ManualPages, Pages_FormatWithoutAWarning)
{
    for (const QString &page : pages()) {
        const QString path = SOURCE + "docs/man/" + page;
        // From version 1.23 on, groff warns of a line of one word, which it cannot justify.
        EXPECT_THAT(formatted(path, path, {"--no-justification"}), Not(IsEmpty()));
    }
}

TEST(ManualPagesInChinese, Pages_AreThoseOfAllPrograms)
{
    EXPECT_THAT(chinesePages(), Not(IsEmpty()));
    EXPECT_EQ(pagesIn("docs/man/zh_CN", {}).join(' ').toStdString(),
              chinesePages().join(' ').toStdString());
}

TEST(ManualPagesInChinese, SynopsisSectionsTagsAndExamples_AreThoseOfTheEnglishPage)
{
    for (const QString &file : chinesePages()) {
        const QString english = pageOf(file);
        const QString chinese = chinesePageOf(file);
        EXPECT_EQ(chinese.count("\n.SH "), english.count("\n.Sh ")) << file.toStdString();
        EXPECT_EQ(chinese.count("\n.SS "), english.count("\n.Ss ")) << file.toStdString();
        EXPECT_EQ(chinese.count("\n.TP\n"), english.count("\n.It ")) << file.toStdString();
        EXPECT_EQ(examplesOf(chinese, "SH 示例"), examplesOf(english, "Sh EXAMPLES"))
            << file.toStdString();
        EXPECT_EQ(formsInBold(sectionOf(chinese, "SH 概要")),
                  formsOf(synopsisOf(english), file.section('.', 0, 0)))
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
    for (const QString &file : chinesePages()) {
        const QString path = SOURCE + "docs/man/zh_CN/" + file;
        const QString installed = folder.filePath("man/zh_CN/man" + file.section('.', -1));
        ASSERT_TRUE(QDir().mkpath(installed));
        ASSERT_TRUE(QFile::copy(path, installed + '/' + file));
        EXPECT_THAT(formatted(path, installed + '/' + file, {}),
                    HasSubstr("\n名称\n       idcard-"))
            << file.toStdString();
    }
}

TEST(ManualPages, References_LeadToAPageOfTheProjectOrOfTheCLibrary)
{
    const Names others = {"dlopen 3", "iconv 3"};
    for (const QString &file : pages()) {
        for (const std::string &reference : namesIn(pageOf(file), "^\\.Xr (\\S+ \\d)")) {
            const QString name = QString::fromStdString(reference).replace(' ', '.');
            EXPECT_TRUE(others.count(reference) == 1 || pages().contains(name))
                << file.toStdString() << ": " << reference;
        }
    }
}
