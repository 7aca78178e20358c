#include "tests/support/chinese_texts.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QXmlStreamReader>

namespace
{

QHash<QString, QString> translation()
{
    QDirIterator files(QStringLiteral(IDCARD_SOURCE_DIR "/apps"), {QStringLiteral("*_zh*.ts")},
                       QDir::Files, QDirIterator::Subdirectories);
    QFile file(files.next());
    EXPECT_FALSE(files.hasNext()) << files.next().toStdString();
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QHash<QString, QString> texts;
    QString source;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        else if (xml.name() == QLatin1String("translation"))
            texts[source] = xml.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

} // namespace

QString inChinese(const char *text)
{
    static const QHash<QString, QString> texts = translation();
    const QString found = texts.value(QString::fromUtf8(text));
    EXPECT_FALSE(found.isEmpty()) << "not translated: " << text;
    return found;
}
