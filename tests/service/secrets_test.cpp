// Where the card does not stay: in the service's memory and in what it prints.

#include <csignal>

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "tests/canary/process_memory.h"
#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::IsEmpty;

namespace
{

using ServiceSecrets = ServiceTest;

/** Parts of a card's texts, photo and prints that nothing else has. */
QStringList marksOf(const QString &json)
{
    const QJsonObject card = QJsonDocument::fromJson(json.toUtf8()).object();
    QStringList marks = {card.value("name").toString(), card.value("idNumber").toString(),
                         card.value("address").toString()};
    for (const char *part : {"photo", "fingerprints"}) {
        const QString data = card.value(QLatin1String(part)).toObject().value("data").toString();
        if (!data.isEmpty())
            marks << data.mid(data.size() / 2, 40);
    }
    return marks;
}

/** On a bus that does not let everybody do everything. */
class ServiceMemory : public ServiceTest
{
protected:
    ServiceMemory() : ServiceTest(systemPolicy()) {}

    void SetUp() override
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "Left out: a sanitizer keeps what is freed";
#endif
    }

    /** Reads the card of the simulator; returns what is to be forgotten of it. */
    QStringList read(const QStringList &parts = {})
    {
        const QStringList marks = marksOf(QString::fromStdString(textOf(m_client.read(parts))));
        EXPECT_FALSE(marks.contains(QString()));
        EXPECT_EQ(marks.size(), 3 + parts.size());
        return marks;
    }

    /** `meanwhile`: what programs go on doing. */
    void expectForgotten(
        const QStringList &marks, const std::function<void()> &meanwhile = [] {}) const
    {
        EXPECT_TRUE(isKept(IDCARD_SERVICE_NAME)); // the search finds what is there
        for (const QString &mark : marks) {
            const auto isForgotten = [&] {
                meanwhile();
                return !isKept(mark);
            };
            EXPECT_TRUE(waitFor(isForgotten, 5000)) << mark.toStdString();
        }
    }

private:
    /** Whether the service still has this text, as it is written or as Qt has it. */
    bool isKept(const QString &text) const
    {
        const QByteArray wide(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
        return canary::isInMemory(m_service->id(), text.toUtf8()) ||
               canary::isInMemory(m_service->id(), wide);
    }
};

} // namespace

TEST_F(ServiceMemory, CardThatWasDelivered_IsForgotten)
{
    serveCard();
    expectForgotten(read({"photo", "fingerprints"}));
    expectForgotten(read());
}

TEST_F(ServiceMemory, CardThatWasDelivered_IsForgottenWhileProgramsGoOnAsking)
{
    serveCard();
    expectForgotten(read(), [this] { m_client.state(); });
}

TEST_F(ServiceMemory, CardThatWasWatched_IsForgotten)
{
    serveCard();
    const QStringList marks = read();
    m_client.ask("StartWatching", {QStringList()});
    ASSERT_TRUE(becomes("idle"));
    expectForgotten(marks);
}

TEST_F(ServiceMemory, CardThatWasWatched_IsForgottenWhileTheWatchGoesOn)
{
    serveScript(IDCARD_BUILD_BIN_DIR "/idcard-reader \"$@\" --simulate resident\n"
                                     "while test $1 = watch; do sleep 0.05; done");
    const QStringList parts = {"photo", "fingerprints"};
    const QStringList marks = read(parts);
    m_client.listen();
    EXPECT_EQ(errorOf(m_client.ask("StartWatching", {parts})), "");
    ASSERT_TRUE(waitFor([this] {
        const QVector<QDBusMessage> &all = m_client.signalsOfService();
        return !all.isEmpty() && all.last().member() == "CardRemoved";
    }));
    expectForgotten(marks);
    EXPECT_EQ(m_client.state(), "watching");
}

// A call that waits may stand where a card stood before.
TEST_F(ServiceMemory, CardBeforeAReadingThatWasCancelled_IsForgotten)
{
    serveScript("test -e again && exec sleep 60\ntouch again\n"
                "exec " IDCARD_BUILD_BIN_DIR "/idcard-reader \"$@\" --simulate resident");
    const QStringList marks = read();
    const QDBusPendingCall reading = beginReading();
    m_client.ask("Cancel");
    ASSERT_TRUE(becomes("idle"));
    expectForgotten(marks);
}

TEST_F(ServiceSecrets, Rubbish_IsNotPrinted)
{
    serveScript("echo 990000199003074284; echo 990000199003074284 >&2; kill -SEGV $$");
    EXPECT_EQ(errorOf(m_client.read()), "WorkerFailed");
    EXPECT_EQ(errorOf(m_client.ask("StartWatching", {QStringList()})), "");
    ASSERT_TRUE(becomes("idle"));
    m_service->signal(SIGTERM);
    const ProcessResult run = m_service->result();
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(), IsEmpty());
}

TEST_F(ServiceSecrets, CoreFiles_AreNotWritten)
{
    serveCard();
    const QByteArray limits = readFile(QStringLiteral("/proc/%1/limits").arg(m_service->id()));
    EXPECT_THAT(limits.toStdString(), testing::ContainsRegex("Max core file size +0 +0 "));
}

TEST_F(ServiceSecrets, Tool_HasTheEnvironmentOfTheServiceWithoutItsSettings)
{
    serveScript("env >environment; echo '{\"kind\": \"resident\"}'");
    textOf(m_client.read());
    EXPECT_THAT(readFile(path("environment")).toStdString(),
                testing::Not(testing::HasSubstr("GLIBC_TUNABLES")));
}
