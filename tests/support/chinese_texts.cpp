#include "tests/support/chinese_texts.h"

#include <gtest/gtest.h>

#include <QXmlStreamReader>

#include "tests/support/files.h"

QVector<ChineseText> chineseTexts()
{
    QXmlStreamReader xml(sourceText(QStringLiteral("apps/translations/idcard-reader_zh.ts")));
    QVector<ChineseText> texts;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source"))
            texts.push_back({xml.readElementText(), {}});
        else if (xml.name() == QLatin1String("translation"))
            texts.last().chinese = xml.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

QString inChinese(const char *text)
{
    static const QVector<ChineseText> texts = chineseTexts();
    QString found;
    for (const ChineseText &each : texts) {
        if (each.source == QString::fromUtf8(text))
            found = each.chinese;
    }
    EXPECT_FALSE(found.isEmpty()) << "not translated: " << text;
    return found;
}
