#pragma once

// What QString does itself, in forms that the oldest supported Qt has too. QString's own compile
// with it, but those of a newer Qt ask for functions that it lacks, so the program would not start
// there.

#include <QString>
#include <QStringList>

/** `QString::split`: a text without the separator is one part. */
inline QStringList splitAt(QChar separator, const QString &text)
{
    QStringList parts;
    int from = 0;
    for (int at = text.indexOf(separator); at >= 0; at = text.indexOf(separator, from)) {
        parts << text.mid(from, at - from);
        from = at + 1;
    }
    return parts << text.mid(from);
}

/** The first of `texts` in the place of %1, and so on; other markers stay as they are. */
inline QString withTextsFilledIn(const QString &pattern, const QStringList &texts)
{
    QStringList parts = splitAt(QLatin1Char('%'), pattern);
    QString filled = parts.takeFirst();
    for (const QString &part : parts) {
        const int number = part.isEmpty() ? 0 : part.at(0).digitValue();
        if (number >= 1 && number <= texts.size())
            filled += texts.at(number - 1) + part.mid(1);
        else
            filled += QLatin1Char('%') + part;
    }
    return filled;
}

/** `QString::arg` of several texts: a marker within one of them is not filled in. */
template <typename... Texts>
QString filledIn(const QString &pattern, const Texts &...texts)
{
    static_assert(sizeof...(texts) < 10, "a marker has one digit");
    return withTextsFilledIn(pattern, {QString(texts)...});
}
