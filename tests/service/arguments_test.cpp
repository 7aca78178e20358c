// What the service takes, and what it answers: the card, or the error that each fault is.

#include <set>

#include <gmock/gmock.h>

#include <QRegularExpression>

#include "simulator/card/faults.h"
#include "tests/service/service_process.h"

using testing::HasSubstr;

namespace
{

using ServiceArguments = ServiceTest;

std::string printedByTheTool(const QStringList &arguments)
{
    return runProcess("idcard-reader",
                      QStringList{"read", "--json", "--simulate", "resident"} + arguments)
        .output();
}

struct FaultRow {
    const char *fault;
    const char *error;
};

constexpr const char *CARD = ""; // no error

constexpr FaultRow FAULTS[] = {{"open-fails=1", "ReaderNotOpened"},
                               {"open-fails-every=1", "ReaderNotOpened"},
                               {"no-card", "NoCard"},
                               {"card-removed", "UnknownCard"},
                               {"read-fails=7", "UnknownCard"},
                               {"unknown-kind", "UnknownCard"},
                               {"photo-undecodable", "PhotoNotDecoded"},
                               {"photo-length=7", CARD},
                               {"transient-failures=1000000000", "TimedOut"},
                               {"delay-ms=60000", "TimedOut"}};

class ServiceFaults : public ServiceTest, public testing::WithParamInterface<FaultRow>
{
};

} // namespace

TEST_F(ServiceArguments, CardWithoutParts_IsTheJsonOfTheToolByteForByte)
{
    serveCard();
    EXPECT_EQ(textOf(m_client.read()), printedByTheTool({}));
}

TEST_F(ServiceArguments, CardWithParts_HasEachThatIsAskedFor)
{
    serveCard();
    EXPECT_EQ(textOf(m_client.read({"photo"})), printedByTheTool({"--inline", "photo"}));
    EXPECT_EQ(textOf(m_client.read({"fingerprints", "pictures", "photo"})),
              printedByTheTool({"--inline", "all"}));
}

TEST_F(ServiceArguments, CardWhosePhotoIsNotDecoded_IsDelivered)
{
    const std::string card =
        R"({"kind": "resident", "error": {"name": "IDCARD_RESULT_PHOTO_NOT_DECODED"}})";
    serveScript("echo '" + QByteArray::fromStdString(card) + "'; exit 6");
    EXPECT_EQ(textOf(m_client.read()), card + '\n');
}

TEST_F(ServiceArguments, PartsThatThereAreNot_AreRefused)
{
    serveCard();
    for (const char *part : {"", "all", "Photo", "photo,pictures", "--out"}) {
        const QDBusMessage answer = m_client.read({QLatin1String(part)});
        EXPECT_EQ(errorOf(answer), "InvalidArgument");
        EXPECT_THAT(
            messageOf(answer),
            HasSubstr('"' + std::string(part) + "\" is none of photo, pictures and fingerprints."));
    }
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(ServiceArguments, PartAskedForTwice_IsRefused)
{
    serveCard();
    const QDBusMessage answer = m_client.read({"photo", "photo"});
    EXPECT_EQ(errorOf(answer), "InvalidArgument");
    EXPECT_THAT(messageOf(answer), HasSubstr("\"photo\" is asked for twice."));
}

TEST_F(ServiceArguments, TimeLimits_AreOneToTwentyThousand)
{
    serveCard();
    textOf(m_client.read({}, 20000));
    for (const uint limit : {0U, 20001U, 4294967295U}) {
        const QDBusMessage answer = m_client.read({}, limit);
        EXPECT_EQ(errorOf(answer), "InvalidArgument");
        EXPECT_THAT(messageOf(answer), HasSubstr(std::to_string(limit) + " ms; it takes 1 to"));
    }
}

TEST_F(ServiceArguments, ArgumentsOfOtherTypes_AreRefused)
{
    serveCard();
    const QVector<QVariantList> wrong = {{}, {QStringList()}, {QStringList(), "1"}, {"photo", 5U}};
    for (const QVariantList &arguments : wrong)
        EXPECT_EQ(errorOf(m_client.ask("ReadCard", arguments)), "InvalidArgument");
    EXPECT_EQ(errorOf(m_client.ask("Cancel", {1})), "InvalidArgument");
    EXPECT_EQ(errorOf(m_client.ask("DescribeError", {"a"})), "InvalidArgument");
}

TEST_F(ServiceArguments, MethodThatThereIsNot_IsRefused)
{
    serveCard();
    EXPECT_EQ(errorOf(m_client.ask("WriteCard")), "org.freedesktop.DBus.Error.UnknownMethod");
}

TEST_F(ServiceArguments, DescriptionOfAnError_IsInTheLanguageOfTheCaller)
{
    serveCard();
    const auto headline = [this](const char *name, const char *language) {
        return m_client.ask("DescribeError", {name, language}).arguments().value(0).toString();
    };
    const char *const noCard = IDCARD_SERVICE_DOMAIN ".Error.NoCard";
    EXPECT_EQ(headline(noCard, "zh_CN"), "读卡器上没有找到证件。");
    EXPECT_EQ(headline(noCard, "en_GB"), "No card was found on the reader.");
    EXPECT_EQ(headline(noCard, ""), "No card was found on the reader.");
    EXPECT_EQ(headline("USB_READER_NO_DATA", "en"), "The card gave no data.");
    const QDBusMessage answer = m_client.ask("DescribeError", {"NoCard", "en"});
    EXPECT_EQ(errorOf(answer), "InvalidArgument");
}

TEST_F(ServiceArguments, RefusalAfterADescriptionInChinese_IsInTheLanguageOfTheService)
{
    serveCard();
    m_client.ask("DescribeError", {IDCARD_SERVICE_DOMAIN ".Error.NoCard", "zh_CN"});
    EXPECT_THAT(messageOf(m_client.read({}, 0)), HasSubstr("The call to the service is wrong."));
}

TEST_P(ServiceFaults, Reading_EndsWithTheErrorOfTheFaultInItsTime)
{
    serveCard({"--fault", GetParam().fault});
    const bool isTimeToEnd = GetParam().error == QByteArray("TimedOut");
    const QDBusMessage answer = m_client.read({"photo"}, isTimeToEnd ? 1000 : 20000);
    EXPECT_EQ(errorOf(answer), GetParam().error);
    if (GetParam().error != CARD) {
        EXPECT_THAT(messageOf(answer), testing::ContainsRegex("[.]\n.*[.]\n.*[.]"));
    }
    EXPECT_TRUE(becomes("idle"));
}

TEST(ServiceFaultRows, FaultsOfTheSimulator_AreAllTried)
{
    std::set<std::string> tried;
    for (const FaultRow &row : FAULTS)
        tried.insert(QString::fromUtf8(row.fault).section('=', 0, 0).toStdString());
    for (const simulator::FaultRule &rule : simulator::faultRules(simulator::Road::MAKERS_LIBRARY))
        EXPECT_EQ(tried.count(rule.name), 1U) << rule.name;
}

INSTANTIATE_TEST_SUITE_P(MakersLibrary, ServiceFaults, testing::ValuesIn(FAULTS),
                         [](const auto &row) {
                             QString name = QString::fromUtf8(row.param.fault);
                             return name.remove(QRegularExpression("[^a-z]")).toStdString();
                         });
