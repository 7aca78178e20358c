// simulator/README.md against the tables it tells of.

#include <gmock/gmock.h>

#include <QFile>

#include "simulator/card_library.h"
#include "simulator/description_keys.h"

using namespace simulator;

namespace
{

// The rows of all tables, each as its cells.
QList<QStringList> tableRows()
{
    QList<QStringList> rows;
    QFile file(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/README.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("| "))) {
            QStringList cells = line.mid(1, line.size() - 2).split(QLatin1Char('|'));
            for (QString &cell : cells) {
                cell = cell.trimmed();
            }
            rows << cells;
        }
    }
    return rows;
}

QStringList rowOf(const QString &firstCell)
{
    for (const QStringList &row : tableRows()) {
        if (row.first() == firstCell) {
            return row;
        }
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
    case KeyUse::Required:
        return QStringLiteral("must %1").arg(rule.characters);
    case KeyUse::Optional:
        return QStringLiteral("may %1").arg(rule.characters);
    case KeyUse::Absent:
        break;
    }
    return QStringLiteral("-");
}

} // namespace

TEST(Readme, builtInCards_standThereWithTheirTitles)
{
    for (const QString &name : builtInCardNames()) {
        DescriptionError error;
        const auto card = loadCard(name, &error);
        ASSERT_TRUE(card) << error.message().toStdString();
        EXPECT_EQ(rowOf(code(name)), (QStringList{code(name), card->title}));
    }
}

TEST(Readme, textKeys_standThereWithTheirLengthsForEveryKind)
{
    for (const TextKey &key : textKeys()) {
        const QStringList row = rowOf(code(QLatin1String(key.name)));
        ASSERT_EQ(row.size(), 6) << key.name;
        for (int kind = 0; kind < CARD_KIND_COUNT; ++kind) {
            EXPECT_EQ(row.at(1 + kind).toStdString(),
                      usedAs(key.rule(static_cast<CardKind>(kind))).toStdString())
                << key.name;
        }
    }
}

TEST(Readme, faults_standThereWithTheirMeanings)
{
    for (const FaultRule &rule : makersFaultRules()) {
        const QString usage = faultUsage(rule);
        const QString shown = code(usage).replace(QStringLiteral(" or "), QStringLiteral("` or `"));
        const QStringList row = rowOf(shown);
        ASSERT_EQ(row.size(), 2) << rule.name;
        EXPECT_TRUE(row.at(1).startsWith(QLatin1String(rule.meaning))) << rule.name;
    }
}
