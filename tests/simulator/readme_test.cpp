// simulator/README.md against the tables it tells of.

#include <gmock/gmock.h>

#include <QFile>

#include "simulator/card/card_library.h"
#include "simulator/card/description_keys.h"
#include "simulator/reader/virtual_reader.h"

using namespace simulator;

namespace
{

// The rows of all tables under a heading, each as its cells.
QList<QStringList> tableRows(const QString &heading)
{
    QList<QStringList> rows;
    QFile file(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/README.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    QString under;
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1Char('#')))
            under = line;
        if (under == heading && line.startsWith(QLatin1String("| "))) {
            QStringList cells = line.mid(1, line.size() - 2).split(QLatin1Char('|'));
            for (QString &cell : cells)
                cell = cell.trimmed();
            rows << cells;
        }
    }
    return rows;
}

QStringList rowOf(const QString &firstCell, const char *heading)
{
    for (const QStringList &row : tableRows(QLatin1String(heading))) {
        if (row.first() == firstCell)
            return row;
    }
    return {};
}

QString code(const QString &text)
{
    return QLatin1Char('`') + text + QLatin1Char('`');
}

QString usedAs(const KeyRule &rule)
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

// How the first cell of a fault's row shows it.
QString shownUsage(const FaultRule &rule)
{
    return code(faultUsage(rule)).replace(QStringLiteral(" or "), QStringLiteral("` or `"));
}

} // namespace

TEST(Readme, BuiltInCards_StandThereWithTheirTitles)
{
    for (const QString &name : builtInCardNames()) {
        DescriptionError error;
        const auto card = loadCard(name, &error);
        ASSERT_TRUE(card) << error.message().toStdString();
        EXPECT_EQ(rowOf(code(name), "## Built-in cards"), (QStringList{code(name), card->title}));
    }
}

TEST(Readme, TextKeys_StandThereWithTheirLengthsForEveryKind)
{
    for (const TextKey &key : textKeys()) {
        const QStringList row = rowOf(code(QLatin1String(key.name)), "## Card descriptions");
        ASSERT_EQ(row.size(), 6) << key.name;
        for (int kind = 0; kind < CARD_KIND_COUNT; ++kind) {
            EXPECT_EQ(row.at(1 + kind).toStdString(),
                      usedAs(key.rule(static_cast<CardKind>(kind))).toStdString())
                << key.name;
        }
    }
}

TEST(Readme, Faults_StandThereWithTheirMeanings)
{
    for (const FaultRule &rule : faultRules(Road::MAKERS_LIBRARY)) {
        const QStringList row = rowOf(shownUsage(rule), "## Faults");
        ASSERT_EQ(row.size(), 2) << rule.name;
        EXPECT_TRUE(row.at(1).startsWith(QLatin1String(rule.meaning(Road::MAKERS_LIBRARY))))
            << rule.name;
    }
}

TEST(Readme, FaultsOfAReaderOnUsb_StandThereWithTheirMeanings)
{
    for (const FaultRule &rule : faultRules(Road::USB)) {
        const QStringList row = rowOf(shownUsage(rule), "### Faults of the reader on USB");
        ASSERT_EQ(row.size(), 2) << rule.name;
        EXPECT_TRUE(row.at(1).startsWith(QLatin1String(rule.meaning(Road::USB)))) << rule.name;
    }
}

TEST(Readme, RefusalsOfTheReaderOnUsb_StandThere)
{
    for (const UsbRefusal refusal :
         {UsbRefusal::NO_CARD, UsbRefusal::MALFORMED_COMMAND, UsbRefusal::UNKNOWN_COMMAND,
          UsbRefusal::OUT_OF_ORDER, UsbRefusal::CARD_NOT_READ}) {
        const QString status = QStringLiteral("`00 00 %1`")
                                   .arg(static_cast<int>(refusal), 2, 16, QLatin1Char('0'))
                                   .toUpper();
        EXPECT_EQ(rowOf(status, "## The reader on USB").size(), 2) << status.toStdString();
    }
}
