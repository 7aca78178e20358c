// The translations of the programs against the texts in its sources.

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "tests/support/process.h"

namespace
{

using testing::IsEmpty;
using testing::Not;

const QString SOURCE = QStringLiteral(IDCARD_SOURCE_DIR "/");

struct Translation {
    QString source;
    QString target;
};

/** All texts of the Chinese translation. */
std::vector<Translation> chinese()
{
    QFile file(SOURCE + QStringLiteral("apps/translations/idcard-reader_zh.ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    std::vector<Translation> all;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source"))
            all.push_back({xml.readElementText(), {}});
        else if (xml.name() == QLatin1String("translation"))
            all.back().target = xml.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return all;
}

std::set<std::string> matches(const QString &text, const char *pattern)
{
    std::set<std::string> found;
    auto match = QRegularExpression(QString::fromLatin1(pattern)).globalMatch(text);
    while (match.hasNext())
        found.insert(match.next().captured().toStdString());
    return found;
}

TEST(Translations, TextsOfTheSources_AreAllTranslatedAndNoOthers)
{
    ProcessInput input;
    input.emulated = false;
    const ProcessResult check =
        runProcess(SOURCE + QStringLiteral("scripts/make/translations"), {"--check"}, input);
    EXPECT_EQ(check.exitStatus, 0) << check.standardError.toStdString();
}

TEST(Translations, PlacesForValues_AreInTheTranslationToo)
{
    EXPECT_THAT(chinese(), Not(IsEmpty()));
    for (const Translation &text : chinese()) {
        EXPECT_EQ(matches(text.target, "%(L?\\d|n)"), matches(text.source, "%(L?\\d|n)"))
            << text.source.toStdString();
    }
}

TEST(Translations, KeysOfMenuEntries_AreKeptSinceChineseHasNoLettersForThem)
{
    for (const Translation &text : chinese()) {
        const std::set<std::string> keys = matches(text.source, "&\\w");
        EXPECT_EQ(matches(text.target, "\\(&[A-Z0-9]\\)").size(), keys.size())
            << text.source.toStdString();
    }
}

// Commands, file names and options stay as they are, so that the reader of the text can use them.
TEST(Translations, NamesOfFilesAndCommands_StayAsTheyAre)
{
    for (const Translation &text : chinese()) {
        for (const std::string &name :
             matches(text.source, "(?<![\\w-])--[a-z]+|/(?:dev|etc|sys|usr)"
                                  "/[a-z/.0-9-]+|\\w+[-_]\\w+\\.\\w+"))
            EXPECT_TRUE(text.target.contains(QString::fromStdString(name)))
                << text.source.toStdString() << ": " << name;
    }
}

TEST(Translations, CommandsOfExamples_StayAsTheyAre)
{
    for (const Translation &text : chinese()) {
        EXPECT_EQ(matches(text.target, "(?m)^  idcard-reader .*$"),
                  matches(text.source, "(?m)^  idcard-reader .*$"))
            << text.source.toStdString();
    }
}

TEST(Translations, SentencesEnd_AsSentencesInChineseDo)
{
    for (const Translation &text : chinese()) {
        EXPECT_EQ(text.source.endsWith('.'), text.target.endsWith(QStringLiteral("。")))
            << text.source.toStdString();
    }
}

} // namespace
