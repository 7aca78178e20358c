// Three programs that read, watch, cancel, come and go: the service grows by nothing, and no call
// stays without an answer. IDCARD_SERVICE_READS sets how often.

#include <array>
#include <memory>
#include <random>

#include <gmock/gmock.h>

#include "tests/endurance/process_figures.h"
#include "tests/service/service_process.h"

using endurance::ProcessFigures;
using testing::AnyOf;

namespace
{

class ServiceEndurance : public ServiceTest
{
protected:
    ProcessFigures figures() const
    {
        return endurance::figuresOf(QString::number(m_service->id()));
    }

    /** One thing that a program does. */
    void act(std::unique_ptr<BusClient> &client)
    {
        switch (m_random() % 8) {
        case 0: // leaves in the middle, and another comes
            client->beginRead();
            client = std::make_unique<BusClient>(m_bus.address());
            break;
        case 1:
            client->beginRead();
            expectAnswer(client->begin("Cancel"));
            break;
        case 2:
            expectAnswer(client->begin("StartWatching", {QStringList()}));
            expectAnswer(client->begin("StopWatching"));
            break;
        default:
            expectAnswer(client->beginRead());
        }
    }

    static void expectAnswer(QDBusPendingCall call)
    {
        EXPECT_THAT(errorAtTheEnd(call), AnyOf("", "Busy", "Cancelled"));
    }

    void act(int times)
    {
        for (int i = 0; i < times; ++i) {
            act(m_clients[m_random() % m_clients.size()]);
            if (HasFailure())
                return;
        }
    }

    std::array<std::unique_ptr<BusClient>, 3> m_clients{
        std::make_unique<BusClient>(m_bus.address()), std::make_unique<BusClient>(m_bus.address()),
        std::make_unique<BusClient>(m_bus.address())};
    std::minstd_rand m_random;
};

} // namespace

TEST_F(ServiceEndurance, ManyReadings_LeaveNothingBehind)
{
    [[maybe_unused]] constexpr int MOST_GROWTH_KIB = 512;
    bool isSet = false;
    const int set = qEnvironmentVariableIntValue("IDCARD_SERVICE_READS", &isSet);
    const int times = isSet ? set : 1000;
    serveScript("case $1 in read) echo '{\"kind\": \"resident\"}' ;; *) exec sleep 60 ;; esac");
    act(times / 4);
    ASSERT_TRUE(becomes("idle"));
    const ProcessFigures before = figures();
    act(times);
    ASSERT_TRUE(becomes("idle"));
    const ProcessFigures after = figures();
    RecordProperty("grown_kib", static_cast<int>(after.residentKiB - before.residentKiB));
    EXPECT_EQ(after.openFiles, before.openFiles);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which keep what is freed
    EXPECT_LE(after.residentKiB - before.residentKiB, MOST_GROWTH_KIB);
#endif
}
