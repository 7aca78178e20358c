// "idcard-reader cards".

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "apps/terminal/text_layout.h"
#include "simulator/card/card_library.h"
#include "tests/tool/tool_runner.h"

namespace
{

TEST(Cards, TableListsEveryBuiltInCardInAlignedColumns)
{
    const ProcessResult run = runTool({"cards"});
    EXPECT_EQ(run.exitStatus, 0);
    QStringList lines = QString::fromUtf8(run.standardOutput).split(QLatin1Char('\n'));
    EXPECT_EQ(lines.takeLast(), QString());
    const QString header = lines.takeFirst();
    const int kindColumn = header.indexOf("KIND");
    const int titleColumn = header.indexOf("TITLE");
    ASSERT_GT(kindColumn, 0);
    ASSERT_GT(titleColumn, kindColumn);

    const QStringList names = simulator::builtInCardNames();
    ASSERT_FALSE(names.isEmpty());
    ASSERT_EQ(lines.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        const auto card = builtInCard(names[i]);
        EXPECT_EQ(lines[i].left(kindColumn).trimmed(), names[i]);
        EXPECT_EQ(lines[i].mid(kindColumn, titleColumn - kindColumn).trimmed(),
                  simulator::cardKindName(card.kind));
        EXPECT_EQ(lines[i].mid(titleColumn), card.title);
    }
}

TEST(Cards, JsonListsEveryBuiltInCard)
{
    const ProcessResult run = runTool({"cards", "--json"});
    EXPECT_EQ(run.exitStatus, 0);
    const QJsonArray cards = QJsonDocument::fromJson(run.standardOutput).array();
    const QStringList names = simulator::builtInCardNames();
    ASSERT_EQ(cards.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        const auto card = builtInCard(names[i]);
        EXPECT_EQ(cards[i].toObject(), (QJsonObject{{"name", names[i]},
                                                    {"kind", simulator::cardKindName(card.kind)},
                                                    {"title", card.title}}));
    }
}

TEST(Cards, EveryListedCardCanBeRead)
{
    QStringList arguments{"watch"};
    for (const QString &name : simulator::builtInCardNames())
        arguments << "--simulate" << name;
    const ProcessResult run = runTool(arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(run.standardOutput.count('\n'), simulator::builtInCardNames().size());
}

TEST(Cards, NeitherDisplayNorSimulatorLibraryIsNeeded)
{
    const ProcessResult run = runTool({"cards"}, {{{"QT_QPA_PLATFORM", "no-such-platform"},
                                                   {"IDCARD_SIMULATOR_LIBRARY", "/nonexistent"}}});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_TRUE(run.standardError.isEmpty()) << run.error();
}

} // namespace
