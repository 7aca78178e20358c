// CIdData::parseIDHeadImage where there is no photo decoder.

#include "tests/iddata/decoder.h"
#include "tests/iddata/guarded_bytes.h"
#include "tests/support/message_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

TEST(PhotoWithoutADecoder, Photo_IsReportedAsUndecodableAndLeavesTheOutput)
{
    Decoder decoder;
    GuardedBytes wlt(1024, GuardedBytes::GUARD_AFTER);
    GuardedBytes bmp(38862, GuardedBytes::GUARD_AFTER, 0x5a);
    const MessageLog log;
    decoder->parseIDHeadImage(wlt.data(), bmp.data());
    EXPECT_THAT(log.texts(),
                testing::ElementsAre(testing::HasSubstr("unpack is neither in the process nor in"),
                                     "解码头像数据失败!"));
    EXPECT_TRUE(bmp.holdOnly(0x5a));
}
