// The translations of the programs against the texts in its sources.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/build_programs.h"
#include "tests/support/chinese_texts.h"
#include "tests/support/matches.h"

namespace
{

using testing::IsEmpty;
using testing::Not;

/** What matches `pattern`, each once, sorted. */
QStringList distinct(const QString &text, const QString &pattern)
{
    QStringList found = matches(text, '(' + pattern + ')');
    found.removeDuplicates();
    found.sort();
    return found;
}

TEST(Translations, TextsOfTheSources_AreAllTranslatedAndNoOthers)
{
    build_programs::outputOf(IDCARD_SOURCE_DIR "/scripts/make/translations", {"--check"});
}

TEST(Translations, PlacesForValues_AreInTheTranslationToo)
{
    EXPECT_THAT(chineseTexts(), Not(IsEmpty()));
    for (const ChineseText &text : chineseTexts()) {
        EXPECT_EQ(distinct(text.chinese, "%(?:L?\\d|n)"), distinct(text.source, "%(?:L?\\d|n)"))
            << text.source.toStdString();
    }
}

TEST(Translations, KeysOfMenuEntries_AreKeptSinceChineseHasNoLettersForThem)
{
    for (const ChineseText &text : chineseTexts()) {
        EXPECT_EQ(distinct(text.chinese, "\\(&[A-Z0-9]\\)").size(),
                  distinct(text.source, "&\\w").size())
            << text.source.toStdString();
    }
}

// Commands, file names and options stay as they are, so that the reader of the text can use them.
TEST(Translations, NamesOfFilesAndCommands_StayAsTheyAre)
{
    for (const ChineseText &text : chineseTexts()) {
        for (const QString &name : distinct(text.source, "(?<![\\w-])--[a-z]+|/(?:dev|etc|sys|usr)"
                                                         "/[a-z/.0-9-]+|\\w+[-_]\\w+\\.\\w+"))
            EXPECT_TRUE(text.chinese.contains(name))
                << text.source.toStdString() << ": " << name.toStdString();
    }
}

TEST(Translations, CommandsOfExamples_StayAsTheyAre)
{
    for (const ChineseText &text : chineseTexts()) {
        EXPECT_EQ(distinct(text.chinese, "^  idcard-reader .*$"),
                  distinct(text.source, "^  idcard-reader .*$"))
            << text.source.toStdString();
    }
}

TEST(Translations, SentencesEnd_AsSentencesInChineseDo)
{
    for (const ChineseText &text : chineseTexts()) {
        EXPECT_EQ(text.source.endsWith('.'), text.chinese.endsWith(QStringLiteral("。")))
            << text.source.toStdString();
    }
}

} // namespace
