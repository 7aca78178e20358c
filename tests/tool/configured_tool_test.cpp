// The built program with configuration files: what they decide, and what the command line does.

#include <gmock/gmock.h>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::HasSubstr;

namespace
{

class ConfiguredTool : public FolderTest, public usb_test::ReaderOnBus
{
protected:
    ConfiguredTool() : ReaderOnBus({0x1210, 0x0001}) {}

    void TearDown() override { expectAllGivenBack(); }

    /** Writes the user's file. */
    void configure(const QByteArray &content) { writeFile(path("idcard-reader.conf"), content); }

    ProcessInput input()
    {
        ProcessInput input{bus().childEnvironment()};
        input.environment.insert("XDG_CONFIG_HOME", path("."));
        return input;
    }

    ProcessResult run(const QStringList &arguments) { return runTool(arguments, input()); }

    static QString roadOf(const ProcessResult &run)
    {
        return parsedObject(run.standardOutput)["road"].toString();
    }
};

TEST_F(ConfiguredTool, RoadOfTheFileIsTakenByReadAndWatch)
{
    plugIn("resident");
    configure("road = usb\n");
    const ProcessResult read = run({"read", "--json", "--simulator-photos"});
    EXPECT_EQ(read.exitStatus, 0) << read.error();
    EXPECT_EQ(roadOf(read), "usb");
    EXPECT_EQ(roadOf(run({"watch", "--simulator-photos", "--count", "1"})), "usb");
}

TEST_F(ConfiguredTool, RoadOfTheCommandLineAndThatOfUsbWin)
{
    plugIn("resident");
    configure("road = library\n");
    EXPECT_EQ(roadOf(run({"read", "--json", "--simulator-photos", "--road", "usb"})), "usb");
    EXPECT_EQ(roadOf(run({"usb", "--json", "--simulator-photos"})), "usb");
    configure("road = usb\n");
    expectEnd(run({"read", "--road", "library"}), 3, "Code: -5");
}

TEST_F(ConfiguredTool, SimulatorWinsOverTheRoadOfTheFile)
{
    configure("road = usb\ndevice = 1209:0001\n");
    EXPECT_EQ(roadOf(run({"read", "--json", "--simulate", "resident"})), "reader-library");
    EXPECT_EQ(roadOf(run({"watch", "--simulate", "resident"})), "reader-library");
}

TEST_F(ConfiguredTool, DeviceOfTheFileIsTakenAndThatOfTheCommandLineWins)
{
    bus().add(otherDevice());
    plugIn("resident");
    configure("device = 1209:0001\n");
    EXPECT_EQ(run({"usb", "--simulator-photos"}).exitStatus, 0);
    EXPECT_EQ(run({"watch", "--road", "usb", "--simulator-photos", "--count", "1"}).exitStatus, 0);
    expectEnd(run({"usb", "--device", "1210:0001"}), 4, "Device: 1210:0001");
    configure("device = 1210:0001\n");
    EXPECT_EQ(run({"usb", "--simulator-photos", "--device", "1209:0001"}).exitStatus, 0);
}

TEST_F(ConfiguredTool, DeviceOfTheFileDoesNotBearOnTheLibrary)
{
    configure("device = 1209:0001\n");
    expectEnd(run({"read"}), 3, "Code: -5");
}

TEST_F(ConfiguredTool, TimeoutOfTheFileIsTakenAndThatOfTheCommandLineWins)
{
    const QStringList neverEnding{"read", "--simulate", "resident", "--fault",
                                  "transient-failures=1000000"};
    configure("timeout = 1\n");
    expectEnd(run(neverEnding), 11, "after 1 s");
    configure("timeout = 3600\n");
    expectEnd(run(neverEnding + QStringList{"--timeout", "1"}), 11, "after 1 s");
}

TEST_F(ConfiguredTool, MistakeIsRefusedWithFileAndLineAndAsAnObject)
{
    plugIn("resident");
    configure("road = usb\ndevcie = 1209:0001\n");
    for (const QStringList &command :
         {QStringList{"read"}, QStringList{"watch"}, QStringList{"usb"},
          QStringList{"read", "--simulate", "resident"}}) {
        const ProcessResult result = run(command + QStringList{"--json"});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_THAT(result.error(),
                    AllOf(HasSubstr(path("idcard-reader.conf").toStdString() + ", line 2: "),
                          HasSubstr("\"devcie\""), HasSubstr("road (library or usb), device ("),
                          HasSubstr("Correct the line, or put # before it.")));
        const QJsonObject error = parsedObject(result.standardOutput)["error"].toObject();
        EXPECT_EQ(error["name"], "TOOL_CONFIGURATION_WRONG");
        EXPECT_EQ(error["exitStatus"], 2);
    }
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

TEST_F(ConfiguredTool, MistakeDoesNotBearOnCommandsThatReadFromNoReader)
{
    configure("nonsense\n");
    EXPECT_EQ(run({"cards"}).exitStatus, 0);
    EXPECT_EQ(run({"usb", "--list"}).exitStatus, 0);
    EXPECT_EQ(run({"render", "resident", "--out", out()}).exitStatus, 0);
    EXPECT_EQ(run({"read", "--help"}).exitStatus, 0);
}

} // namespace
