#include "apps/viewer/history_csv.h"

#include <algorithm>

#include <QCoreApplication>
#include <QMap>

#include "apps/card/card_output.h"

namespace viewer
{

namespace
{

// Spreadsheet programs keep 15 digits of a number.
constexpr int KEPT_DIGITS = 15;
constexpr const char *UTF8_MARK = "\xEF\xBB\xBF";

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(History)
};

bool wouldLoseDigits(const QString &text)
{
    const bool isNumber =
        std::all_of(text.begin(), text.end(), [](QChar character) { return character.isDigit(); });
    const bool beginsWithZero = text.size() > 1 && text.startsWith(QLatin1Char('0'));
    return isNumber && (text.size() > KEPT_DIGITS || beginsWithZero);
}

bool looksLikeFormula(const QString &text)
{
    return text.size() > 1 && QStringLiteral("=+-@").contains(text.at(0));
}

QString cell(QString text)
{
    if (wouldLoseDigits(text) || looksLikeFormula(text))
        text.prepend(QLatin1Char('\t'));
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

QString line(const QStringList &texts)
{
    QStringList cells;
    for (const QString &text : texts)
        cells << cell(text);
    return cells.join(QLatin1Char(',')) + QLatin1String("\r\n");
}

QMap<QString, QString> contentsOf(const app::Card &card)
{
    QMap<QString, QString> contents;
    for (const app::CardRow &row : app::cardRows(card))
        contents.insert(row.label, row.whole);
    return contents;
}

/** The labels of all fields, those of the first card first. */
QStringList labelsOf(const QVector<KeptCard> &cards)
{
    QStringList labels;
    for (const KeptCard &kept : cards) {
        for (const app::CardRow &row : app::cardRows(*kept.card)) {
            if (row.sort != app::CardRow::Sort::PHOTO && !labels.contains(row.label))
                labels << row.label;
        }
    }
    return labels;
}

} // namespace

QByteArray historyCsv(const QVector<KeptCard> &cards)
{
    const QStringList labels = labelsOf(cards);
    QString text = line(QStringList(Texts::tr("Time")) + labels);
    for (const KeptCard &kept : cards) {
        const QMap<QString, QString> contents = contentsOf(*kept.card);
        QStringList texts = {kept.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))};
        for (const QString &label : labels)
            texts << contents.value(label);
        text += line(texts);
    }
    return QByteArray(UTF8_MARK) + text.toUtf8();
}

} // namespace viewer
