// "idcard-reader doctor --service": a reading inside the service beside one outside.

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/service/service_process.h"

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{

class ServiceDoctor : public ServiceTest
{
protected:
    ProcessResult look(const QStringList &options)
    {
        return runProcess("idcard-reader", QStringList{"doctor", "--service"} + options, onBus());
    }

    /** The finding about the service, of which there is one. */
    QJsonObject finding()
    {
        const QByteArray report = look({"--json", "--road", "usb"}).standardOutput;
        const QJsonArray findings = QJsonDocument::fromJson(report).object()["findings"].toArray();
        QJsonObject found;
        for (const auto &one : findings) {
            if (one.toObject()["check"] == "service")
                found = one.toObject();
        }
        EXPECT_EQ(found["group"].toString(), "service");
        return found;
    }

    std::string text() { return finding()["text"].toString().toStdString(); }
};

} // namespace

TEST_F(ServiceDoctor, ServiceThatReads_IsFineAndNothingOfTheCardIsShown)
{
    serveCard();
    EXPECT_EQ(text(), "a card was read through it");
    const ProcessResult run = look({"--verbose"});
    EXPECT_THAT(run.output() + run.error(), Not(HasSubstr("990000199003074284")));
}

TEST_F(ServiceDoctor, ReaderWithoutACard_IsFine)
{
    serveCard({"--fault", "no-card"});
    const QJsonObject found = finding();
    EXPECT_EQ(found["level"].toString(), "ok");
    EXPECT_EQ(found["text"].toString(), "it reaches the reader, on which no card lies");
}

TEST_F(ServiceDoctor, ReaderThatNeitherReads_IsSaidToBeSo)
{
    serveScript("exit 1");
    const QJsonObject found = finding();
    EXPECT_THAT(found["text"].toString().toStdString(),
                StartsWith("neither it nor idcard-reader reads: WorkerFailed, The program that "
                           "reads the card failed. "));
}

TEST_F(ServiceDoctor, BusWithoutTheService_IsAServiceThatIsNotInstalled)
{
    EXPECT_EQ(text(), "it is not installed");
}

TEST_F(ServiceDoctor, MachineWithoutABus_IsAServiceThatDoesNotAnswer)
{
    m_client.leave();
    m_bus.end();
    EXPECT_THAT(text(), StartsWith("it does not answer: Failed to open connection"));
}

TEST_F(ServiceDoctor, MachineWithoutDbusSend_IsAServiceThatDoesNotAnswer)
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", m_folder.path().toUtf8());
    EXPECT_EQ(text(), "it does not answer: dbus-send: No such file or directory");
    qputenv("PATH", path);
}
