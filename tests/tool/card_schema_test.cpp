// The JSON of every road and every failure obeys docs/card.schema.json, which lets nothing broken
// through.

#include <gmock/gmock.h>

#include <QJsonDocument>

#include "simulator/card/card_library.h"
#include "simulator/reader/virtual_reader.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/emulated_bus.h"

namespace
{

class CardSchema : public FolderTest
{
protected:
    /** Keeps what the tool printed as the sample `name`. */
    void keep(const QString &name, const QStringList &arguments, const ProcessInput &input = {})
    {
        const ProcessResult run = runTool(arguments, input);
        ASSERT_THAT(run.output(), testing::StartsWith("{")) << run.error();
        keepSample(name, run.standardOutput);
    }

    /** Keeps each line that the tool printed as a sample. */
    void keepLines(const QString &name, const QStringList &arguments)
    {
        const QVector<QJsonObject> lines = parsedLines(runTool(arguments).standardOutput);
        ASSERT_FALSE(lines.isEmpty());
        for (int i = 0; i < lines.size(); ++i)
            keepSample(QStringLiteral("%1-%2").arg(name).arg(i), QJsonDocument(lines[i]).toJson());
    }

    /** Keeps the card.json of a saved card as the sample `name`. */
    void keepSaved(const QString &name, const QStringList &arguments)
    {
        const QString folder = path(name);
        const ProcessResult run = runTool(arguments + QStringList{"--out", folder});
        ASSERT_EQ(run.exitStatus, 0) << run.error();
        keepSample(name, readFile(folder + "/card.json"));
    }

    void expectTheSchemaToFit()
    {
        ProcessInput input;
        input.environment = {{"LD_PRELOAD", QString()}, {"UMOCKDEV_DIR", QString()}};
        const ProcessResult run = runProcess(
            "/usr/bin/python3",
            {QStringLiteral(IDCARD_SOURCE_DIR "/tests/tool/check_card_schema.py"),
             QStringLiteral(IDCARD_SOURCE_DIR "/docs/card.schema.json"), m_samples.path()},
            input);
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        EXPECT_EQ(run.output(), std::to_string(m_count) + " objects checked\n");
    }

private:
    void keepSample(const QString &name, const QByteArray &json)
    {
        writeFile(m_samples.filePath(name + ".json"), json);
        ++m_count;
    }

    QTemporaryDir m_samples;
    int m_count = 0;
};

TEST_F(CardSchema, FitsEveryBuiltInCardByRead)
{
    for (const QString &card : simulator::builtInCardNames())
        keep(card, {"read", "--json", "--simulate", card});
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsEveryBuiltInCardByDecode)
{
    for (const QString &card : simulator::builtInCardNames())
        keep(card, {"decode", "--json", "--simulator-photos", recordFile(recordOf(card))});
    keep("photo-left-compressed", {"decode", "--json", path("card.rec")});
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsCardsByUsb)
{
    simulator::VirtualReader reader;
    usb_test::EmulatedBus bus;
    bus.add(reader);
    ProcessInput input;
    input.environment = bus.childEnvironment();
    for (const char *card : {"resident", "resident-no-fingerprint", "hmt-hong-kong", "foreign-2017",
                             "foreign-new-unknown-nationality"}) {
        bus.change([&] {
            QString problem;
            reader.slot().putCard(card, simulator::PutAs::DESCRIBED, &problem);
        });
        keep(card, {"usb", "--device", "1209:0001", "--json", "--simulator-photos"}, input);
    }
    bus.change([&] {
        QString problem;
        reader.slot().setFaults("read-answer-corrupted=17", &problem);
    });
    keep("odd", {"usb", "--device", "1209:0001", "--json", "--simulator-photos"}, input);
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsSavedCardsAndTheLinesOfWatch)
{
    keepSaved("read", {"read", "--simulate", "resident"});
    keepSaved("read-without-back", {"read", "--simulate", "hmt-unknown-region"});
    keepSaved("decoded", {"decode", recordFile("resident"), "--simulator-photos"});
    keep("watched", {"watch", "--simulate", "foreign-new"});
    keep("inline", {"read", "--json", "--inline", "all", "--simulate", "resident"});
    keep("inline-without", {"decode", "--json", "--inline", "all", path("card.rec")});
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsTheFailuresOfRead)
{
    for (const char *fault : {"open-fails=3", "no-card", "photo-undecodable", "unknown-kind"})
        keep(fault, {"read", "--json", "--simulate", "resident", "--fault", fault});
    ProcessInput chinese;
    chinese.environment = {{"LANGUAGE", "zh_CN"}, {"LC_ALL", "C.UTF-8"}};
    for (const char *fault : {"open-fails=3", "no-card", "photo-undecodable", "read-fails=7"})
        keep(QStringLiteral("chinese-%1").arg(fault),
             {"read", "--json", "--simulate", "resident", "--fault", fault}, chinese);
    keep("refused-card", {"read", "--json", "--simulate", "no-such-card"});
    keep("refused-fault", {"read", "--json", "--simulate", "resident", "--fault", "none"});
    keep("watched", {"watch", "--json", "--simulate", "resident", "--fault", "read-fails=7"});
    ProcessInput input;
    input.environment = {{"IDCARD_SIMULATOR_LIBRARY", path("none.so")}};
    keep("no-simulator", {"read", "--json", "--simulate", "resident"}, input);
    keep("no-reader", {"read", "--json"});
    writeFile(path("idcard-reader.conf"), "road\n");
    input.environment = {{"XDG_CONFIG_HOME", path(".")}};
    keep("configuration", {"read", "--json"}, input);
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsFailuresWithAndWithoutACard)
{
    writeFile(path("text"), "text");
    keep("no-record", {"decode", "--json", path("text")});
    keep("no-file", {"decode", "--json", path("none")});
    keep("photo-left-compressed", {"decode", "--json", recordFile("resident")});
    keep("not-written", {"read", "--json", "--simulate", "resident", "--out", path("text")});
    keep("not-painted", {"render", "resident", "--json", "--out", path("text")});
    keep("contradiction", {"doctor", "--json", "--road", "library", "--device", "1209:0001"});
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsTheEventsOfWatch)
{
    keepLines("cards", {"watch", "--events", "--simulate", "resident", "--simulate",
                        "hmt-unknown-region", "--interval", "10", "--fault", "no-card=1"});
    keepLines("inline", {"watch", "--events", "--inline", "all", "--simulate", "foreign-new"});
    keepLines("failed", {"watch", "--events", "--simulate", "resident", "--fault", "read-fails=7"});
    keepLines("timed-out", {"watch", "--events", "--timeout", "1", "--simulate", "resident",
                            "--fault", "transient-failures=1000000"});
    keepLines("gone", {"watch", "--events", "--interval", "10", "--simulate", "resident", "--fault",
                       "no-card=3,open-fails-every=2"});
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsTheFailuresOfUsb)
{
    const usb_test::EmulatedBus bus;
    ProcessInput input;
    input.environment = bus.childEnvironment();
    keep("no-reader", {"usb", "--json", "--device", "1209:0001"}, input);
    keep("no-reader-at-all", {"read", "--road", "usb", "--json"}, input);
    expectTheSchemaToFit();
}

} // namespace
