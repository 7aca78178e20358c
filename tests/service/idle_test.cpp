// The service leaves when nobody needs it.

#include <chrono>

#include <gmock/gmock.h>

#include "tests/service/service_process.h"

namespace
{

using IdleService = ServiceTest;

} // namespace

TEST_F(IdleService, MinuteWithoutACall_EndsIt)
{
    const auto begin = std::chrono::steady_clock::now();
    serveCard();
    textOf(m_client.read());
    EXPECT_TRUE(m_service->endsWithin(90000));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
    expectEnd(m_service->result(), 0);
}
