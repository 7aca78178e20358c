// CIdData and the helpers of CCommon with every allocation failing in turn: std::bad_alloc reaches
// the caller, or the outcome is the one that the headers name; nothing is lost, and the next decode
// is a whole one.

#include <cstring>
#include <functional>
#include <memory>
#include <new>

#include <gmock/gmock.h>

#include "tests/failure_injection/child.h"
#include "tests/failure_injection/failing_memory.h"
#include "tests/failure_injection/quiet_log.h"
#include "tests/iddata/decoded_frame.h"
#include "tests/iddata/golden_record.h"
#include "tests/support/test_name.h"

namespace
{

using namespace failure_injection;

/** What one call came to. */
enum class End { RETURNED, BAD_ALLOC, OTHER_EXCEPTION };

End endOf(const std::function<void()> &call)
{
    try {
        call();
        return End::RETURNED;
    } catch (const std::bad_alloc &) {
        return End::BAD_ALLOC;
    } catch (...) {
        return End::OTHER_EXCEPTION;
    }
}

/**
 * Calls with the allocation at every position failing, until there is none; `check` judges each,
 * `reset` releases what the call has delivered. Returns how many allocations there were.
 */
long sweep(Extent extent, const std::function<void()> &call,
           const std::function<void(End end, long position)> &check,
           const std::function<void()> &reset)
{
    const QuietLog quiet;
    call(); // sets caches up
    reset();
    for (long position = 1; position < 10000; ++position) {
        for (const bool withPlaces : {false, true}) {
            startAccount(withPlaces);
            startMemory(position, extent);
            const End end = endOf(call);
            stopMemory();
            const long failures = failedAllocations();
            if (!withPlaces)
                check(end, position);
            reset();
            if (withPlaces)
                for (const std::string &place : placesOfLiveBlocks())
                    ADD_FAILURE() << "allocation " << position << " loses " << place;
            if (failures == 0)
                return position - 1;
            if (liveBlocks() == 0)
                break;
        }
    }
    return -1;
}

class Decoding : public testing::TestWithParam<std::tuple<std::string, Extent>>
{
protected:
    std::string card = std::get<0>(GetParam());
    Extent extent = std::get<1>(GetParam());
    QByteArray frame = goldenRecord(QString::fromStdString(card)).frame;
    unsigned char *text =
        reinterpret_cast<unsigned char *>(frame.data()) + reader_frames::TEXT_OFFSET;
    Decoder decoder;

    template <typename Record>
    void decodeWithFailures(void (CIdData::*parse)(unsigned char *, Record *))
    {
        Record whole;
        ((*decoder.operator->()).*parse)(text, &whole);
        auto record = std::make_unique<Record>(oldRecord<Record>());
        const auto call = [&] { ((*decoder.operator->()).*parse)(text, record.get()); };
        long badAllocs = 0;
        const long count = sweep(
            extent, call,
            [&](End end, long position) {
                badAllocs += end == End::BAD_ALLOC ? 1 : 0;
                EXPECT_NE(end, End::OTHER_EXCEPTION) << "allocation " << position;
                for (const auto &field : fieldsOf(*record)) {
                    const std::string &found = (*record).*field.member;
                    EXPECT_TRUE(found == whole.*field.member ||
                                (end == End::BAD_ALLOC && found == OLD_TEXT))
                        << "allocation " << position << ' ' << field.name << ": " << found;
                }
            },
            [&] { record = std::make_unique<Record>(oldRecord<Record>()); });
        EXPECT_GT(badAllocs, 5);
        EXPECT_GE(count, badAllocs);
        call();
        EXPECT_EQ(textsOf(*record), textsOf(whole));
        std::printf("%s: %ld allocations, %ld exceptions\n", card.c_str(), count, badAllocs);
    }
};

INSTANTIATE_TEST_SUITE_P(EachKind, Decoding,
                         testing::Combine(testing::Values("resident", "hmt-hong-kong",
                                                          "foreign-2017", "foreign-new"),
                                          testing::Values(Extent::ONE, Extent::AND_ALL_AFTER)),
                         [](const auto &instance) {
                             return testName(std::get<0>(instance.param)) +
                                    (std::get<1>(instance.param) == Extent::ONE ? "_one"
                                                                                : "_all_after");
                         });

} // namespace

// Runs first, when no converter was ever opened: the C library still has to load it, and when it
// has no memory for that, it says that there is no such converter.
TEST(FirstDecoding, MemoryRunsOutWhileTheConverterIsLoaded_IsReportedUnlessTheCLibraryHidesIt)
{
    const QByteArray frame = goldenRecord(QStringLiteral("resident")).frame;
    const auto decode = [&frame](long position) {
        return runInChild([&] {
            Decoder decoder;
            _tagID_TEXT_INFO_CN record;
            QByteArray copy = frame;
            auto *const text =
                reinterpret_cast<unsigned char *>(copy.data()) + reader_frames::TEXT_OFFSET;
            startMemory(position);
            const End end = endOf([&] { decoder->parseChinaIdText(text, &record); });
            stopMemory();
            QByteArray report = end == End::RETURNED ? "returned" : "bad_alloc";
            for (const auto &[name, value] : textsOf(record))
                report += end == End::RETURNED ? '\n' + QByteArray::fromStdString(value) : "";
            return report + (failedAllocations() > 0 || position == 0 ? "" : "\nlast");
        });
    };
    const ChildOutcome whole = decode(0);
    ASSERT_TRUE(whole.ended);
    int hidden = 0;
    long position = 1;
    for (bool isLast = false; !isLast; ++position) {
        const ChildOutcome outcome = decode(position);
        isLast = outcome.report.endsWith("\nlast");
        EXPECT_TRUE(outcome.ended) << position << ' ' << outcome.place.constData();
        if (!isLast && outcome.report != "bad_alloc" && outcome.report != whole.report)
            ++hidden;
    }
    EXPECT_LE(hidden, 10);
    EXPECT_GT(position, 100);
    std::printf("resident, first of a process: %ld allocations, %d hidden\n", position - 2, hidden);
}

TEST_P(Decoding, TextsWhileMemoryRunsOut_GoldenFieldsOrBadAlloc)
{
    if (card == "resident")
        decodeWithFailures(&CIdData::parseChinaIdText);
    else if (card == "hmt-hong-kong")
        decodeWithFailures(&CIdData::parseHMTIDText);
    else if (card == "foreign-2017")
        decodeWithFailures(&CIdData::parseForeign2017IDText);
    else
        decodeWithFailures(&CIdData::parseForeignNewIDText);
}

TEST_P(Decoding, KindWhileMemoryRunsOut_IsTheCardsOrBadAlloc)
{
    ID_TYPE whole = ID_TYPE_CN;
    decoder->parseIDType(text, &whole);
    auto type = static_cast<ID_TYPE>(77);
    bool isReported = false;
    sweep(
        extent, [&] { isReported = decoder->parseIDType(text, &type); },
        [&](End end, long position) {
            EXPECT_TRUE(end == End::BAD_ALLOC ? type == 77 : isReported && type == whole)
                << "allocation " << position;
        },
        [&] { type = static_cast<ID_TYPE>(77); });
}

TEST_P(Decoding, PhotoWhileMemoryRunsOut_IsWholeOrUntouched)
{
    auto *const photo =
        reinterpret_cast<unsigned char *>(frame.data()) + reader_frames::PHOTO_OFFSET;
    const QByteArray before(IDCARD_PHOTO_SIZE, 'x');
    QByteArray whole = before;
    decoder->parseIDHeadImage(photo, reinterpret_cast<unsigned char *>(whole.data()));
    ASSERT_NE(whole, before);
    QByteArray bmp = before;
    bmp.detach();
    auto *const bytes = reinterpret_cast<unsigned char *>(bmp.data());
    sweep(
        extent, [&] { decoder->parseIDHeadImage(photo, bytes); },
        [&](End end, long position) {
            EXPECT_NE(end, End::OTHER_EXCEPTION);
            EXPECT_TRUE(bmp == whole || (end == End::BAD_ALLOC && bmp == before))
                << "allocation " << position;
        },
        [&] { std::memset(bytes, 'x', IDCARD_PHOTO_SIZE); });
}
