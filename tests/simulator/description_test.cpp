// What the reader of card descriptions takes and what it refuses, with which words.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "simulator/card/description_keys.h"
#include "tests/simulator/built_in_card.h"
#include "tests/simulator/card_files.h"
#include "tests/support/files.h"

using namespace simulator;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

std::string refusal(const QByteArray &json)
{
    DescriptionError error;
    const std::optional<CardDescription> card =
        readDescription(json, QStringLiteral("my.json"), &error);
    return card ? std::string() : error.message().toStdString();
}

QByteArray withKey(const char *card, const char *key, const QJsonValue &value)
{
    QJsonObject object = sourceCard(QLatin1String(card));
    object.insert(QLatin1String(key), value);
    return QJsonDocument(object).toJson();
}

QByteArray withoutKey(const char *card, const QString &key)
{
    QJsonObject object = sourceCard(QLatin1String(card));
    object.remove(key);
    return QJsonDocument(object).toJson();
}

std::string refusalOf(const char *card, const char *key, const QJsonValue &value)
{
    return refusal(withKey(card, key, value));
}

std::string refusalOfFile(const QString &path)
{
    DescriptionError error;
    EXPECT_FALSE(loadCard(path, &error));
    return error.message().toStdString();
}

CardDescription accepted(const QByteArray &json)
{
    DescriptionError error;
    const std::optional<CardDescription> card =
        readDescription(json, QStringLiteral("my.json"), &error);
    EXPECT_TRUE(card) << error.message().toStdString();
    return card.value_or(CardDescription());
}

struct WrongText {
    const char *card;
    const char *key;
    const char *text;
    const char *reason;
};

/** A description in a folder of its own, with a photo that is a file of its own. */
class OwnPhoto
{
public:
    explicit OwnPhoto(const QByteArray &photo)
    {
        const QJsonObject file{{QStringLiteral("delivery"), QStringLiteral("file")},
                               {QStringLiteral("file"), QStringLiteral("photo.jpg")}};
        writeFile(path(), withKey("resident", "photo", file));
        writeFile(photoPath(), photo);
    }

    QString path() const { return m_folder.filePath(QStringLiteral("my.json")); }
    QString photoPath() const { return m_folder.filePath(QStringLiteral("photo.jpg")); }

private:
    QTemporaryDir m_folder;
};

class DescriptionTexts : public testing::TestWithParam<WrongText>
{
};

} // namespace

TEST_P(DescriptionTexts, WrongText_IsRefusedWithFileKeyAndReason)
{
    const WrongText &wrong = GetParam();
    EXPECT_EQ(refusalOf(wrong.card, wrong.key, wrong.text), std::string("my.json: \"") + wrong.key +
                                                                "\": \"" + wrong.text + "\" " +
                                                                wrong.reason);
}

const WrongText WRONG_TEXTS[] = {
    {"resident", "birthDate", "1990013", "is not eight digits YYYYMMDD"},
    {"resident", "birthDate", "1990-1-3", "is not eight digits YYYYMMDD"},
    {"resident", "birthDate", "199001031", "is not eight digits YYYYMMDD"},
    {"resident", "birthDate", "１９９００１０３", "is not eight digits YYYYMMDD"},
    {"resident", "birthDate", "19900230", "is not a day of the calendar"},
    {"resident", "birthDate", "长期", "is not eight digits YYYYMMDD"},
    {"hmt-macao", "validTo", "永久", "is not eight digits YYYYMMDD and not 长期"},
    {"resident", "sex", "5", "is not a sex code; use 0, 1, 2 or 9"},
    {"resident", "sex", "男", "is not a sex code; use 0, 1, 2 or 9"},
    {"resident", "ethnicGroup", "1", "is not two digits"},
    {"resident", "ethnicGroup", "汉", "is not two digits"},
    {"hmt-macao", "issueCount", "1a", "holds something other than digits"},
    {"foreign-new", "nationality", "U1A", "is not a country code of three letters"},
    {"resident", "name", "", "must not be empty"},
    {"resident", "name", "\xF0\xA0\xAE\xB7田",
     "holds a character outside UCS-2, which a card cannot store"},
    {"resident", "kind", "passport", "is none of resident, hmt, foreign-2017, foreign-new"}};

INSTANTIATE_TEST_SUITE_P(Description, DescriptionTexts, testing::ValuesIn(WRONG_TEXTS));

TEST(Description, ControlCharacterInAText_IsRefusedByItsNumber)
{
    EXPECT_EQ(refusalOf("resident", "name", "李\n川"),
              "my.json: \"name\": \"李\xEF\xBF\xBD川\" holds the control character U+000a");
}

TEST(Description, TooLongText_IsRefusedWithTheRoomThereIs)
{
    for (const CardKind kind :
         {CardKind::RESIDENT, CardKind::HMT, CardKind::FOREIGN2017, CardKind::FOREIGN_NEW}) {
        for (const TextKey &key : textKeys()) {
            if (key.form != TextForm::FREE || key.rule(kind).use == KeyUse::ABSENT)
                continue;
            const int room = key.rule(kind).characters;
            EXPECT_EQ(textProblem(key, kind, QString(room, QLatin1Char('A'))), QString());
            EXPECT_EQ(textProblem(key, kind, QString(room + 1, QLatin1Char('A'))).toStdString(),
                      "has " + std::to_string(room + 1) + " characters; a " +
                          cardKindName(kind).toStdString() + " card has room for " +
                          std::to_string(room))
                << key.name;
        }
    }
}

TEST(Description, TooLongText_IsQuotedInPart)
{
    const std::string message = refusalOf("resident", "address", QString(5000, QLatin1Char('A')));
    EXPECT_LT(message.size(), 200U);
    EXPECT_THAT(message, StartsWith("my.json: \"address\": \"AAAA"));
    EXPECT_THAT(message, HasSubstr("has 5000 characters; a resident card has room for 35"));
}

TEST(Description, MissingRequiredKey_IsRefusedByName)
{
    for (const char *card : {"resident", "hmt-macao", "foreign-2017", "foreign-new"}) {
        const CardKind kind = accepted(withKey(card, "padding", QStringLiteral("zeros"))).kind;
        for (const TextKey &key : textKeys()) {
            const std::string name = key.name;
            const bool required = key.rule(kind).use == KeyUse::REQUIRED;
            EXPECT_EQ(refusal(withoutKey(card, QLatin1String(key.name))),
                      required ? "my.json: \"" + name + "\": is missing; a " +
                                     cardKindName(kind).toStdString() + " card needs it"
                               : "");
        }
    }
}

TEST(Description, UnknownKey_IsRefusedWithTheKeysOfTheKind)
{
    const std::string message = refusalOf("resident", "birthdate", QStringLiteral("19900103"));
    EXPECT_THAT(message, StartsWith(R"(my.json: "birthdate": is not a key of a resident card)"));
    EXPECT_THAT(message, HasSubstr("birthDate"));
    EXPECT_THAT(message, HasSubstr("fingerprints"));
    EXPECT_THAT(message, testing::Not(HasSubstr("englishName")));
}

TEST(Description, KeyOfAnotherKind_IsRefused)
{
    EXPECT_THAT(refusalOf("foreign-new", "address", QStringLiteral("A")),
                StartsWith(R"(my.json: "address": is not a key of a foreign-new card)"));
    EXPECT_THAT(refusalOf("hmt-macao", "fingerprints", 1),
                StartsWith(R"(my.json: "fingerprints": is not a key of a hmt card)"));
}

QJsonObject photo(const char *delivery, const char *key, const QJsonValue &value)
{
    return {{"delivery", delivery}, {key, value}};
}

TEST(Description, WrongValue_IsRefusedWithItsKeyAndWhatItMustBe)
{
    EXPECT_EQ(refusal("{}"), R"(my.json: "kind": is missing)");
    const struct {
        const char *key;
        QJsonValue value;
        const char *message;
    } cases[] = {
        {"name", 5, R"("name": must be a text, not a number)"},
        {"name", QJsonValue::Null, R"("name": must be a text, not null)"},
        {"kind", true, R"("kind": must be a text, not true or false)"},
        {"fingerprints", "2", R"("fingerprints": must be a number, not a text)"},
        {"photo", "bmp", R"("photo": must be an object, not a text)"},
        {"padding", QJsonArray(), R"("padding": must be a text, not a list)"},
        {"faults", "no-card", R"("faults": must be a list of texts, not a text)"},
        {"faults", QJsonArray{QJsonObject()},
         R"("faults": must be a list of texts, not an object in the list)"},
        {"fingerprints", 3, R"("fingerprints": 3 is not a whole number from 0 to 2)"},
        {"fingerprints", 1.5, R"("fingerprints": 1.5 is not a whole number from 0 to 2)"},
        {"fingerprints", -1, R"("fingerprints": -1 is not a whole number from 0 to 2)"},
        {"photo", QJsonObject(), R"("photo.delivery": is missing)"},
        {"photo", QJsonObject{{"delivery", "png"}},
         R"("photo.delivery": "png" is none of bmp, compressed, file)"},
        {"photo", photo("bmp", "seed", 4294967296.0),
         R"("photo.seed": 4294967296 is not a whole number from 0 to 4294967295)"},
        {"photo", photo("bmp", "size", "x"),
         R"("photo.size": is not a known key; keys of a photo: delivery, file, seed)"},
        {"photo", QJsonObject{{"delivery", "file"}}, R"("photo.file": is missing)"},
        {"photo", photo("bmp", "file", "my.jpg"),
         R"("photo.file": goes with the delivery "file" alone)"},
        {"photo", photo("file", "file", 7), R"("photo.file": must be a text, not a number)"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(refusalOf("resident", c.key, c.value), std::string("my.json: ") + c.message);
    EXPECT_EQ(accepted(withKey("resident", "photo", photo("file", "file", "my.jpg"))).photoFile,
              "my.jpg");
}

TEST(Description, PhotosFileThatIsNoNameInTheFolder_IsRefused)
{
    for (const char *name : {"", "/etc/passwd", "../my.jpg", "a\nb"}) {
        EXPECT_THAT(refusalOf("resident", "photo", photo("file", "file", name)),
                    testing::EndsWith("is not the name of a file in the same folder"))
            << name;
    }
}

TEST(Description, WrongFault_IsRefusedWithWhatListsTheVocabulary)
{
    EXPECT_THAT(refusalOf("resident", "faults", QJsonArray{QStringLiteral("earthquake")}),
                StartsWith("my.json: \"faults\": fault \"earthquake\" is not known; "
                           "\"idcard-reader read --help\" lists "));
}

TEST(Description, FaultsOfAReaderOnUsb_AreReadAndCheckedAsAllOthers)
{
    const CardDescription card =
        accepted(withKey("resident", "faults",
                         QJsonArray{QStringLiteral("select-answer-replaced=00ff"),
                                    QStringLiteral("unplugged-before=3")}));
    EXPECT_EQ(card.faults.bytes(FaultKind::ANSWER_REPLACED, UsbExchange::SELECT),
              QByteArray("\x00\xFF", 2));
    EXPECT_EQ(card.faults.number(FaultKind::UNPLUGGED_BEFORE), 3);
    EXPECT_EQ(refusalOf("resident", "faults", QJsonArray{QStringLiteral("read-answer-cut=x")}),
              "my.json: \"faults\": fault \"read-answer-cut=x\" is not of the form "
              "read-answer-cut=N: only the first N bytes of the answer come (0 to 4095)");
}

TEST(Description, TextThatIsNoJsonObject_IsRefusedWithLineAndColumn)
{
    EXPECT_THAT(refusal("{\n  \"kind\": resident\n}"), StartsWith("my.json: line 2, column "));
    EXPECT_THAT(refusal(""), StartsWith("my.json: line 1, column 1: "));
    EXPECT_THAT(refusal(QByteArray(60000, '[')), StartsWith("my.json: line 1, "));
    EXPECT_EQ(refusal("[]"), "my.json: is not a JSON object");
}

TEST(Description, TextOfTheLargestSize_IsReadAndOneByteMoreRefused)
{
    const QByteArray json = withKey("resident", "padding", QStringLiteral("zeros"));
    EXPECT_EQ(refusal(json.leftJustified(LARGEST_DESCRIPTION, ' ')), "");
    EXPECT_EQ(refusal(json.leftJustified(LARGEST_DESCRIPTION + 1, ' ')),
              "my.json: is larger than a description may be (65536 bytes)");
}

TEST(Description, OptionalKeysLeftOut_HaveTheirDefaults)
{
    QJsonObject object = sourceCard(QStringLiteral("resident"));
    for (const char *key : {"title", "fingerprints", "photo", "padding", "faults"})
        object.remove(QLatin1String(key));
    const CardDescription card = accepted(QJsonDocument(object).toJson());
    EXPECT_EQ(card.fingerprints, 0);
    EXPECT_EQ(card.photoDelivery, PhotoDelivery::BMP_FILE);
    EXPECT_FALSE(card.photoSeed);
    EXPECT_EQ(card.padding, Padding::ZEROS);
    EXPECT_FALSE(card.faults.has(FaultKind::TRANSIENT_FAILURES));
}

TEST(Description, AllKinds_AreReadWithEveryText)
{
    for (const QString &name : sourceCardNames()) {
        const QJsonObject object = sourceCard(name);
        const CardDescription card = accepted(QJsonDocument(object).toJson());
        EXPECT_EQ(cardKindName(card.kind), object.value(QStringLiteral("kind")).toString());
        for (const TextKey &key : textKeys())
            EXPECT_EQ(card.*key.text, object.value(QLatin1String(key.name)).toString()) << key.name;
    }
}

TEST(Description, CodesOfNoStandard_AreReadBecauseSuchCardsExist)
{
    const CardDescription card = accepted(withKey("resident", "ethnicGroup", QStringLiteral("57")));
    EXPECT_EQ(ethnicGroupText(card), QString());
    EXPECT_EQ(accepted(withKey("foreign-new", "nationality", QStringLiteral("CR"))).nationality,
              QStringLiteral("CR"));
}

TEST(Description, TextsFromCodes_AreLabelAndName)
{
    CardDescription card;
    card.sex = QStringLiteral("9");
    card.ethnicGroup = QStringLiteral("05");
    EXPECT_EQ(sexText(card), QString::fromUtf8("未说明"));
    EXPECT_EQ(ethnicGroupText(card), QString::fromUtf8("维吾尔"));
}

TEST(CardLibrary, PathOfAFile_IsLoaded)
{
    EXPECT_EQ(builtInCard(IDCARD_SOURCE_DIR "/simulator/cards/hmt-macao.json").kind, CardKind::HMT);
}

TEST(CardLibrary, PhotosOwnFile_IsLoadedFromTheFolderOfTheDescription)
{
    const OwnPhoto card(QByteArray("what it is does not matter"));
    EXPECT_EQ(builtInCard(card.path()).photoFileData, QByteArray("what it is does not matter"));
}

TEST(CardLibrary, PhotosOwnFileOfTheLargestSize_IsLoadedAndOneByteMoreRefused)
{
    constexpr int LARGEST = 38862;
    DescriptionError error;
    const OwnPhoto largest(QByteArray(LARGEST, 'x'));
    EXPECT_TRUE(loadCard(largest.path(), &error)) << error.message().toStdString();
    const OwnPhoto larger(QByteArray(LARGEST + 1, 'x'));
    EXPECT_EQ(refusalOfFile(larger.path()),
              larger.path().toStdString() +
                  R"(: "photo.file": "photo.jpg" is larger than a photo may be (38862 bytes))");
}

TEST(CardLibrary, PhotosOwnFileThatIsNotThere_IsRefused)
{
    const OwnPhoto card((QByteArray()));
    QFile::remove(card.photoPath());
    EXPECT_EQ(refusalOfFile(card.path()),
              card.path().toStdString() + R"(: "photo.file": "photo.jpg" is not a regular file)");
}

TEST(CardLibrary, UnknownName_IsRefusedWithTheNearestOneOrWhereAllAreListed)
{
    EXPECT_EQ(refusalOfFile("visitor"),
              "visitor: is neither a built-in card nor a file; \"idcard-reader cards\" lists the "
              "built-in cards");
    EXPECT_EQ(refusalOfFile("residnet"),
              "residnet: is neither a built-in card nor a file; did you mean resident?");
}

TEST(CardLibrary, WhatIsNoRegularFile_IsRefusedWithoutWaiting)
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe.json"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    for (const QString &path : {pipe, folder.path()})
        EXPECT_EQ(refusalOfFile(path), path.toStdString() + ": is not a regular file");
}

TEST(CardLibrary, OversizedFile_IsRefused)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("big.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64{1} << 32)); // sparse: nothing of it is stored
    EXPECT_THAT(refusalOfFile(path), HasSubstr("is larger than a description may be"));
}
