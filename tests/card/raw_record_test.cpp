// What counts as a raw card record, and what is reported about the rest.

#include <random>

#include <gmock/gmock.h>

#include "apps/card/raw_record.h"
#include "tests/tool/tool_runner.h"

using namespace app;
using testing::HasSubstr;

namespace
{

/** The record with what its bytes must be summed up to at its end. */
QByteArray withRightChecksum(QByteArray record)
{
    char sum = 0;
    for (int i = 5; i < record.size() - 1; ++i)
        sum = static_cast<char>(sum ^ record.at(i));
    record[record.size() - 1] = sum;
    return record;
}

struct SizeCase {
    const char *card;
    int size;
    FP_INFO_TYPE prints;
};

class RawRecord : public testing::TestWithParam<SizeCase>
{
};

TEST_P(RawRecord, OfEverySizeIsTakenWithoutAWarning)
{
    const QByteArray record = recordOf(GetParam().card);
    ASSERT_EQ(record.size(), GetParam().size);
    const RawRecordCheck check = checkRawRecord(record);
    EXPECT_TRUE(check.isRecord()) << check.problem.toStdString();
    EXPECT_EQ(check.prints, GetParam().prints);
    EXPECT_TRUE(check.warnings.isEmpty()) << check.warnings.join('\n').toStdString();
}

TEST_P(RawRecord, CutAnywhereIsRefusedWithTheOffset)
{
    const QByteArray record = recordOf(GetParam().card);
    for (int size = 0; size < record.size(); ++size) {
        const RawRecordCheck check = checkRawRecord(record.left(size));
        ASSERT_FALSE(check.isRecord()) << size;
        // Cut to a shorter record's size, it is its length field that is wrong.
        const char *const place = size == 1297 || size == 1809 ? "at offset 5 (" : "it ends at";
        ASSERT_THAT(check.problem.toStdString(), HasSubstr(place)) << size;
    }
}

TEST_P(RawRecord, AnyOtherByteInTheHeadIsRefusedWithItsPlaceOrWarnedOf)
{
    const QByteArray record = recordOf(GetParam().card);
    struct Part {
        int first;
        int last;
        const char *place;
    };
    const Part parts[] = {{0, 4, "at offset 0 (preamble) it has "},
                          {5, 6, "at offset 5 (number of bytes that follow it) it has "},
                          {7, 9, "at offset 7 (status) it has "},
                          {10, 11, "at offset 10 (length of the text) it has "},
                          {12, 13, "at offset 12 (length of the photo) it has "},
                          {14, 15, "at offset 14 (length of the fingerprints) it has "}};
    for (const Part &part : parts) {
        for (int offset = part.first; offset <= part.last; ++offset) {
            for (int change = 1; change < 256; ++change) {
                QByteArray changed = record;
                changed[offset] = static_cast<char>(record.at(offset) ^ change);
                const RawRecordCheck check = checkRawRecord(withRightChecksum(changed));
                const QString reported =
                    check.isRecord() ? check.warnings.join('\n') : check.problem;
                const QByteArray found = changed.mid(part.first, part.last - part.first + 1);
                ASSERT_THAT(
                    reported.toStdString(),
                    HasSubstr(part.place + found.toHex(' ').toUpper().toStdString() + ", where "))
                    << offset;
                ASSERT_TRUE(!check.isRecord() || offset == 14) << offset;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, RawRecord,
                         testing::Values(SizeCase{"resident-no-fingerprint", 1297, FP_INFO_NONE},
                                         SizeCase{"resident-one-fingerprint", 1809, FP_INFO_ONE},
                                         SizeCase{"resident", 2321, FP_INFO_TWO}));

TEST(RawRecordProblem, ReportsWhatWasExpectedInHex)
{
    QByteArray record = recordOf("resident");
    record[9] = char(0x80);
    EXPECT_EQ(checkRawRecord(record).problem.toStdString(),
              "at offset 7 (status) it has 00 00 80, where 00 00 90 was expected.");
    record = recordOf("resident");
    record[15] = 1;
    EXPECT_EQ(checkRawRecord(record).problem.toStdString(),
              "at offset 14 (length of the fingerprints) it has 04 01, where 00 00 or 02 00 or "
              "04 00 was expected.");
}

TEST(RawRecordProblem, RecordLongerThanItSaysIsRefused)
{
    EXPECT_THAT(checkRawRecord(recordOf("resident") + '\0').problem.toStdString(),
                HasSubstr("it goes on at offset 2321"));
    const QByteArray record = recordOf("resident-no-fingerprint");
    EXPECT_FALSE(checkRawRecord(record + '\0').isRecord());
    EXPECT_EQ(checkRawRecord(record + QByteArray(512, '\0')).problem.toStdString(),
              "at offset 5 (number of bytes that follow it) it has 05 0A, where 07 0A was "
              "expected.");
}

TEST(RawRecordWarning, SizeDecidesAgainstTheLengthOfTheFingerprints)
{
    QByteArray record = recordOf("resident-no-fingerprint");
    record[14] = 4;
    const RawRecordCheck check = checkRawRecord(withRightChecksum(record));
    EXPECT_TRUE(check.isRecord());
    EXPECT_EQ(check.prints, FP_INFO_NONE);
    ASSERT_EQ(check.warnings.size(), 1);
    EXPECT_EQ(check.warnings.first().toStdString(),
              "at offset 14 (length of the fingerprints) it has 04 00, where 00 00 was expected; "
              "its size decides.");
}

TEST(RawRecordWarning, WrongChecksumIsReported)
{
    QByteArray record = recordOf("resident");
    const auto right = static_cast<unsigned char>(record.at(2320));
    record[2320] = static_cast<char>(right ^ 0xFFU);
    const RawRecordCheck check = checkRawRecord(record);
    EXPECT_TRUE(check.isRecord());
    ASSERT_EQ(check.warnings.size(), 1);
    EXPECT_THAT(check.warnings.first().toStdString(), HasSubstr("at offset 2320 (checksum)"));
}

TEST(RawRecordWarning, EveryChangedByteOfTheBlocksIsNoticedByTheChecksum)
{
    const QByteArray record = recordOf("resident-no-fingerprint");
    for (int offset = 16; offset < record.size(); ++offset) {
        QByteArray changed = record;
        changed[offset] = static_cast<char>(record.at(offset) ^ 0x10);
        ASSERT_EQ(checkRawRecord(changed).warnings.size(), 1) << offset;
    }
}

TEST(RawRecordProblem, RandomBytesAreRefused)
{
    std::mt19937 random(20);
    for (int size = 0; size <= RAW_RECORD_READ_LIMIT; ++size) {
        QByteArray bytes(size, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        ASSERT_FALSE(checkRawRecord(bytes).isRecord()) << size;
    }
}

} // namespace
