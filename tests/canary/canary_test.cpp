// Where card data comes out: in every requested place, and nowhere else.
// docs/personal-data.md lists the same for people.

#include <chrono>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>

#include <QFile>

#include "simulator/card/raw_record.h"
#include "tests/canary/process_memory.h"
#include "tests/canary/scenario.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/test_name.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

namespace
{

using namespace canary;
using testing::IsEmpty;
using testing::Not;

/** What the maker's library does not deliver, though the chip holds it. */
const MarkNames CHIP_ONLY = {"issueCount", "nationalityCode", "cardVersion", "authorityCode"};
/** What a raw record has codes for, and what cannot be distinguished from the digits beside it.
 */
const MarkNames NOT_IN_RECORD = {"sex",        "ethnicGroup",     "nationality",
                                 "issueCount", "nationalityCode", "authorityCode"};
const MarkNames MEDIA = {"photo", "prints", "picture"};
/** The simulator writes the number of its card into the prints. */
const MarkNames PRINTS_FILE = {"prints", "idNumber", "birthDate"};

bool forbidsCoreFiles(qint64 process)
{
    const QByteArray limits = readFile(QStringLiteral("/proc/%1/limits").arg(process));
    return limits.simplified().contains("Max core file size 0 0 ");
}

/** Whether a process has these bytes in its memory, now or within some time. */
bool holdsInMemory(int process, const char *bytes, int size)
{
    constexpr std::chrono::seconds LIMIT{60};
    constexpr std::chrono::milliseconds PAUSE{200};
    const QByteArray wanted(bytes, size);
    const auto end = std::chrono::steady_clock::now() + LIMIT;
    while (std::chrono::steady_clock::now() < end) {
        if (canary::isInMemory(process, wanted))
            return true;
        std::this_thread::sleep_for(PAUSE);
    }
    return false;
}

std::string nameOfKind(const testing::TestParamInfo<Card> &card)
{
    return testName(card.param.kind);
}

class Canary : public testing::TestWithParam<Card>
{
protected:
    bool hasPrints() const { return GetParam().kind == QLatin1String("resident"); }

    /** The texts of the card, without those that a road does not deliver. */
    MarkNames textsBut(const MarkNames &missing) const
    {
        MarkNames names;
        for (const Mark &mark : m_marks)
            if (missing.count(mark.name) == 0 && MEDIA.count(mark.name) == 0)
                names.insert(mark.name);
        return names;
    }
    MarkNames readTexts() const { return textsBut(CHIP_ONLY); }
    /** The tool shows the whole of a text that the decoder cut. */
    MarkNames toolTexts() const { return textsBut({"cardVersion", "authorityCode"}); }

    /** The files of a saved card. */
    Findings savedCard(const MarkNames &texts, bool hasPictures) const
    {
        Findings files{{"work/card/card.json", texts}, {"work/card/photo.bmp", {"photo"}}};
        if (hasPrints())
            files["work/card/fingerprints.dat"] = PRINTS_FILE;
        if (hasPictures) {
            files["work/card/front.jpg"] = {"picture"};
            files["work/card/back.jpg"] = {"picture"};
        }
        return files;
    }

    const Surroundings &surroundings() const { return m_surroundings; }
    QString cardFile() const { return m_surroundings.input("card.json", GetParam().description); }
    QByteArray rawRecord() const { return simulator::readAnswer(describedCard(GetParam()), {}); }
    QString recordFile() const { return m_surroundings.input("record", rawRecord()); }

    Findings findings(const ProcessResult &result) const
    {
        return m_surroundings.findings(result, m_marks);
    }

    /** What a run leaves that has to end with this status. */
    Findings run(const QString &program, const QStringList &arguments, int exitStatus,
                 const QMap<QString, QString> &environment = {}) const
    {
        const ProcessResult result =
            runProcess(program, arguments, m_surroundings.processInput(environment));
        EXPECT_TRUE(result.finished);
        EXPECT_EQ(result.exitStatus, exitStatus) << result.error();
        return findings(result);
    }
    Findings tool(const QStringList &arguments, int exitStatus,
                  const QMap<QString, QString> &environment = {}) const
    {
        return run("idcard-reader", arguments, exitStatus, environment);
    }
    /** `code`: what the library returned, without its sign. */
    Findings host(const QStringList &arguments, const QMap<QString, QString> &environment,
                  int code = 0) const
    {
        return run("canary_host", arguments, code, environment);
    }

    /** The environment of a host that finds the simulator in place of the makers' libraries. */
    QMap<QString, QString> simulator(const QString &faults = {}) const
    {
        return {{"IDCARD_SIMULATOR_CARD", cardFile()},
                {"IDCARD_SIMULATOR_FAULTS", faults},
                {"QT_LOGGING_RULES", "*.debug=true"}};
    }

private:
    const std::vector<Mark> m_marks = marksOf(GetParam());
    const Surroundings m_surroundings;
};

INSTANTIATE_TEST_SUITE_P(Kinds, Canary, testing::ValuesIn(cards()), nameOfKind);

/** The same with the card on a reader on USB. */
class CanaryOnUsb : public Canary, public usb_test::ReaderOnBus
{
protected:
    void plugIn(const QString &faults) { ReaderOnBus::plugIn(cardFile(), faults); }

    /** What a host or the tool leaves that has the bus. */
    ProcessResult runOnBus(const QString &program, const QStringList &arguments)
    {
        QMap<QString, QString> environment = bus().childEnvironment();
        environment["QT_LOGGING_RULES"] = "*.debug=true";
        return runProcess(program, arguments, surroundings().processInput(environment));
    }
    ProcessResult usb(const QStringList &more)
    {
        return runOnBus(
            "idcard-reader",
            QStringList{"usb", "--device", "1209:0001", "--simulator-photos", "--verbose"} + more);
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, CanaryOnUsb, testing::ValuesIn(cards()), nameOfKind);

} // namespace

// The library in a host that prints nothing and shows everything that is logged.

TEST_P(Canary, ReadIDCard_RevealsNothing)
{
    EXPECT_THAT(host({"read"}, simulator()), IsEmpty());
}

TEST_P(Canary, ReadIDCardThatFails_RevealsNothing)
{
    const struct {
        const char *fault;
        int code;
    } faults[] = {{"open-fails=7", 5},       {"no-card", 24},      {"transient-failures=2", 0},
                  {"read-fails=201", 0},     {"unknown-kind", 0},  {"card-removed", 0},
                  {"photo-undecodable", 26}, {"photo-length=9", 0}};
    for (const auto &row : faults)
        EXPECT_THAT(host({"read"}, simulator(QLatin1String(row.fault)), row.code), IsEmpty())
            << row.fault;
}

TEST_P(Canary, Decoders_LogWhatIsDocumented)
{
    const std::map<std::string, MarkNames> logged = {
        {"hmt", {"idNumber", "birthDate", "issuingAuthority"}}, // the number holds the date
        {"foreign-new", {"sex", "birthDate", "englishName", "nationality", "nationalityCode"}},
    };
    Findings expected;
    if (logged.count(GetParam().kind) > 0)
        expected["stderr"] = logged.at(GetParam().kind);
    EXPECT_EQ(host({"decode", recordFile()}, simulator()), expected);
}

TEST_P(Canary, DecodersWithTheLogOff_RevealNothing)
{
    QMap<QString, QString> environment = simulator();
    environment["QT_LOGGING_RULES"] = "default.debug=false";
    EXPECT_THAT(host({"decode", recordFile()}, environment), IsEmpty());
}

TEST_P(Canary, SavedPrints_AreInTheirFileAlone)
{
    QMap<QString, QString> environment = simulator();
    environment["QT_LOGGING_RULES"] = "default.debug=false";
    Findings expected;
    if (hasPrints())
        expected["work/fp_raw_data.dat"] = PRINTS_FILE;
    EXPECT_EQ(host({"prints", recordFile()}, environment), expected);
}

TEST_P(CanaryOnUsb, Library_RevealsNothing)
{
    plugIn({});
    const ProcessResult result = runOnBus("canary_host", {"usb"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(findings(result), IsEmpty());
}

// The command-line tool.

TEST_P(Canary, Read_PrintsTheTexts)
{
    EXPECT_EQ(tool({"read", "--simulate", cardFile(), "--verbose"}, 0),
              (Findings{{"stdout", readTexts()}}));
}

TEST_P(Canary, ReadWithFiles_SavesThemInTheirFolderAlone)
{
    Findings expected = savedCard(readTexts(), true);
    expected["stdout"] = readTexts();
    EXPECT_EQ(tool({"read", "--simulate", cardFile(), "--json", "--out", "card"}, 0), expected);
}

TEST_P(Canary, ReadThatFails_RevealsNothing)
{
    const struct {
        const char *fault;
        int exitStatus;
    } faults[] = {{"open-fails=7", 3},      {"no-card", 4},      {"read-fails=201", 8},
                  {"photo-undecodable", 6}, {"unknown-kind", 8}, {"card-removed", 8}};
    for (const auto &row : faults)
        EXPECT_THAT(tool({"read", "--simulate", cardFile(), "--fault", row.fault, "--out", "card",
                          "--verbose"},
                         row.exitStatus),
                    IsEmpty())
            << row.fault;
}

TEST_P(Canary, ReadThatTakesTooLong_RevealsNothing)
{
    EXPECT_THAT(tool({"read", "--simulate", cardFile(), "--fault", "transient-failures=1000000",
                      "--timeout", "1", "--out", "card", "--json", "--verbose"},
                     11),
                IsEmpty());
}

TEST_P(Canary, ReadWithInlineParts_PrintsThemAlone)
{
    const Findings printed =
        tool({"read", "--simulate", cardFile(), "--json", "--inline", "photo,pictures"}, 0);
    MarkNames expected = readTexts();
    expected.insert({"photo", "picture"});
    EXPECT_EQ(printed, (Findings{{"stdout", expected}}));
}

TEST_P(Canary, TimeOfARead_IsNoMark)
{
    ProcessResult result;
    result.standardError = "Reading ended after 73 ms with the code -26.\n";
    EXPECT_THAT(findings(result), IsEmpty());
    result.standardError = "Reading ended after 9 ms with the code 73 1954 TKM 20110923.\n";
    EXPECT_THAT(findings(result), Not(IsEmpty()));
}

TEST_P(Canary, ReadIntoAFileInPlaceOfAFolder_PrintsTheTextsAlone)
{
    const QString file = surroundings().input("file", "in the way");
    EXPECT_EQ(tool({"read", "--simulate", cardFile(), "--out", file + "/card"}, 7),
              (Findings{{"stdout", readTexts()}}));
}

TEST_P(Canary, ReadWithoutStandardOutput_RevealsNothing)
{
    RunningProcess run("idcard-reader", {"read", "--simulate", cardFile(), "--verbose"},
                       surroundings().processInput());
    run.closeStandardOutput();
    EXPECT_THAT(findings(run.result()), IsEmpty());
}

TEST_P(Canary, InterruptedRead_RevealsNothing)
{
    RunningProcess run("idcard-reader",
                       {"read", "--simulate", cardFile(), "--fault", "delay-ms=3000", "--out",
                        "card", "--verbose"},
                       surroundings().processInput());
    ASSERT_TRUE(run.waitForError("simulator"));
    run.signal(SIGTERM);
    EXPECT_THAT(findings(run.result()), IsEmpty());
}

TEST_P(Canary, Watch_PrintsTheTextsAndSavesEverything)
{
    const Findings findings =
        tool({"watch", "--simulate", cardFile(), "--interval", "10", "--verbose"}, 0);
    EXPECT_EQ(findings, (Findings{{"stdout", readTexts()}}));
}

TEST_P(Canary, Render_SavesThePicturesAlone)
{
    EXPECT_EQ(
        tool({"render", cardFile(), "--out", "card", "--verbose"}, 0),
        (Findings{{"work/card/front.jpg", {"picture"}}, {"work/card/back.jpg", {"picture"}}}));
}

TEST_P(Canary, Decode_PrintsTheTextsAndSavesThemInTheirFolderAlone)
{
    Findings expected = savedCard(toolTexts(), false);
    expected["stdout"] = toolTexts();
    EXPECT_EQ(tool({"decode", recordFile(), "--out", "card", "--simulator-photos", "--verbose"}, 0),
              expected);
}

TEST_P(Canary, DecodeOfADamagedRecord_RevealsNothing)
{
    QByteArray cut = rawRecord();
    cut.chop(1);
    QByteArray corrupted = rawRecord();
    corrupted[20] = static_cast<char>(corrupted.at(20) ^ 1);
    QByteArray longer = rawRecord() + '\0';
    for (const QByteArray &record : {cut, corrupted.left(900), longer})
        EXPECT_THAT(
            tool({"decode", surroundings().input("damaged", record), "--verbose", "--out", "card"},
                 2),
            IsEmpty());
}

TEST_P(CanaryOnUsb, Usb_PrintsTheTextsAndSavesEverythingInItsPlaceAlone)
{
    plugIn({});
    Findings expected = savedCard(toolTexts(), false);
    expected["stdout"] = toolTexts();
    expected["work/raw"] = textsBut(NOT_IN_RECORD);
    expected["work/raw"].insert("photo");
    if (hasPrints())
        expected["work/raw"].insert("prints");
    const ProcessResult result = usb({"--out", "card", "--raw", "raw"});
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    EXPECT_EQ(findings(result), expected);
}

TEST_P(CanaryOnUsb, UsbThatFails_RevealsNothing)
{
    plugIn({});
    for (const char *fault : {"read-answer-cut=900", "read-answer-corrupted=5",
                              "read-answer-too-long", "unplugged-during=6"}) {
        bus().change([&] { prepare(cardFile(), fault); });
        const ProcessResult result = usb({"--out", "card", "--raw", "raw"});
        EXPECT_NE(result.exitStatus, 0) << fault;
        EXPECT_THAT(findings(result), IsEmpty()) << fault;
    }
}

// The window.

TEST_P(Canary, Window_RevealsNothing)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "Left out: the window cannot start what the emulator runs";
    RunningProcess run("idcard-viewer", {"--simulate", cardFile(), "--auto"},
                       surroundings().processInput({{"QT_LOGGING_RULES", "*.debug=true"}}));
    ASSERT_TRUE(holdsInMemory(run.id(), "\xFF\xD8\xFF\xE0\x00\x10JFIF", 10))
        << "it has not painted the card";
    EXPECT_TRUE(forbidsCoreFiles(run.id()));
    run.signal(SIGTERM);
    EXPECT_THAT(findings(run.result()), IsEmpty());
}

// What a crash would leave.

TEST_P(Canary, Crash_LeavesNoCoreFile)
{
    RunningProcess run("idcard-reader",
                       {"read", "--simulate", cardFile(), "--fault", "delay-ms=60000", "--verbose"},
                       surroundings().processInput());
    ASSERT_TRUE(run.waitForError("simulator")); // now it works on the card
    EXPECT_TRUE(forbidsCoreFiles(run.id()));
}

// The reader over USB/IP.

TEST_P(Canary, VirtualReader_RevealsNothing)
{
    RunningProcess run("idcard-virtual-reader",
                       {"--port", "0", "--card", cardFile(), "--until-end-of-input"},
                       surroundings().processInput());
    ASSERT_FALSE(run.nextLine().isEmpty());
    run.write("status\ntake\ncard " + QFile::encodeName(cardFile()) + "\nfaults no-card\nstatus\n");
    EXPECT_THAT(findings(run.result()), IsEmpty());
}
