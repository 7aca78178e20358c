// --inline: the bytes of a card's files in the JSON, and nothing on the disk.

#include <gmock/gmock.h>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using testing::IsEmpty;

namespace
{

constexpr const char *PARTS[] = {"photo", "fingerprints", "frontPicture", "backPicture"};

QByteArray dataOf(const QJsonObject &card, const char *part)
{
    return QByteArray::fromBase64(card[part].toObject()["data"].toString().toLatin1());
}

/** The card without what --inline has put into it. */
QJsonObject withoutData(QJsonObject card)
{
    for (const char *part : PARTS) {
        QJsonObject value = card[part].toObject();
        value.remove("data");
        card[part] = value;
    }
    return card;
}

class Inline : public FolderTest
{
protected:
    QJsonObject read(const QStringList &more)
    {
        const ProcessResult run =
            runTool(QStringList{"read", "--json", "--simulate", "resident"} + more);
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        return parsedObject(run.standardOutput);
    }
};

TEST_F(Inline, AllHoldsTheBytesThatOutWrites)
{
    read({"--out", out()});
    const QJsonObject card = read({"--inline", "all"});
    EXPECT_EQ(dataOf(card, "photo"), readFile(out() + "/photo.bmp"));
    EXPECT_EQ(dataOf(card, "fingerprints"), readFile(out() + "/fingerprints.dat"));
    EXPECT_EQ(dataOf(card, "frontPicture"), readFile(out() + "/front.jpg"));
    EXPECT_EQ(dataOf(card, "backPicture"), readFile(out() + "/back.jpg"));
    EXPECT_EQ(dataOf(card, "photo").size(), 38862);
    EXPECT_EQ(withoutData(card), read({}));
}

TEST_F(Inline, OnlyTheNamedPartsHaveData)
{
    const QJsonObject card = read({"--inline", "photo,pictures"});
    EXPECT_TRUE(card["photo"].toObject().contains("data"));
    EXPECT_TRUE(card["frontPicture"].toObject().contains("data"));
    EXPECT_TRUE(card["backPicture"].toObject().contains("data"));
    EXPECT_FALSE(card["fingerprints"].toObject().contains("data"));
    EXPECT_EQ(dataOf(read({"--inline", "fingerprints"}), "fingerprints").size(), 1024);
}

TEST_F(Inline, WritesNoFile)
{
    ProcessInput input;
    input.workingDirectory = path(".");
    runTool({"read", "--json", "--inline", "all", "--simulate", "resident"}, input);
    EXPECT_THAT(namesIn(path(".")), IsEmpty());
}

TEST_F(Inline, SavedCardDoesNotHoldItsOwnFiles)
{
    const QJsonObject card = read({"--inline", "all", "--out", out()});
    EXPECT_EQ(card["photo"].toObject()["file"], out() + "/photo.bmp");
    EXPECT_TRUE(card["photo"].toObject().contains("data"));
    EXPECT_FALSE(parsedObject(readFile(out() + "/card.json"))["photo"].toObject().contains("data"));
}

TEST_F(Inline, PartThatACardDoesNotHaveIsNull)
{
    const QJsonObject card = parsedObject(
        runTool({"decode", "--json", "--inline", "all", recordFile("resident")}).standardOutput);
    EXPECT_EQ(card["photo"].toObject()["format"], "compressed");
    for (const char *part : {"photo", "frontPicture", "backPicture"})
        EXPECT_EQ(card[part].toObject()["data"], QJsonValue(QJsonValue::Null)) << part;
    EXPECT_EQ(dataOf(card, "fingerprints").size(), 1024);
}

TEST_F(Inline, IsRefusedWithoutJsonAndForUnknownParts)
{
    for (const char *command : {"read", "watch", "decode"})
        expectEnd(runTool({command, "--inline", "photo"}), 2, "--json");
    for (const char *parts : {"photos", "photo,", "photo;pictures"})
        expectEnd(runTool({"read", "--json", "--inline", parts}), 2, "photo, pictures");
}

} // namespace
