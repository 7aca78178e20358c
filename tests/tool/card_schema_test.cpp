// The JSON of every road obeys docs/card.schema.json, which lets no broken card through.

#include <gmock/gmock.h>

#include <QDir>

#include "simulator/card/card_library.h"
#include "simulator/card/raw_record.h"
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
        writeFile(m_samples.filePath(name + ".json"), run.standardOutput);
        ++m_count;
    }

    /** Keeps the card.json of a saved card as the sample `name`. */
    void keepSaved(const QString &name, const QStringList &arguments)
    {
        const QString folder = path(name);
        const ProcessResult run = runTool(arguments + QStringList{"--out", folder});
        ASSERT_EQ(run.exitStatus, 0) << run.error();
        writeFile(m_samples.filePath(name + ".json"), readFile(folder + "/card.json"));
        ++m_count;
    }

    void expectTheSchemaToFit()
    {
        ProcessInput input;
        input.emulated = false;
        input.environment = {{"LD_PRELOAD", QString()}, {"UMOCKDEV_DIR", QString()}};
        const ProcessResult run = runProcess(
            "/usr/bin/python3",
            {QStringLiteral(IDCARD_SOURCE_DIR "/tests/tool/check_card_schema.py"),
             QStringLiteral(IDCARD_SOURCE_DIR "/docs/card.schema.json"), m_samples.path()},
            input);
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        EXPECT_EQ(run.output(), std::to_string(m_count) + " cards checked\n");
    }

private:
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
    for (const QString &card : simulator::builtInCardNames()) {
        writeFile(path("card.rec"), simulator::readAnswer(builtInCard(card), {}));
        keep(card, {"decode", "--json", "--simulator-photos", path("card.rec")});
    }
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
    expectTheSchemaToFit();
}

TEST_F(CardSchema, FitsSavedCardsAndTheLinesOfWatch)
{
    keepSaved("read", {"read", "--simulate", "resident"});
    keepSaved("read-without-back", {"read", "--simulate", "hmt-unknown-region"});
    writeFile(path("card.rec"), simulator::readAnswer(builtInCard("resident"), {}));
    keepSaved("decoded", {"decode", path("card.rec"), "--simulator-photos"});
    keep("watched", {"watch", "--simulate", "foreign-new"});
    expectTheSchemaToFit();
}

} // namespace
