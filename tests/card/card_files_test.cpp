// The folders that cards are saved in.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>

#include "apps/card/card_files.h"
#include "tests/card/card_samples.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using namespace app;
using testing::ElementsAre;

namespace
{

Card cardOf(const QString &name, const std::string &number = "000000199001020017")
{
    auto records = samples::filledRecords();
    records->cn.szName = name.toStdString();
    records->cn.szID = number;
    return {IDCARD_KIND_CN, *records};
}

class HoldersFolder : public FolderTest
{
protected:
    /** The name of the folder that the card was saved in. */
    std::string save(const Card &card)
    {
        QString folder;
        EXPECT_EQ(saveInHoldersFolder(card, path("."), &folder).toStdString(), "");
        EXPECT_TRUE(QFile::exists(folder + "/card.json"));
        EXPECT_EQ(QDir(QDir(folder).filePath("..")).canonicalPath(),
                  QDir(path(".")).canonicalPath());
        return QDir(folder).dirName().toStdString();
    }
};

TEST_F(HoldersFolder, IsCalledByNameAndNumber)
{
    EXPECT_EQ(save(cardOf("王小明")), "王小明 000000199001020017");
    EXPECT_EQ(modeOf(path("王小明 000000199001020017")), 0700);
}

TEST_F(HoldersFolder, OfARareCharacter_IsCalledByIt)
{
    EXPECT_EQ(save(cardOf("𠮷田", "1")), "𠮷田 1");
}

TEST_F(HoldersFolder, OfTheSameHolderTwice_GetsANumber)
{
    for (const char *const name : {"王 1", "王 1 (2)", "王 1 (3)"})
        EXPECT_EQ(save(cardOf("王", "1")), name);
    EXPECT_THAT(namesIn(path(".")), ElementsAre("王 1", "王 1 (2)", "王 1 (3)"));
}

TEST_F(HoldersFolder, OfAHostileName_IsInsideTheParent)
{
    for (const char *const name : {"../../x", "/etc/x", "..", ".", ".x", "a/b", "a\\b", "a\nb", "~",
                                   "$(x)", "C:x", "a\tb", "*", "-rf"}) {
        EXPECT_THAT(save(cardOf(name)), testing::Not(testing::ContainsRegex("[/.\\\n\t$*:~]|^-")))
            << name;
    }
}

TEST_F(HoldersFolder, OfAVeryLongName_IsMadeAsOftenAsAsked)
{
    for (const QString &letter : {QStringLiteral("w"), QStringLiteral("王")}) {
        for (int times = 0; times < 3; ++times)
            EXPECT_LE(save(cardOf(letter.repeated(200))).size(), 255U);
    }
}

TEST_F(HoldersFolder, OfACardWithoutNameAndNumber_IsCalledByItsKind)
{
    EXPECT_EQ(save(cardOf("", "")), "resident");
}

} // namespace
