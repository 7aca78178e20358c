// The manual pages against what they tell of: the exported names, the public members of the classes
// as the headers have them, the codes, and the help of the tools.

#include <gmock/gmock.h>

#include <set>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include "tests/support/process.h"

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

QStringList pages()
{
    return QDir(SOURCE + QStringLiteral("docs/man"))
        .entryList({QStringLiteral("*.1"), QStringLiteral("*.3"), QStringLiteral("*.8")},
                   QDir::Files, QDir::Name);
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

QString helpOf(const QString &program, const QStringList &command, const ProcessInput &input = {})
{
    const ProcessResult run =
        runProcess(program, command + QStringList{QStringLiteral("--help")}, input);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError.toStdString();
    return QString::fromUtf8(run.standardOutput);
}

/** The help of the program that opens readers, a script. */
QString helpOfAccess()
{
    ProcessInput input;
    input.emulated = false;
    return helpOf(QStringLiteral(IDCARD_ACCESS_PROGRAM), {}, input);
}

/** Options with the names of their values, as a help text has them: "--out folder". */
Names optionsInHelp(const QString &help)
{
    QString text = under(QStringLiteral("Options:"), help, QStringLiteral("\\S"));
    text.remove(QRegularExpression(QStringLiteral("[<>]")));
    return namesIn(text, QStringLiteral("^  (?:-h, )?(--[a-z-]+(?: [^ ]+)?)(?:  |\\n)"));
}

/** The same as a page has them. */
Names optionsInPage(const QString &part)
{
    QString text = part;
    text.replace(
        QRegularExpression(QStringLiteral("^\\.It (?:Fl h , )?Fl -([a-z-]+)(?: Ar (\\S+))?$"),
                           QRegularExpression::MultilineOption),
        QStringLiteral("option --\\1 \\2"));
    Names options;
    for (const std::string &option : namesIn(text, QStringLiteral("^option (.*)$")))
        options.insert(QString::fromStdString(option).trimmed().toStdString());
    return options;
}

using Meanings = std::map<std::string, std::string>;

Meanings statusesInHelp(const QString &help)
{
    Meanings meanings;
    auto matches =
        QRegularExpression(QStringLiteral("  (\\d+)  ((?:.*\\n)(?:     .*\\n)*)"))
            .globalMatch(under(QStringLiteral("Exit status:"), help, QStringLiteral("\\S")));
    while (matches.hasNext()) {
        const auto match = matches.next();
        meanings[match.captured(1).toStdString()] = match.captured(2).simplified().toStdString();
    }
    return meanings;
}

Meanings statusesInPage(const QString &page)
{
    Meanings meanings;
    auto matches =
        QRegularExpression(QStringLiteral("\\.It (\\d+)\\n((?:[^.].*\\n)+)"))
            .globalMatch(under(QStringLiteral(".Sh EXIT STATUS"), page, QStringLiteral("\\.Sh")));
    while (matches.hasNext()) {
        const auto match = matches.next();
        meanings[match.captured(1).toStdString()] = match.captured(2).simplified().toStdString();
    }
    return meanings;
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

TEST(ManualPages, PublicMembersOfTheHeaders_StandInTheSynopsisAndNoOthers)
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

TEST(ManualPages, FunctionsOfTheSynopsis_AreToldAbout)
{
    for (const DocumentedClass &row : CLASSES) {
        const QString page = pageOf(QString::fromLatin1(row.page));
        const QString description = page.section(QStringLiteral(".Sh DESCRIPTION\n"), 1);
        const Names members =
            publicMembers(QString::fromLatin1(row.header), QString::fromLatin1(row.name)).functions;
        for (const std::string &name : members) {
            const auto told =
                QRegularExpression(QStringLiteral("^\\.It .*\\bFn %1\\b").arg(name.c_str()),
                                   QRegularExpression::MultilineOption);
            EXPECT_TRUE(name == row.name || told.match(description).hasMatch()) << name;
        }
    }
}

TEST(ManualPages, ResultCodes_StandThereWithTheirNumbers)
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

TEST(ManualPages, CommandsOfTheTool_StandThereWithTheirOptionsAndNoOthers)
{
    const QString page = pageOf(QStringLiteral("idcard-reader.1"));
    const QString help = helpOf(QStringLiteral("idcard-reader"), {});
    const Names commands = namesIn(under(QStringLiteral("Commands:"), help, QStringLiteral("\\S")),
                                   QStringLiteral("^  (\\w+)  "));
    EXPECT_THAT(commands, Not(IsEmpty()));
    EXPECT_EQ(namesIn(page, QStringLiteral("^\\.Ss ([a-z]+)$")), commands);
    const Names common = optionsInPage(
        under(QStringLiteral(".Ss Options of every command"), page, QStringLiteral("\\.S[hs]")));
    EXPECT_THAT(common, Not(IsEmpty()));
    for (const std::string &command : commands) {
        const QString name = QString::fromStdString(command);
        Names options =
            optionsInPage(under(QStringLiteral(".Ss ") + name, page, QStringLiteral("\\.S[hs]")));
        options.insert(common.begin(), common.end());
        EXPECT_EQ(options, optionsInHelp(helpOf(QStringLiteral("idcard-reader"), {name})))
            << command;
    }
}

TEST(ManualPages, OptionsAndCommandsOfTheVirtualReader_StandThereAndNoOthers)
{
    const QString page = pageOf(QStringLiteral("idcard-virtual-reader.1"));
    const QString help = helpOf(QStringLiteral("idcard-virtual-reader"), {});
    EXPECT_THAT(optionsInHelp(help), Not(IsEmpty()));
    EXPECT_EQ(optionsInPage(page), optionsInHelp(help));
    const Names commands = namesIn(help.section(QStringLiteral("Commands on standard input"), 1)
                                       .section(QStringLiteral("\n\n"), 0, 0),
                                   QStringLiteral("^  ([a-z]+) "));
    EXPECT_THAT(commands, Not(IsEmpty()));
    EXPECT_EQ(namesIn(page, QStringLiteral("^\\.It Cm (\\w+)")), commands);
}

TEST(ManualPages, OptionsOfTheWindowProgram_StandThereAndNoOthers)
{
    const Names options = optionsInHelp(helpOf(QStringLiteral("idcard-viewer"), {}));
    EXPECT_THAT(options, Not(IsEmpty()));
    EXPECT_EQ(optionsInPage(pageOf(QStringLiteral("idcard-viewer.1"))), options);
}

TEST(ManualPages, OptionsOfTheProgramThatOpensReaders_StandThereAndNoOthers)
{
    const Names options = optionsInHelp(helpOfAccess());
    EXPECT_THAT(options, Not(IsEmpty()));
    EXPECT_EQ(optionsInPage(pageOf(QStringLiteral("idcard-reader-access.8"))), options);
}

TEST(ManualPages, ExitStatuses_HaveTheWordsOfTheHelp)
{
    const Meanings ofAccess = statusesInHelp(helpOfAccess());
    EXPECT_THAT(ofAccess, Not(IsEmpty()));
    EXPECT_EQ(statusesInPage(pageOf(QStringLiteral("idcard-reader-access.8"))), ofAccess);
    for (const char *program : {"idcard-reader", "idcard-virtual-reader"}) {
        const QString name = QString::fromLatin1(program);
        const Meanings meanings = statusesInHelp(helpOf(name, {}));
        EXPECT_THAT(meanings, Not(IsEmpty())) << program;
        EXPECT_EQ(statusesInPage(pageOf(name + QStringLiteral(".1"))), meanings) << program;
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
        const ProcessResult formatted =
            runProcess(QStringLiteral(IDCARD_MAN),
                       {QStringLiteral("--warnings"), QStringLiteral("-E"), QStringLiteral("UTF-8"),
                        QStringLiteral("-l"), path},
                       input);
        EXPECT_EQ(formatted.exitStatus, 0) << path.toStdString();
        EXPECT_THAT(formatted.standardError.toStdString(), IsEmpty()) << path.toStdString();
        EXPECT_THAT(formatted.standardOutput.toStdString(), Not(IsEmpty()));
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
