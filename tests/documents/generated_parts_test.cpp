// The parts of the pages that are made from tables of the code: results, cards, keys, faults, and
// what the help texts of the programs say. Pages in Chinese have them in the words of the programs'
// translation.

#include <algorithm>
#include <functional>

#include <gmock/gmock.h>

#include <QFile>
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
#include "tests/support/chinese_texts.h"
#include "tests/support/generated_text.h"
#include "tests/support/process.h"

using namespace app;
using namespace simulator;

namespace
{

QString code(const QString &text)
{
    return QLatin1Char('`') + text + QLatin1Char('`');
}

QString tableRow(const QStringList &cells)
{
    QString row = QStringLiteral("|");
    for (const QString &cell : cells)
        row += (cell.isEmpty() ? QString() : QLatin1Char(' ') + cell) + QStringLiteral(" |");
    return row + QLatin1Char('\n');
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
    return QStringLiteral("-");
}

QString formOf(TextForm form)
{
    switch (form) {
    case TextForm::DATE:
        return QStringLiteral("YYYYMMDD");
    case TextForm::END_DATE:
        return QStringLiteral("YYYYMMDD or 长期");
    case TextForm::DIGITS:
        return QStringLiteral("digits");
    case TextForm::SEX_CODE:
        return QStringLiteral("code of GB/T 2261.1: 0, 1, 2 or 9");
    case TextForm::TWO_DIGITS:
        return QStringLiteral("code of GB 3304, two digits");
    case TextForm::COUNTRY_CODE:
        return QStringLiteral("country code, letters; an unknown one will do");
    case TextForm::FREE:
        break;
    }
    return {};
}

QString faultTable(Road road)
{
    QString table = tableRow({"Fault", "What happens"}) + tableRow({"---", "---"});
    for (const FaultRule &rule : faultRules(road)) {
        const QString usage =
            code(faultUsage(rule)).replace(QStringLiteral(" or "), QStringLiteral("` or `"));
        table += tableRow({usage, rule.meaning(road)});
    }
    return table;
}

// The help texts.

QString helpOf(const QString &program, const QStringList &command = {},
               const ProcessInput &input = {})
{
    const ProcessResult run =
        runProcess(program, command + QStringList{QStringLiteral("--help")}, input);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError.toStdString();
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
    static const QRegularExpression row(QStringLiteral("^  (\\S.*?)(?:  +(.*))?$"));
    HelpRows rows;
    const QString section = (QLatin1Char('\n') + help)
                                .section(QLatin1Char('\n') + heading, 1)
                                .section(QStringLiteral("\n\n"), 0, 0);
    for (const QString &line : section.split(QLatin1Char('\n')).mid(1)) {
        const auto match = row.match(line);
        if (match.hasMatch())
            rows.push_back({match.captured(1), match.captured(2)});
        else if (!rows.empty())
            rows.back().meaning += QLatin1Char(' ') + line.trimmed();
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
    static const QRegularExpression sentenceEnd(QStringLiteral("\\. (?=[\"A-Z])"));
    text.replace(QLatin1Char('\\'), QStringLiteral("\\e"));
    text.replace(QStringLiteral("--"), QStringLiteral("\\-\\-"));
    return text.replace(sentenceEnd, QStringLiteral(".\n")) + QLatin1Char('\n');
}

QString manualList(const HelpRows &rows, QString (*item)(QString name), Words words)
{
    QString list = QStringLiteral(".Bl -tag -width Ds\n");
    for (const HelpRow &row : rows)
        list += QStringLiteral(".It %1\n").arg(item(row.name)) +
                manualText(words(row.meaning.toUtf8().constData()));
    return list + QStringLiteral(".El\n");
}

/** "-h, --help" or "--out <folder>". */
QString optionItem(QString name)
{
    name.replace(QStringLiteral("-h, "), QStringLiteral("Fl h , "));
    name.replace(QStringLiteral("--"), QStringLiteral("Fl -"));
    return name.replace(QStringLiteral(" <"), QStringLiteral(" Ar ")).remove(QLatin1Char('>'));
}

/** "faults [LIST]". */
QString commandItem(QString name)
{
    name.replace(QLatin1Char(' '), QStringLiteral(" Ar "));
    name.replace(QStringLiteral("Ar ["), QStringLiteral("Op Ar ")).remove(QLatin1Char(']'));
    return QStringLiteral("Cm ") + name;
}

QString variableItem(QString name)
{
    return QStringLiteral("Ev ") + name;
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
    HelpRows own = rowsUnder(QStringLiteral("Options"), help);
    own.erase(std::remove_if(own.begin(), own.end(),
                             [&common](const HelpRow &row) {
                                 return std::find(common.begin(), common.end(), row) !=
                                        common.end();
                             }),
              own.end());
    QString usage = help.section(QLatin1Char('\n'), 0, 0).section(QLatin1Char(' '), 1);
    usage.replace(QStringLiteral("[options]"), words("[options]"));
    const QString description = help.section(QStringLiteral("\n\n"), 1, 1).simplified();
    return section(name, QStringLiteral(".Dl ") + manualText(usage) + QStringLiteral(".Pp\n") +
                             manualText(words(description.toUtf8().constData())) +
                             manualList(own, optionItem, words));
}

QString manualFaults(const QString &help, Words words)
{
    return section(QStringLiteral("Faults"),
                   manualList(rowsUnder(QStringLiteral("Faults"), help), plainItem, words));
}

// The service.

/** The methods, signals and properties of the installed interface, one a line. */
QString interfaceLines()
{
    QFile file(QStringLiteral(IDCARD_SERVICE_INTERFACE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
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
        const bool isCallable =
            element == QLatin1String("method") || element == QLatin1String("signal");
        if (token == QXmlStreamReader::StartElement && isCallable) {
            member = attribute("name");
            taken.clear();
            given.clear();
        } else if (token == QXmlStreamReader::StartElement && element == QLatin1String("arg")) {
            (attribute("direction") == QLatin1String("out") ? given : taken)
                << attribute("type") + QLatin1Char(' ') + attribute("name");
        } else if (token == QXmlStreamReader::StartElement &&
                   element == QLatin1String("property")) {
            lines +=
                QStringLiteral(".Dl property %1 %2\n").arg(attribute("type"), attribute("name"));
        } else if (token == QXmlStreamReader::EndElement && isCallable) {
            lines += QStringLiteral(".Dl %1 %2(%3)")
                         .arg(element, member, taken.join(QStringLiteral(", ")));
            if (!given.isEmpty())
                lines += QStringLiteral(" gives (%1)").arg(given.join(QStringLiteral(", ")));
            lines += QLatin1Char('\n');
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
    expectGeneratedPart(QStringLiteral("docs/man/") + page, name, text(inEnglish));
    expectGeneratedPart(QStringLiteral("docs/man/zh_CN/") + page, name,
                        inManMacros(text(inChinese)));
}

/** A part that is a list of these rows. */
void expectManualList(const QString &page, const QString &name, const HelpRows &rows,
                      QString (*item)(QString name))
{
    expectManualPart(page, name,
                     [&rows, item](Words words) { return manualList(rows, item, words); });
}

const QString TOOL = QStringLiteral("idcard-reader");
const QString VIRTUAL_READER = QStringLiteral("idcard-virtual-reader");
const QString VIEWER = QStringLiteral("idcard-viewer");

QString manualPage(const QString &program)
{
    return program + QStringLiteral(".1");
}

} // namespace

TEST(ReadmePage, OutputOfARead_IsThatOfTheToolInTheLanguageOfThePage)
{
    const struct {
        const char *page;
        const char *language;
    } rows[] = {{"README.md", "en"}, {"README.zh-CN.md", "zh_CN"}};
    for (const auto &row : rows) {
        ProcessInput input;
        input.environment[QStringLiteral("LANGUAGE")] = QLatin1String(row.language);
        const ProcessResult run = runProcess(TOOL, {"read", "--simulate", "resident"}, input);
        expectEnd(run, 0);
        expectGeneratedPart(
            QLatin1String(row.page), "output of read",
            QStringLiteral("```console\n$ idcard-reader read --simulate resident\n") +
                QString::fromUtf8(run.standardOutput) + QStringLiteral("```\n"));
    }
}

TEST(ResultCodesPage, Tables_AreThoseOfTheCode)
{
    const QString page = QStringLiteral("docs/result-codes.md");
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
    const QString page = QStringLiteral("docs/result-codes.zh-CN.md");
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
    const QString name = QStringLiteral("failures of the browser's host");
    expectGeneratedPart(QStringLiteral("docs/web.md"), name,
                        browserFaultTable({"Name", "What happened", "What to do"}, inEnglish));
    expectGeneratedPart(QStringLiteral("docs/web.zh-CN.md"), name,
                        browserFaultTable({"名称", "发生了什么", "处理办法"}, inChinese));
}

TEST(SimulatorPage, Tables_AreThoseOfTheCode)
{
    const QString page = QStringLiteral("simulator/README.md");
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
    QFile page(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/README.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const std::string text = page.readAll().toStdString();
    for (const UsbRefusal refusal : {UsbRefusal::NO_CARD, UsbRefusal::UNKNOWN_COMMAND,
                                     UsbRefusal::OUT_OF_ORDER, UsbRefusal::CARD_NOT_READ}) {
        const QString status = QString::number(static_cast<int>(refusal), 16).toUpper();
        EXPECT_THAT(text, testing::HasSubstr("\n| `00 00 " + status.toStdString() + "` | "));
    }
}

TEST(VirtualReaderPage, Tables_AreThoseOfTheHelp)
{
    const QString page = QStringLiteral("docs/virtual-reader.md");
    const QString help = helpOf(VIRTUAL_READER);
    HelpRows commands = rowsUnder(QStringLiteral("Commands on standard input"), help);
    for (HelpRow &row : commands)
        row.name = code(row.name.replace(QLatin1Char('|'), QStringLiteral("\\|")));
    expectGeneratedPart(page, "commands",
                        tableOf(commands, {"Command", "What it does"}, {"---", "---"}));
    expectGeneratedPart(page, "exit statuses",
                        tableOf(rowsUnder(QStringLiteral("Exit status"), help),
                                {"Status", "Meaning"}, {"---:", "---"}));
}

TEST(ManualOfTheTool, CommandsOptionsAndStatuses_AreThoseOfTheHelp)
{
    const QString overall = helpOf(TOOL);
    QStringList helps;
    const HelpRows commands = rowsUnder(QStringLiteral("Commands"), overall);
    for (const HelpRow &command : commands)
        helps << helpOf(TOOL, {command.name});
    HelpRows common = rowsUnder(QStringLiteral("Options"), helps.first());
    for (const QString &help : helps) {
        const HelpRows rows = rowsUnder(QStringLiteral("Options"), help);
        common.erase(std::remove_if(common.begin(), common.end(),
                                    [&rows](const HelpRow &row) {
                                        return std::find(rows.begin(), rows.end(), row) ==
                                               rows.end();
                                    }),
                     common.end());
    }
    expectManualPart(manualPage(TOOL), "commands", [&](Words words) {
        QString text;
        for (int i = 0; i < helps.size(); ++i)
            text += commandSection(commands.at(static_cast<std::size_t>(i)).name, helps.at(i),
                                   common, words);
        text += section(QStringLiteral("Options of every command"),
                        manualList(common, optionItem, words));
        return text + manualFaults(helps.first(), words);
    });
    expectManualList(manualPage(TOOL), "environment",
                     rowsUnder(QStringLiteral("Environment"), overall), variableItem);
    expectManualList(manualPage(TOOL), "exit statuses",
                     rowsUnder(QStringLiteral("Exit status"), overall), plainItem);
}

TEST(ManualOfTheVirtualReader, OptionsCommandsAndStatuses_AreThoseOfTheHelp)
{
    const QString page = manualPage(VIRTUAL_READER);
    const QString help = helpOf(VIRTUAL_READER);
    const auto rows = [&help](const char *heading) {
        return rowsUnder(QLatin1String(heading), help);
    };
    expectManualList(page, "options", rows("Options"), optionItem);
    expectManualList(page, "commands", rows("Commands on standard input"), commandItem);
    expectManualPart(page, "faults", [&help](Words words) { return manualFaults(help, words); });
    expectManualList(page, "exit statuses", rows("Exit status"), plainItem);
}

TEST(ManualOfTheWindowProgram, OptionsAndStatuses_AreThoseOfTheHelp)
{
    const QString help = helpOf(VIEWER);
    expectManualList(manualPage(VIEWER), "options", rowsUnder(QStringLiteral("Options"), help),
                     optionItem);
    expectManualList(manualPage(VIEWER), "exit statuses",
                     rowsUnder(QStringLiteral("Exit status"), help), plainItem);
}

TEST(ManualOfTheService, OptionsInterfaceErrorsAndStatuses_AreThoseOfTheCode)
{
    const QString page = QStringLiteral("idcard-readerd.8");
    const QString help = helpOf(QStringLiteral("idcard-readerd"));
    expectManualList(page, "options", rowsUnder(QStringLiteral("Options"), help), optionItem);
    expectManualPart(page, "interface", [](Words /*words*/) { return interfaceLines(); });
    expectManualList(page, "errors", errorRows(), plainItem);
    expectManualList(page, "exit statuses", rowsUnder(QStringLiteral("Exit status"), help),
                     plainItem);
}

TEST(ManualOfTheBrowserSetup, OptionsAndStatuses_AreThoseOfTheHelp)
{
    const QString page = QStringLiteral("idcard-browser-setup.8");
    const QString help = helpOf(QStringLiteral("idcard-browser-setup"));
    expectManualList(page, "options", rowsUnder(QStringLiteral("Options"), help), optionItem);
    expectManualList(page, "exit statuses", rowsUnder(QStringLiteral("Exit status"), help),
                     plainItem);
}

// The script speaks English alone.
TEST(ManualOfTheAccessProgram, OptionsAndStatuses_AreThoseOfTheHelp)
{
    ProcessInput script; // which no emulator runs
    script.emulated = false;
    const QString help = helpOf(QStringLiteral(IDCARD_ACCESS_PROGRAM), {}, script);
    const auto expectList = [&help](const char *heading, const char *name,
                                    QString (*item)(QString name)) {
        const QString list = manualList(rowsUnder(QLatin1String(heading), help), item, inEnglish);
        const QString page = QStringLiteral("idcard-reader-access.8");
        expectGeneratedPart(QStringLiteral("docs/man/") + page, name, list);
        expectSameTags(QStringLiteral("docs/man/zh_CN/") + page, name, list);
    };
    expectList("Options", "options", optionItem);
    expectList("Exit status", "exit statuses", plainItem);
}
