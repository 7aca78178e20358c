// Holds together what stands in three places: the enumeration in api/result_codes.h, the catalogue
// of texts, and docs/result-codes.md.

#include <set>

#include <gmock/gmock.h>

#include <QFile>
#include <QRegularExpression>

#include "apps/card_reader.h"
#include "apps/result_catalogue.h"

using namespace app;

namespace
{

QString sourceFile(const char *name)
{
    QFile file(QStringLiteral(IDCARD_SOURCE_DIR "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

using NamedCode = std::pair<int, std::string>;

std::set<NamedCode> codesOfHeader()
{
    static const QRegularExpression enumerator(
        QStringLiteral("(IDCARD_RESULT_\\w+)\\s*=\\s*(-?\\d+)"));
    std::set<NamedCode> codes;
    auto matches = enumerator.globalMatch(sourceFile("api/result_codes.h"));
    while (matches.hasNext()) {
        const auto match = matches.next();
        codes.emplace(match.captured(2).toInt(), match.captured(1).toStdString());
    }
    return codes;
}

/** Rows of the tables of the document whose first cell is a number, cells trimmed. */
std::vector<QStringList> rowsOfDocument(const QString &heading)
{
    const QString text = sourceFile("docs/result-codes.md");
    const int begin = text.indexOf(QStringLiteral("\n## ") + heading + QLatin1Char('\n'));
    EXPECT_GE(begin, 0) << heading.toStdString();
    const int end = text.indexOf(QStringLiteral("\n## "), begin + 1);
    std::vector<QStringList> rows;
    const QStringList lines = text.mid(begin, end < 0 ? -1 : end - begin).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        QStringList cells = line.split(QLatin1Char('|'));
        if (cells.size() < 3)
            continue;
        cells.removeFirst();
        cells.removeLast();
        for (QString &cell : cells)
            cell = cell.trimmed();
        bool isNumber = false;
        static_cast<void>(cells.first().toInt(&isNumber));
        if (isNumber)
            rows.push_back(cells);
    }
    return rows;
}

std::vector<std::string> joined(const std::vector<QStringList> &rows)
{
    std::vector<std::string> lines;
    lines.reserve(rows.size());
    for (const QStringList &row : rows)
        lines.push_back(row.join(QStringLiteral(" | ")).toStdString());
    return lines;
}

std::vector<QStringList> rowsOfCatalogue()
{
    std::vector<QStringList> rows;
    rows.reserve(resultCatalogue().size());
    for (const ResultEntry &entry : resultCatalogue()) {
        rows.push_back(
            {QString::number(entry.code), QStringLiteral("`%1`").arg(QLatin1String(entry.constant)),
             QString::fromUtf8(entry.summary), QString::fromUtf8(entry.cause),
             QString::fromUtf8(entry.remedy), QString::number(static_cast<int>(entry.exitStatus))});
    }
    return rows;
}

TEST(ResultCatalogue, HoldsExactlyTheCodesAndNamesOfTheHeader)
{
    std::set<NamedCode> codes;
    for (const ResultEntry &entry : resultCatalogue())
        codes.emplace(entry.code, entry.constant);
    EXPECT_EQ(codes.size(), 12U);
    EXPECT_EQ(codes, codesOfHeader());
}

TEST(ResultCatalogue, DocumentHoldsTheSameRows)
{
    EXPECT_THAT(joined(rowsOfDocument(QStringLiteral("What `readIDCard` returns"))),
                testing::ElementsAreArray(joined(rowsOfCatalogue())));
}

TEST(ResultCatalogue, DocumentHoldsTheSameExitStatuses)
{
    std::vector<QStringList> rows;
    for (const ExitStatusEntry &entry : exitStatusCatalogue())
        rows.push_back(
            {QString::number(static_cast<int>(entry.status)), QString::fromUtf8(entry.meaning)});
    EXPECT_THAT(joined(rowsOfDocument(QStringLiteral("Exit statuses of `idcard-reader`"))),
                testing::ElementsAreArray(joined(rows)));
}

TEST(ResultCatalogue, EveryTextIsASentence)
{
    for (const ResultEntry &entry : resultCatalogue()) {
        for (const char *text : {entry.summary, entry.cause, entry.remedy})
            EXPECT_THAT(text, testing::MatchesRegex("[A-Z].+\\.")) << entry.code;
    }
}

TEST(ResultCatalogue, NoTextBreaksTheTableOfTheDocument)
{
    for (const ResultEntry &entry : resultCatalogue()) {
        for (const char *text : {entry.summary, entry.cause, entry.remedy})
            EXPECT_THAT(text, testing::Not(testing::HasSubstr("|"))) << entry.code;
    }
}

TEST(ResultCatalogue, ExitStatusesStandOnceAndAscending)
{
    int expected = 0;
    for (const ExitStatusEntry &entry : exitStatusCatalogue())
        EXPECT_EQ(static_cast<int>(entry.status), expected++);
    EXPECT_EQ(expected, 9);
}

TEST(FindResult, ZeroWithARecordIsSuccess)
{
    ASSERT_NE(findResult(0, true), nullptr);
    EXPECT_EQ(findResult(0, true)->exitStatus, ExitStatus::Done);
}

TEST(FindResult, ZeroWithoutARecordIsNothingRead)
{
    ASSERT_NE(findResult(0, false), nullptr);
    EXPECT_EQ(findResult(0, false)->exitStatus, ExitStatus::NothingRead);
}

TEST(FindResult, FailuresLeadToTheirExitStatus)
{
    EXPECT_EQ(findResult(-5, false)->exitStatus, ExitStatus::ReaderNotOpened);
    EXPECT_EQ(findResult(-23, false)->exitStatus, ExitStatus::ReadFailed);
    EXPECT_EQ(findResult(-24, false)->exitStatus, ExitStatus::NoCard);
    EXPECT_EQ(findResult(-26, false)->exitStatus, ExitStatus::PhotoNotDecoded);
    EXPECT_EQ(findResult(-40, false)->exitStatus, ExitStatus::ProgramFailed);
}

TEST(FindResult, NumberThatIsNoResultHasNoRow)
{
    for (const int code : {1, -1, -25, -41})
        EXPECT_EQ(findResult(code, false), nullptr) << code;
}

TEST(Explain, EveryFailureTellsCodeCauseAndRemedy)
{
    for (const ResultEntry &entry : resultCatalogue()) {
        if (entry.exitStatus == ExitStatus::Done)
            continue;
        ReadOutcome outcome;
        outcome.code = entry.code;
        const std::string text = explain(outcome).simplified().toStdString();
        EXPECT_THAT(text, testing::StartsWith(entry.summary));
        EXPECT_THAT(text, testing::HasSubstr("Code: " + std::to_string(entry.code) + " (" +
                                             entry.constant + ")"));
        EXPECT_THAT(text, testing::HasSubstr(entry.cause));
        EXPECT_THAT(text, testing::HasSubstr(entry.remedy));
    }
}

TEST(Explain, LinesFitATerminal)
{
    for (const ResultEntry &entry : resultCatalogue()) {
        ReadOutcome outcome;
        outcome.code = entry.code;
        const QString text = QStringLiteral("idcard-reader: ") + explain(outcome);
        for (const QString &line : text.split(QLatin1Char('\n')))
            EXPECT_LE(line.size(), 79) << line.toStdString();
    }
}

TEST(Explain, NumberThatIsNoResultIsTold)
{
    ReadOutcome outcome;
    outcome.code = -77;
    EXPECT_THAT(explain(outcome).toStdString(), testing::HasSubstr("-77"));
    EXPECT_EQ(outcome.exitStatus(), ExitStatus::ProgramFailed);
}

} // namespace
