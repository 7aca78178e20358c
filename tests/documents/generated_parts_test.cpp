// The parts of the pages that are made from tables of the code: results, cards, keys, faults, and
// what the help texts of the programs say. Pages in Chinese have them in the words of the programs'
// translation.

#include <algorithm>
#include <functional>

#include <gmock/gmock.h>

#include <QRegularExpression>
#include <QXmlStreamReader>

#include "apps/browser_host/browser_failure.h"
#include "apps/results/result_catalogue.h"
#include "apps/results/tool_faults.h"
#include "apps/results/usb_catalogue.h"
#include "apps/service/service_errors.h"
#include "simulator/card/card_library.h"
#include "simulator/card/description_keys.h"
#include "simulator/card/faults.h"
#include "simulator/reader/virtual_reader.h"
#include "tests/documents/chinese_manual.h"
#include "tests/support/build_programs.h"
#include "tests/support/chinese_texts.h"
#include "tests/support/files.h"
#include "tests/support/generated_text.h"
#include "tests/support/process.h"

using namespace app;
using namespace simulator;

namespace
{

QString code(const QString &text)
{
    return '`' + text + '`';
}

QString tableRow(const QStringList &cells)
{
    QString row = "|";
    for (const QString &cell : cells)
        row += (cell.isEmpty() ? QString() : ' ' + cell) + " |";
    return row + '\n';
}

// Results.

/** In which words a table is written. */
using Words = QString (*)(const char *text);

QString inEnglish(const char *text)
{
    return QString::fromUtf8(text);
}

QString resultTable(const std::vector<ResultEntry> &entries, const QStringList &head, Words words)
{
    QString table = tableRow(head) + tableRow({"---:", "---", "---", "---", "---", "---:"});
    for (const ResultEntry &entry : entries) {
        table += tableRow({QString::number(entry.code), code(entry.constant), words(entry.summary),
                           words(entry.cause), words(entry.remedy),
                           QString::number(static_cast<int>(entry.exitStatus))});
    }
    return table;
}

QString toolFaultTable(const QStringList &head, Words words)
{
    QString table = tableRow(head) + tableRow({"---", "---", "---", "---:"});
    for (const ToolFaultEntry &entry : toolFaultCatalogue())
        table += tableRow({code(entry.name), words(entry.headline), words(entry.remedy),
                           QString::number(static_cast<int>(entry.exitStatus))});
    return table;
}

QString browserFaultTable(const QStringList &head, Words words)
{
    QString table = tableRow(head) + tableRow({"---", "---", "---"});
    for (const BrowserFaultEntry &entry : browserFaultCatalogue())
        table += tableRow({code(entry.name), words(entry.headline), words(entry.remedy)});
    return table;
}

QString exitStatusTable(const QStringList &head, Words words)
{
    QString table = tableRow(head) + tableRow({"---:", "---"});
    for (const ExitStatusEntry &entry : exitStatusCatalogue())
        table += tableRow({QString::number(static_cast<int>(entry.status)), words(entry.meaning)});
    return table;
}

// The simulator.

QString useOf(const KeyRule &rule)
{
    switch (rule.use) {
    case KeyUse::REQUIRED:
        return QStringLiteral("must %1").arg(rule.characters);
    case KeyUse::OPTIONAL:
        return QStringLiteral("may %1").arg(rule.characters);
    case KeyUse::ABSENT:
        break;
    }
    return "-";
}

QString formOf(TextForm form)
{
    switch (form) {
    case TextForm::DATE:
        return "YYYYMMDD";
    case TextForm::END_DATE:
        return "YYYYMMDD or 长期";
    case TextForm::DIGITS:
        return "digits";
    case TextForm::SEX_CODE:
        return "code of GB/T 2261.1: 0, 1, 2 or 9";
    case TextForm::TWO_DIGITS:
        return "code of GB 3304, two digits";
    case TextForm::COUNTRY_CODE:
        return "country code, letters; an unknown one will do";
    case TextForm::FREE:
        break;
    }
    return {};
}

QString faultTable(Road road)
{
    QString table = tableRow({"Fault", "What happens"}) + tableRow({"---", "---"});
    for (const FaultRule &rule : faultRules(road)) {
        const QString usage = code(faultUsage(rule)).replace(" or ", "` or `");
        table += tableRow({usage, rule.meaning(road)});
    }
    return table;
}

// The help texts.

QString helpOf(const QString &program, const QStringList &command = {})
{
    const ProcessResult run = runProcess(program, command + QStringList{"--help"});
    expectEnd(run, 0);
    return QString::fromUtf8(run.standardOutput);
}

struct HelpRow {
    QString name;
    QString meaning;

    bool operator==(const HelpRow &other) const
    {
        return name == other.name && meaning == other.meaning;
    }
};

using HelpRows = std::vector<HelpRow>;

/** The rows under the heading that begins with these words. */
HelpRows rowsUnder(const QString &heading, const QString &help)
{
    static const QRegularExpression row("^  (\\S.*?)(?:  +(.*))?$");
    HelpRows rows;
    const QString section = ('\n' + help).section('\n' + heading, 1).section("\n\n", 0, 0);
    for (const QString &line : section.split('\n').mid(1)) {
        const auto match = row.match(line);
        if (match.hasMatch())
            rows.push_back({match.captured(1), match.captured(2)});
        else if (!rows.empty())
            rows.back().meaning += ' ' + line.trimmed();
    }
    for (HelpRow &each : rows)
        each.meaning = each.meaning.trimmed();
    EXPECT_FALSE(rows.empty()) << heading.toStdString();
    return rows;
}

QString tableOf(const HelpRows &rows, const QStringList &head, const QStringList &rule)
{
    QString table = tableRow(head) + tableRow(rule);
    for (const HelpRow &row : rows)
        table += tableRow({row.name, row.meaning});
    return table;
}

// The same in a manual page.

/** One sentence a line. */
QString manualText(QString text)
{
    static const QRegularExpression sentenceEnd("\\. (?=[\"A-Z])");
    text.replace('\\', "\\e");
    text.replace("--", "\\-\\-");
    return text.replace(sentenceEnd, ".\n") + '\n';
}

QString manualList(const HelpRows &rows, QString (*item)(QString name), Words words)
{
    QString list = ".Bl -tag -width Ds\n";
    for (const HelpRow &row : rows)
        list += QStringLiteral(".It %1\n").arg(item(row.name)) +
                manualText(words(row.meaning.toUtf8().constData()));
    return list + ".El\n";
}

/** "-h, --help" or "--out <folder>". */
QString optionItem(QString name)
{
    name.replace("-h, ", "Fl h , ");
    name.replace("--", "Fl -");
    return name.replace(" <", " Ar ").remove('>');
}

/** "faults [LIST]". */
QString commandItem(QString name)
{
    name.replace(' ', " Ar ");
    name.replace("Ar [", "Op Ar ").remove(']');
    return "Cm " + name;
}

QString variableItem(QString name)
{
    return "Ev " + name;
}

QString plainItem(QString name)
{
    return name;
}

QString section(const QString &heading, const QString &text)
{
    return QStringLiteral(".Ss %1\n").arg(heading) + text;
}

/** A command of the tool but for the options that every command has. */
QString commandSection(const QString &name, const QString &help, const HelpRows &common,
                       Words words)
{
    HelpRows own = rowsUnder("Options", help);
    own.erase(std::remove_if(own.begin(), own.end(),
                             [&common](const HelpRow &row) {
                                 return std::find(common.begin(), common.end(), row) !=
                                        common.end();
                             }),
              own.end());
    QString usage = help.section('\n', 0, 0).section(' ', 1);
    usage.replace("[options]", words("[options]"));
    const QString description = help.section("\n\n", 1, 1).simplified();
    return section(name, ".Dl " + manualText(usage) + ".Pp\n" +
                             manualText(words(description.toUtf8().constData())) +
                             manualList(own, optionItem, words));
}

QString manualFaults(const QString &help, Words words)
{
    return section("Faults", manualList(rowsUnder("Faults", help), plainItem, words));
}

// The service.

/** The methods, signals and properties of the installed interface, one a line. */
QString interfaceLines()
{
    QXmlStreamReader xml(readFile(IDCARD_SERVICE_INTERFACE));
    QString lines;
    QStringList taken;
    QStringList given;
    const auto attribute = [&xml](const char *name) {
        return xml.attributes().value(QLatin1String(name)).toString();
    };
    QString member;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        const QString element = xml.name().toString();
        const bool isCallable = element == "method" || element == "signal";
        if (token == QXmlStreamReader::StartElement && isCallable) {
            member = attribute("name");
            taken.clear();
            given.clear();
        } else if (token == QXmlStreamReader::StartElement && element == "arg") {
            (attribute("direction") == "out" ? given : taken)
                << attribute("type") + ' ' + attribute("name");
        } else if (token == QXmlStreamReader::StartElement && element == "property") {
            lines +=
                QStringLiteral(".Dl property %1 %2\n").arg(attribute("type"), attribute("name"));
        } else if (token == QXmlStreamReader::EndElement && isCallable) {
            lines += QStringLiteral(".Dl %1 %2(%3)").arg(element, member, taken.join(", "));
            if (!given.isEmpty())
                lines += QStringLiteral(" gives (%1)").arg(given.join(", "));
            lines += '\n';
        }
    }
    return lines;
}

HelpRows errorRows()
{
    HelpRows rows;
    for (const ErrorRow &row : errorTable())
        rows.push_back({QLatin1String(row.name), textsOf(row.error).headline});
    return rows;
}

/** A part of the manual page `page` and of its partner in Chinese. */
void expectManualPart(const QString &page, const QString &name,
                      const std::function<QString(Words words)> &text)
{
    expectGeneratedPart("docs/man/" + page, name, text(inEnglish));
    expectGeneratedPart("docs/man/zh_CN/" + page, name, inManMacros(text(inChinese)));
}

/** A part that is a list of these rows. */
void expectManualList(const QString &page, const QString &name, const HelpRows &rows,
                      QString (*item)(QString name))
{
    expectManualPart(page, name,
                     [&rows, item](Words words) { return manualList(rows, item, words); });
}

/** The options and exit statuses of a program, as its help text lists them. */
void expectOptionsAndStatuses(const QString &page, const QString &help)
{
    expectManualList(page, "options", rowsUnder("Options", help), optionItem);
    expectManualList(page, "exit statuses", rowsUnder("Exit status", help), plainItem);
}

const QString TOOL = "idcard-reader";
const QString VIRTUAL_READER = "idcard-virtual-reader";
const QString TOOL_PAGE = "idcard-reader.1";

} // namespace

TEST(ReadmePage, OutputOfARead_IsThatOfTheToolInTheLanguageOfThePage)
{
    const struct {
        const char *page;
        const char *language;
    } rows[] = {{"README.md", "en"}, {"README.zh-CN.md", "zh_CN"}};
    for (const auto &row : rows) {
        const ProcessResult run =
            runProcess(TOOL, {"read", "--simulate", "resident"}, {{{"LANGUAGE", row.language}}});
        expectEnd(run, 0);
        expectGeneratedPart(QLatin1String(row.page), "output of read",
                            "```console\n$ idcard-reader read --simulate resident\n" +
                                QString::fromUtf8(run.standardOutput) + "```\n");
    }
}

TEST(ResultCodesPage, Tables_AreThoseOfTheCode)
{
    const QString page = "docs/result-codes.md";
    const QStringList head = {"Code",  "Name",       "What happened",
                              "Cause", "What to do", "Exit status of `idcard-reader`"};
    expectGeneratedPart(page, "results of readIDCard",
                        resultTable(resultCatalogue(), head, inEnglish));
    expectGeneratedPart(page, "results over USB", resultTable(usbCatalogue(), head, inEnglish));
    expectGeneratedPart(page, "exit statuses", exitStatusTable({"Status", "Meaning"}, inEnglish));
    expectGeneratedPart(
        page, "failures of the tool",
        toolFaultTable({"Name", "What happened", "What to do", "Exit status"}, inEnglish));
}

TEST(ResultCodesPageInChinese, Tables_AreThoseOfTheCodeInItsTranslation)
{
    const QString page = "docs/result-codes.zh-CN.md";
    const QStringList head = {"代码", "名称",     "发生了什么",
                              "原因", "处理办法", "`idcard-reader` 的退出状态"};
    expectGeneratedPart(page, "results of readIDCard",
                        resultTable(resultCatalogue(), head, inChinese));
    expectGeneratedPart(page, "results over USB", resultTable(usbCatalogue(), head, inChinese));
    expectGeneratedPart(page, "exit statuses", exitStatusTable({"状态", "含义"}, inChinese));
    expectGeneratedPart(page, "failures of the tool",
                        toolFaultTable({"名称", "发生了什么", "处理办法", "退出状态"}, inChinese));
}

TEST(WebPage, Failures_AreThoseOfTheCode)
{
    const QString name = "failures of the browser's host";
    expectGeneratedPart("docs/web.md", name,
                        browserFaultTable({"Name", "What happened", "What to do"}, inEnglish));
    expectGeneratedPart("docs/web.zh-CN.md", name,
                        browserFaultTable({"名称", "发生了什么", "处理办法"}, inChinese));
}

TEST(SimulatorPage, Tables_AreThoseOfTheCode)
{
    const QString page = "simulator/README.md";
    QString cards = tableRow({"Name", "What it is for"}) + tableRow({"---", "---"});
    for (const QString &name : builtInCardNames()) {
        DescriptionError error;
        const auto card = loadCard(name, &error);
        ASSERT_TRUE(card) << error.message().toStdString();
        cards += tableRow({code(name), card->title});
    }
    expectGeneratedPart(page, "cards", cards);

    QStringList head = {"Key"};
    for (int kind = 0; kind < CARD_KIND_COUNT; ++kind)
        head << cardKindName(static_cast<CardKind>(kind));
    QString keys = tableRow(head << "Text") + tableRow({"---", "---", "---", "---", "---", "---"});
    for (const TextKey &key : textKeys()) {
        QStringList cells = {code(key.name)};
        for (const KeyRule &rule : key.rules)
            cells << useOf(rule);
        keys += tableRow(cells << formOf(key.form));
    }
    expectGeneratedPart(page, "keys of texts", keys);

    expectGeneratedPart(page, "faults of the maker's library", faultTable(Road::MAKERS_LIBRARY));
    expectGeneratedPart(page, "faults on USB", faultTable(Road::USB));
}

TEST(SimulatorPage, RefusalsOfTheReaderOnUsb_AreListed)
{
    const std::string text = sourceText("simulator/README.md").toStdString();
    for (const UsbRefusal refusal : {UsbRefusal::NO_CARD, UsbRefusal::UNKNOWN_COMMAND,
                                     UsbRefusal::OUT_OF_ORDER, UsbRefusal::CARD_NOT_READ}) {
        const QString status = QString::number(static_cast<int>(refusal), 16).toUpper();
        EXPECT_THAT(text, testing::HasSubstr("\n| `00 00 " + status.toStdString() + "` | "));
    }
}

TEST(VirtualReaderPage, Tables_AreThoseOfTheHelp)
{
    const QString page = "docs/virtual-reader.md";
    const QString help = helpOf(VIRTUAL_READER);
    HelpRows commands = rowsUnder("Commands on standard input", help);
    for (HelpRow &row : commands)
        row.name = code(row.name.replace('|', "\\|"));
    expectGeneratedPart(page, "commands",
                        tableOf(commands, {"Command", "What it does"}, {"---", "---"}));
    expectGeneratedPart(
        page, "exit statuses",
        tableOf(rowsUnder("Exit status", help), {"Status", "Meaning"}, {"---:", "---"}));
}

TEST(ManualOfTheTool, CommandsOptionsAndStatuses_AreThoseOfTheHelp)
{
    const QString overall = helpOf(TOOL);
    QStringList helps;
    const HelpRows commands = rowsUnder("Commands", overall);
    for (const HelpRow &command : commands)
        helps << helpOf(TOOL, {command.name});
    HelpRows common = rowsUnder("Options", helps.first());
    for (const QString &help : helps) {
        const HelpRows rows = rowsUnder("Options", help);
        common.erase(std::remove_if(common.begin(), common.end(),
                                    [&rows](const HelpRow &row) {
                                        return std::find(rows.begin(), rows.end(), row) ==
                                               rows.end();
                                    }),
                     common.end());
    }
    expectManualPart(TOOL_PAGE, "commands", [&](Words words) {
        QString text;
        for (int i = 0; i < helps.size(); ++i)
            text += commandSection(commands.at(static_cast<std::size_t>(i)).name, helps.at(i),
                                   common, words);
        text += section("Options of every command", manualList(common, optionItem, words));
        return text + manualFaults(helps.first(), words);
    });
    expectManualList(TOOL_PAGE, "environment", rowsUnder("Environment", overall), variableItem);
    expectManualList(TOOL_PAGE, "exit statuses", rowsUnder("Exit status", overall), plainItem);
}

TEST(ManualOfTheVirtualReader, OptionsCommandsAndStatuses_AreThoseOfTheHelp)
{
    const QString page = "idcard-virtual-reader.1";
    const QString help = helpOf(VIRTUAL_READER);
    expectOptionsAndStatuses(page, help);
    expectManualList(page, "commands", rowsUnder("Commands on standard input", help), commandItem);
    expectManualPart(page, "faults", [&help](Words words) { return manualFaults(help, words); });
}

TEST(ManualOfTheWindowProgram, OptionsAndStatuses_AreThoseOfTheHelp)
{
    expectOptionsAndStatuses("idcard-viewer.1", helpOf("idcard-viewer"));
}

TEST(ManualOfTheService, OptionsInterfaceErrorsAndStatuses_AreThoseOfTheCode)
{
    const QString page = "idcard-readerd.8";
    expectOptionsAndStatuses(page, helpOf("idcard-readerd"));
    expectManualPart(page, "interface", [](Words /*words*/) { return interfaceLines(); });
    expectManualList(page, "errors", errorRows(), plainItem);
}

TEST(ManualOfTheBrowserSetup, OptionsAndStatuses_AreThoseOfTheHelp)
{
    expectOptionsAndStatuses("idcard-browser-setup.8", helpOf("idcard-browser-setup"));
}

// The script speaks English alone.
TEST(ManualOfTheAccessProgram, OptionsAndStatuses_AreThoseOfTheHelp)
{
    const QString help = build_programs::outputOf(IDCARD_ACCESS_PROGRAM, {"--help"});
    const auto expectList = [&help](const char *heading, const char *name,
                                    QString (*item)(QString name)) {
        const QString list = manualList(rowsUnder(QLatin1String(heading), help), item, inEnglish);
        const QString page = "idcard-reader-access.8";
        expectGeneratedPart("docs/man/" + page, name, list);
        expectSameTags("docs/man/zh_CN/" + page, name, list);
    };
    expectList("Options", "options", optionItem);
    expectList("Exit status", "exit statuses", plainItem);
}
