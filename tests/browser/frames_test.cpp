// Native messaging's frames.

#include <gmock/gmock.h>

#include "apps/browser_host/frames.h"

using namespace app;

namespace
{

constexpr int LONGEST_REQUEST = 8192;

/** Four bytes of length in the machine's own order. */
QByteArray header(quint32 length)
{
    return {reinterpret_cast<const char *>(&length), sizeof length};
}

QByteArray frame(const QByteArray &body)
{
    return header(static_cast<quint32>(body.size())) + body;
}

TEST(Frames, OneInSinglePieces_ComesWithItsLastByte)
{
    FrameReader reader;
    const QByteArray bytes = frame("{\"a\": 1}");
    for (int i = 0; i < bytes.size(); ++i) {
        EXPECT_EQ(reader.next(), std::nullopt) << i;
        reader.take(bytes.mid(i, 1));
    }
    EXPECT_EQ(reader.next(), QByteArray("{\"a\": 1}"));
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_FALSE(reader.isTooLong());
}

TEST(Frames, SeveralAtOnce_ComeOneAfterTheOther)
{
    FrameReader reader;
    reader.take(frame("first") + frame("") + frame(QByteArray("\0\n", 2)) + header(9));
    EXPECT_EQ(reader.next(), QByteArray("first"));
    EXPECT_EQ(reader.next(), QByteArray(""));
    EXPECT_EQ(reader.next(), QByteArray("\0\n", 2));
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(Frames, LongestRequest_IsTaken)
{
    FrameReader reader;
    const QByteArray body(LONGEST_REQUEST, 'x');
    reader.take(frame(body));
    EXPECT_EQ(reader.next(), body);
}

TEST(Frames, LengthBeyondTheLongest_EndsTheReading)
{
    for (const quint32 length : {LONGEST_REQUEST + 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        FrameReader reader;
        reader.take(header(length));
        EXPECT_EQ(reader.next(), std::nullopt);
        EXPECT_TRUE(reader.isTooLong()) << length;
    }
}

TEST(Frames, OfAnAnswer_AreTheLengthAndTheBody)
{
    EXPECT_EQ(frameOf("{}"), header(2) + "{}");
    EXPECT_EQ(frameOf({}), header(0));
}

} // namespace
