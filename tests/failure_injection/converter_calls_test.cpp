// iconv failing at each of its calls in one decode of each kind: the text that it was asked for is
// empty, every other one is as it should be, and no converter stays open.

#include <cerrno>
#include <new>

#include <gmock/gmock.h>

#include "tests/failure_injection/failing_calls.h"
#include "tests/iddata/decoded_frame.h"
#include "tests/iddata/golden_record.h"
#include "tests/support/test_name.h"

namespace
{

using namespace failure_injection;

FieldTexts decodedTexts(const QByteArray &frame)
{
    return decodedFrame(frame).fields;
}

int differences(const FieldTexts &texts, const FieldTexts &whole)
{
    int count = 0;
    for (const auto &[name, text] : whole)
        count += texts.at(name) == text ? 0 : 1;
    return count;
}

class ConverterCall : public testing::TestWithParam<std::string>
{
protected:
    QByteArray frame = goldenRecord(QString::fromStdString(GetParam())).frame;
    FieldTexts whole = decodedTexts(frame);

    /** How often a decode calls `function`. */
    int callsOf(const char *function) const
    {
        setFailingCall({function, 0, 0});
        decodedTexts(frame);
        return callsMade();
    }

    /** Lets `function` fail at each of its calls but that for the kind, which comes first. */
    void expectOneTextMissing(const char *function, int error) const
    {
        const int count = callsOf(function);
        EXPECT_GE(count, 9); // a text for every field that the card stores, and the kind
        for (int position = 2; position <= count; ++position) {
            SCOPED_TRACE(std::string(function) + " " + std::to_string(position));
            setFailingCall({function, position, error});
            const FieldTexts texts = decodedTexts(frame);
            EXPECT_EQ(openConverters(), 0);
            ASSERT_EQ(texts.size(), whole.size());
            EXPECT_LE(differences(texts, whole), 3) << "the date of birth is three fields";
        }
        setFailingCall({nullptr, 0, 0});
        EXPECT_EQ(decodedTexts(frame), whole);
    }
};

INSTANTIATE_TEST_SUITE_P(EachKind, ConverterCall,
                         testing::Values("resident", "hmt-hong-kong", "foreign-2017",
                                         "foreign-new"),
                         testNameOf);

} // namespace

TEST_P(ConverterCall, OpenFails_LeavesThisTextOutAndNoOther)
{
    expectOneTextMissing("iconv_open", EINVAL);
    expectOneTextMissing("iconv_open", EMFILE);
}

TEST_P(ConverterCall, ConversionFails_LeavesThisTextOutAndNoOther)
{
    expectOneTextMissing("iconv", EILSEQ);
    expectOneTextMissing("iconv", EINVAL);
}

TEST_P(ConverterCall, OpenHasNoMemory_IsReportedAsBadAlloc)
{
    const int count = callsOf("iconv_open");
    for (int position = 1; position <= count; ++position) {
        setFailingCall({"iconv_open", position, ENOMEM});
        EXPECT_THROW(decodedTexts(frame), std::bad_alloc) << position;
        EXPECT_EQ(openConverters(), 0);
    }
    setFailingCall({nullptr, 0, 0});
}

TEST_P(ConverterCall, OpenFailsForTheKind_MakesItAResidentCard)
{
    setFailingCall({"iconv_open", 1, EINVAL});
    EXPECT_EQ(decodedFrame(frame).type, ID_TYPE_CN);
    setFailingCall({nullptr, 0, 0});
}
