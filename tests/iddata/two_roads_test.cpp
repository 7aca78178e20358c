// Every card of the simulator by readIDCard and by the decoders of the raw record: they differ as
// docs/two-roads.md says, and in nothing else.

#include "simulator/simulator.h"
#include "tests/iddata/decoded_frame.h"
#include "tests/iddata/golden_record.h"
#include "tests/library/reading.h"
#include "tests/support/files.h"
#include "tests/support/test_name.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>

namespace
{

struct Row {
    QString kind;
    std::string read; ///< field of readIDCard, or empty
    std::string raw;  ///< field of CIdData
    QString difference;
};

std::vector<Row> documentedRows()
{
    static const QRegularExpression line(
        QStringLiteral("^\\| ([a-z0-9-]+) \\| (\\w*) ?\\| (\\w+) \\| (.+) \\|$"));
    std::vector<Row> rows;
    for (const QString &text : sourceText("docs/two-roads.md").split('\n')) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch())
            rows.push_back({match.captured(1), match.captured(2).toStdString(),
                            match.captured(3).toStdString(), match.captured(4)});
    }
    return rows;
}

struct NamedReading : Reading {
    FieldTexts texts() const
    {
        switch (cardKind) {
        case IDCARD_KIND_CN:
            return textsOf(cn);
        case IDCARD_KIND_HMT:
            return textsOf(hmt);
        case IDCARD_KIND_FOREIGN_2017:
            return textsOf(f2017);
        case IDCARD_KIND_FOREIGN_NEW:
            return textsOf(fNew);
        default:
            return {};
        }
    }

    const unsigned char *photo() const
    {
        const unsigned char *const photos[] = {cn.byPhoto, f2017.byPhoto, fNew.byPhoto,
                                               hmt.byPhoto};
        return photos[cardKind];
    }
};

std::string withoutEnd(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/** The whole characters of `text` that fit into `size` bytes. */
std::string cut(const std::string &text, int size)
{
    QString kept = QString::fromStdString(text);
    while (kept.toUtf8().size() > size)
        kept.chop(1);
    return withoutEnd(kept.toStdString());
}

/** The file that a card of the simulator delivers as its photo; empty when it draws a portrait. */
QByteArray ownPhoto(const std::string &card)
{
    const QDir cards(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards"));
    const QString name = QString::fromStdString(card);
    const QStringList files = cards.entryList({name + ".bmp", name + ".jpg"}, QDir::Files);
    return files.isEmpty() ? QByteArray() : readFile(cards.filePath(files.first()));
}

/** What the table says of one card. */
class Difference
{
public:
    /** `code`: the card's country code. */
    explicit Difference(std::string code) : m_code(std::move(code)) {}

    /** Whether the texts of a field differ as `row` says. */
    testing::AssertionResult holds(const Row &row, const std::string &read,
                                   const std::string &raw) const
    {
        static const QRegularExpression cutTo(QStringLiteral("^cut to (\\d+) bytes$"));
        const QRegularExpressionMatch match = cutTo.match(row.difference);
        if (match.hasMatch())
            return equal(cut(read, match.captured(1).toInt()), raw);
        if (row.difference == QLatin1String("none"))
            return equal(read, raw);
        if (row.difference == QLatin1String("male or female"))
            return equal(read == "男" ? "男" : "女", raw);
        if (row.difference == QLatin1String("cut by the maker"))
            return equal(read, QString::fromStdString(raw).left(4).toStdString());
        if (row.difference == QLatin1String("dotted date"))
            return equal(dotted(read), raw);
        if (row.difference == QLatin1String("code for the country"))
            return equal(m_code, raw);
        if (row.difference == QLatin1String("country and code"))
            return equal(read + " / " + m_code, raw);
        if (row.difference == QLatin1String("not by readIDCard"))
            return equal(read, "");
        return testing::AssertionFailure() << "no such difference";
    }

private:
    static std::string dotted(const std::string &date)
    {
        if (date == "长期")
            return date;
        return date.substr(0, 4) + '.' + date.substr(4, 2) + '.' + date.substr(6);
    }

    static testing::AssertionResult equal(const std::string &expected, const std::string &found)
    {
        if (expected == found)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << '"' << expected << "\" and \"" << found << '"';
    }

    std::string m_code;
};

std::vector<std::string> cards()
{
    std::vector<std::string> names;
    for (const QString &file :
         goldenFolder().entryList({QStringLiteral("*.bin")}, QDir::Files, QDir::Name))
        names.push_back(file.chopped(4).toStdString());
    return names;
}

class TwoRoads : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        char message[200] = {};
        ASSERT_EQ(idcard_simulator_put_card(GetParam().c_str(), message, sizeof(message)), 0)
            << message;
        ASSERT_EQ(reading->read(), 0);
        raw = decodedFrame(golden.frame);
        kind = golden.expected[QStringLiteral("kind")].toString();
    }

    std::unique_ptr<NamedReading> reading = std::make_unique<NamedReading>();
    GoldenRecord golden = goldenRecord(QString::fromStdString(GetParam()));
    DecodedFrame raw;
    QString kind;
};

INSTANTIATE_TEST_SUITE_P(Cards, TwoRoads, testing::ValuesIn(cards()), testNameOf);

} // namespace

TEST_P(TwoRoads, Kind_IsTheSame)
{
    EXPECT_EQ(reading->cardKind, static_cast<unsigned>(raw.type));
}

TEST_P(TwoRoads, Fields_DifferAsDocumentedAndNoneIsLeftOut)
{
    // Three letters at character 76 or 121 of the text block.
    const int at = reader_frames::TEXT_OFFSET + (raw.type == ID_TYPE_FOREIGN_2017 ? 152 : 242);
    const QByteArray letters = golden.frame.mid(at, 6);
    const Difference difference({letters.at(0), letters.at(2), letters.at(4)});
    FieldTexts read = reading->texts();
    FieldTexts decoded = raw.fields;
    for (const Row &row : documentedRows()) {
        if (row.kind != kind)
            continue;
        ASSERT_TRUE(row.read.empty() || read.count(row.read) == 1) << row.read;
        ASSERT_EQ(decoded.count(row.raw), 1U) << row.raw;
        EXPECT_TRUE(difference.holds(row, withoutEnd(row.read.empty() ? "" : read[row.read]),
                                     withoutEnd(decoded[row.raw])))
            << row.raw << ": " << row.difference.toStdString();
        read.erase(row.read);
        decoded.erase(row.raw);
    }
    EXPECT_THAT(read, testing::IsEmpty()) << "fields that the document does not have";
    EXPECT_THAT(decoded, testing::IsEmpty()) << "fields that the document does not have";
}

TEST_P(TwoRoads, Photo_IsTheSamePictureOrTheSameCompressedData)
{
    const unsigned char *const read = reading->photo();
    if (const QByteArray file = ownPhoto(GetParam()); !file.isEmpty()) {
        EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(read), int{IDCARD_PHOTO_SIZE}),
                  file.leftJustified(int{IDCARD_PHOTO_SIZE}, '\0'));
        return;
    }
    if (read[0] != 'B' || read[1] != 'M') {
        const QByteArray compressed = golden.frame.mid(reader_frames::PHOTO_OFFSET, 1024);
        EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(read), 1024), compressed);
        return;
    }
    for (int i = 0; i < int{IDCARD_PHOTO_SIZE}; ++i) {
        const bool padding = i >= 54 && (i - 54) % 308 >= 306;
        if (!padding) {
            ASSERT_EQ(read[i], static_cast<unsigned char>(raw.photo.at(i))) << "byte " << i;
        }
    }
}

TEST_P(TwoRoads, Prints_AreTheSameBytes)
{
    if (reading->cardKind != IDCARD_KIND_CN) {
        EXPECT_TRUE(raw.prints.isEmpty());
        return;
    }
    constexpr int SIZES[] = {1024, 512, 0};
    ASSERT_EQ(raw.prints.size(), SIZES[reading->cn.fpInfoType]);
    EXPECT_TRUE(std::equal(
        raw.prints.begin(), raw.prints.end(), reading->cn.byFpData,
        [](char left, unsigned char right) { return static_cast<unsigned char>(left) == right; }));
}

TEST(TwoRoadsDocument, EveryDifferenceOfEveryKind_IsExplained)
{
    const QString document = sourceText("docs/two-roads.md");
    for (const Row &row : documentedRows()) {
        const QString explained =
            QString(row.difference).replace(QRegularExpression(QStringLiteral("\\d+")), "N");
        EXPECT_TRUE(explained == QLatin1String("none") ||
                    document.contains("- *" + explained + "*:"))
            << row.difference.toStdString();
    }
    std::set<std::string> kinds;
    for (const Row &row : documentedRows())
        kinds.insert(row.kind.toStdString());
    EXPECT_THAT(kinds, testing::ElementsAre("foreign-2017", "foreign-new", "hmt", "resident"));
}
