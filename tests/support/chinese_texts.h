#pragma once

// The Chinese translation of the programs' texts, as its file in the sources has it.

#include <QString>
#include <QVector>

struct ChineseText {
    QString source;
    QString chinese;
};

QVector<ChineseText> chineseTexts();

/** What the programs say in Chinese for `text`; empty, and a failure, when it is not translated. */
QString inChinese(const char *text);
