#include "tests/support/matches.h"

#include <QRegularExpression>

QStringList matches(const QString &text, const QString &pattern)
{
    QStringList all;
    auto found = QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (found.hasNext())
        all << found.next().captured(1);
    return all;
}
