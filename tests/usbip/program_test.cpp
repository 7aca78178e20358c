// idcard-virtual-reader as a user and a script meet it: options, lines of standard input, signals.

#include <chrono>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>

#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>

#include "tests/support/process.h"
#include "tests/usb/reader_frames.h"
#include "tests/usbip/client_messages.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{

constexpr int WAIT_MS = 30000;
const char *const PROGRAM = "idcard-virtual-reader";

/** A reader on any free port. */
class VirtualReader : public RunningProcess
{
public:
    explicit VirtualReader(const QStringList &arguments = {})
        : RunningProcess(PROGRAM, QStringList{"--port", "0"} + arguments)
    {
        const QByteArray line = nextLine();
        EXPECT_THAT(line.toStdString(), StartsWith("ok listening on 127.0.0.1 port "));
        m_port = line.mid(line.lastIndexOf(' ') + 1).toUShort();
        EXPECT_GT(m_port, 0);
    }

    quint16 port() const { return m_port; }

    std::string ask(const QByteArray &line)
    {
        write(line + '\n');
        return nextLine().toStdString();
    }

private:
    quint16 m_port = 0;
};

/** A client that waits for every answer. */
class Client
{
public:
    explicit Client(quint16 port)
    {
        m_socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        EXPECT_TRUE(m_socket.waitForConnected(WAIT_MS));
    }

    QByteArray ask(const QByteArray &request, int answerSize)
    {
        m_socket.write(request);
        while (m_socket.bytesAvailable() < answerSize && m_socket.waitForReadyRead(WAIT_MS)) {
        }
        return m_socket.read(answerSize);
    }

    void attach() { ASSERT_EQ(ask(importRequest(), IMPORT_REPLY_SIZE).size(), IMPORT_REPLY_SIZE); }

    QByteArray exchange(const QByteArray &command, int answerSize)
    {
        EXPECT_EQ(replies(ask(bulkWrite(1, command), 48)),
                  std::vector<Reply>{(Reply{Reply::Submitted, 1, 0, command.size(), {}})});
        return ask(bulkRead(2, static_cast<unsigned int>(answerSize)), 48 + answerSize).mid(48);
    }

    bool isClosedByServer()
    {
        return m_socket.state() == QAbstractSocket::UnconnectedState ||
               m_socket.waitForDisconnected(WAIT_MS);
    }

private:
    QTcpSocket m_socket;
};

TEST(VirtualReaderProgram, HasACardReadOverTheProtocol)
{
    const VirtualReader reader({"--card", "resident"});
    Client client(reader.port());
    client.attach();
    EXPECT_EQ(client.exchange(frames::LOOKUP, 15), frames::LOOKUP_ANSWER);
    EXPECT_EQ(client.exchange(frames::SELECT, 19), frames::SELECT_ANSWER);
    const QByteArray card = client.exchange(frames::READ, 2321);
    EXPECT_EQ(card.left(16), hex("AA AA AA 96 69 09 0A 00 00 90 01 00 04 00 04 00"));
    EXPECT_EQ(card.size(), 2321);
}

TEST(VirtualReaderProgram, IsNotReachedOnAnotherAddress)
{
    const VirtualReader reader;
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.2"), reader.port());
    EXPECT_FALSE(socket.waitForConnected(5000));
}

TEST(VirtualReaderProgram, WarnsWhenOthersCanReachIt)
{
    RunningProcess reader(PROGRAM, {"--listen", "0.0.0.0", "--port", "0"});
    EXPECT_THAT(reader.nextLine().toStdString(), StartsWith("ok listening on 0.0.0.0 port "));
    EXPECT_TRUE(reader.waitForError("Warning: 0.0.0.0 is not a loopback address"));
}

TEST(VirtualReaderProgram, BearsTheIdsThatItIsGiven)
{
    const VirtualReader reader({"--device", "04aB:00Cd"});
    Client client(reader.port());
    EXPECT_EQ(client.ask(listRequest(), LIST_REPLY_SIZE).mid(12 + 256 + 32 + 12, 4),
              hex("04 AB 00 CD"));
}

TEST(VirtualReaderProgram, CardIsPutAndTakenByCommand)
{
    VirtualReader reader;
    Client client(reader.port());
    client.attach();
    EXPECT_NE(client.exchange(frames::LOOKUP, 11), frames::LOOKUP_ANSWER.left(11));
    EXPECT_EQ(reader.ask("card hmt-macao"), "ok");
    EXPECT_EQ(client.exchange(frames::LOOKUP, 15), frames::LOOKUP_ANSWER);
    EXPECT_EQ(reader.ask("take"), "ok");
    EXPECT_NE(client.exchange(frames::LOOKUP, 11), frames::LOOKUP_ANSWER.left(11));
}

TEST(VirtualReaderProgram, CardComesFromAFileWithASpaceInItsName)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("my card.json");
    ASSERT_TRUE(QFile::copy(IDCARD_SOURCE_DIR "/simulator/cards/resident.json", file));
    VirtualReader reader;
    EXPECT_EQ(reader.ask("  card \t" + QFile::encodeName(file) + "  "), "ok");
    EXPECT_THAT(reader.ask("status"), HasSubstr("card: " + file.toStdString()));
}

TEST(VirtualReaderProgram, FaultsAreSetAndTakenBack)
{
    VirtualReader reader({"--card", "resident"});
    Client client(reader.port());
    client.attach();
    EXPECT_EQ(reader.ask("faults lookup-answer-stalled, delay-ms=1"), "ok");
    EXPECT_THAT(reader.ask("status"), HasSubstr("faults: lookup-answer-stalled, delay-ms=1"));
    client.ask(bulkWrite(1, frames::LOOKUP), 48);
    EXPECT_EQ(replies(client.ask(bulkRead(2, 15), 48))[0].status, -32);
    EXPECT_EQ(reader.ask("faults"), "ok");
    EXPECT_EQ(client.exchange(frames::LOOKUP, 15), frames::LOOKUP_ANSWER);
    EXPECT_THAT(reader.ask("status"), HasSubstr("faults: none"));
}

TEST(VirtualReaderProgram, FaultsThatNoClientCanSeeAreReported)
{
    VirtualReader reader({"--fault", "claimed-elsewhere"});
    EXPECT_TRUE(reader.waitForError("no client will see claimed-elsewhere"));
    EXPECT_EQ(reader.ask("faults permission-denied, no-card, claimed-elsewhere, open-fails=1"),
              "ok but no client will see open-fails, permission-denied, claimed-elsewhere: who may "
              "open or claim the reader is decided by the machine that it is attached to");
}

TEST(VirtualReaderProgram, Status_ShowsWhatTheCommandsBeforeHaveMadeOfIt)
{
    VirtualReader reader;
    const struct {
        const char *command;
        const char *answer; ///< how it begins
        const char *status; ///< after it
    } steps[] = {
        {"help", "ok card NAME|FILE, take, faults [LIST], ",
         "plugged in, not attached, card: none, faults: none"},
        {"card resident", "ok", "plugged in, not attached, card: resident, faults: none"},
        {"faults no-card=2", "ok", "plugged in, not attached, card: resident, faults: no-card=2"},
        {"faults no-card=3, delay-ms=1", "ok",
         "plugged in, not attached, card: resident, faults: no-card=3, delay-ms=1"},
        {"faults delay-ms=-1", "error: fault \"delay-ms=-1\" is not of the form delay-ms=N",
         "plugged in, not attached, card: resident, faults: no-card=3, delay-ms=1"},
        {"card no\x1bsuch", "error: no\\u001Bsuch: is neither a built-in card nor a file",
         "plugged in, not attached, card: resident, faults: no-card=3, delay-ms=1"},
        {"take now", R"(error: take takes no argument "now"; give "take" alone)",
         "plugged in, not attached, card: resident, faults: no-card=3, delay-ms=1"},
        {"faults", "ok", "plugged in, not attached, card: resident, faults: none"},
        {"unplug", "ok", "unplugged, not attached, card: resident, faults: none"},
        {"plug", "ok", "plugged in, not attached, card: resident, faults: none"},
        {"card hmt-macao", "ok", "plugged in, not attached, card: hmt-macao, faults: none"},
        {"take", "ok", "plugged in, not attached, card: none, faults: none"},
        {"card", "error: card needs an argument: \"card NAME|FILE\"",
         "plugged in, not attached, card: none, faults: none"},
    };
    for (const auto &step : steps) {
        EXPECT_THAT(reader.ask(step.command), StartsWith(step.answer));
        EXPECT_EQ(reader.ask("status"), std::string("ok ") + step.status) << step.command;
    }
}

TEST(VirtualReaderProgram, UnplugClosesTheConnectionAndPlugLetsAttachAgain)
{
    VirtualReader reader;
    Client client(reader.port());
    client.attach();
    EXPECT_THAT(reader.ask("status"), StartsWith("ok plugged in, attached,"));
    EXPECT_EQ(reader.ask("unplug"), "ok");
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_THAT(reader.ask("status"), StartsWith("ok unplugged, not attached,"));
    EXPECT_EQ(Client(reader.port()).ask(importRequest(), 8), hex("01 11 00 03 00 00 00 04"));
    EXPECT_EQ(reader.ask("plug"), "ok");
    Client(reader.port()).attach();
}

TEST(VirtualReaderProgram, FaultThatUnplugsClosesTheConnection)
{
    VirtualReader reader;
    Client client(reader.port());
    client.attach();
    EXPECT_EQ(reader.ask("faults unplugged"), "ok");
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_THAT(reader.ask("plug"), StartsWith("error: the fault \"unplugged\""));
}

TEST(VirtualReaderProgram, EveryCommandIsAnsweredByOneLineAndBlankLinesAreNone)
{
    VirtualReader reader({"--until-end-of-input"});
    reader.write("\n  \nstatus\r\n\nunknown\x1b[2J" + QByteArray(100, 'x') + "\nstatus\n");
    EXPECT_THAT(reader.nextLine().toStdString(), StartsWith("ok plugged in"));
    EXPECT_THAT(reader.nextLine().toStdString(),
                StartsWith("error: there is no command \"unknown\\u001B[2J" + std::string(49, 'x') +
                           "\"; the commands are card NAME|FILE, take,"));
    EXPECT_THAT(reader.nextLine().toStdString(), StartsWith("ok plugged in"));
    const ProcessResult run = reader.result();
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty()) << "the end of the input is no line";
}

TEST(VirtualReaderProgram, LineOfMoreThan65536Bytes_IsRefusedAsOneAndTheNextIsServed)
{
    const QByteArray blanks(65536 - 6, ' ');
    VirtualReader reader({"--until-end-of-input"});
    EXPECT_THAT(reader.ask("status" + blanks), StartsWith("ok plugged in"));
    EXPECT_THAT(reader.ask("status " + blanks), StartsWith("error: the line is longer than 65536"));
    EXPECT_THAT(reader.ask(QByteArray(200000, 'x')), StartsWith("error: the line is longer than"));
    EXPECT_THAT(reader.ask("status"), StartsWith("ok plugged in"));
    reader.write(QByteArray(200000, 'x')); // a last line without an end
    const ProcessResult run = reader.result();
    EXPECT_THAT(run.output(), StartsWith("error: the line is longer than"));
    expectEnd(run, 0);
}

TEST(VirtualReaderProgram, StaysAfterTheEndOfInput)
{
    VirtualReader reader;
    reader.write("status"); // a last line without an end
    reader.closeStandardInput();
    EXPECT_THAT(reader.nextLine().toStdString(), StartsWith("ok plugged in"));
    Client(reader.port()).attach();
}

TEST(VirtualReaderProgram, InterruptionEndsItInGoodOrder)
{
    for (const int number : {SIGINT, SIGTERM}) {
        VirtualReader reader;
        Client client(reader.port());
        client.attach();
        reader.signal(number);
        EXPECT_TRUE(client.isClosedByServer());
        const ProcessResult run = reader.result();
        EXPECT_TRUE(run.finished) << number;
        EXPECT_EQ(run.exitStatus, 0) << number;
    }
}

TEST(VirtualReaderProgram, InTheBackgroundOfAScript_StaysWhenCtrlCIsPressed)
{
    const auto handler = std::signal(SIGINT, SIG_IGN); // as the shell does for what it starts there
    VirtualReader reader;
    std::signal(SIGINT, handler);
    reader.signal(SIGINT);
    EXPECT_THAT(reader.ask("status"), StartsWith("ok plugged in"));
    reader.signal(SIGINT);
    EXPECT_EQ(reader.ask("quit\nstatus"), "ok");
    EXPECT_EQ(reader.nextLine(), "") << "nothing is answered after quit";
    const ProcessResult run = reader.result();
    expectEnd(run, 0);
}

TEST(VirtualReaderProgram, InTheBackgroundOfATerminal_IsNotStoppedThoughItReadsFromThere)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "a shell cannot start what the emulator runs";
    const QString command = QStringLiteral("set -m; %1/%2 --port 0 & echo $!; wait $!")
                                .arg(IDCARD_BUILD_BIN_DIR, PROGRAM);
    RunningProcess terminal("/usr/bin/script", {"-qec", command, "/dev/null"});
    const int reader = terminal.nextLine().trimmed().toInt();
    ASSERT_GT(reader, 0);
    const QByteArray line = terminal.nextLine().trimmed();
    EXPECT_THAT(line.toStdString(), StartsWith("ok listening on "));
    terminal.write("typed for another program\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    Client(line.mid(line.lastIndexOf(' ') + 1).toUShort()).attach();
    EXPECT_EQ(::kill(reader, SIGTERM), 0);
    ::kill(reader, SIGCONT);
    EXPECT_TRUE(terminal.result().finished);
}

TEST(VirtualReaderProgram, EndsQuietlyBySigpipeWhenNobodyTakesItsAnswers)
{
    VirtualReader reader;
    reader.closeStandardOutput();
    reader.write("status\n");
    const ProcessResult run = reader.result();
    EXPECT_EQ(run.signal, SIGPIPE);
    EXPECT_THAT(run.error(), IsEmpty());
}

TEST(VirtualReaderProgram, TakenPortIsReportedWithWhatToDo)
{
    const VirtualReader first;
    const ProcessResult run = runProcess(PROGRAM, {"--port", QString::number(first.port())});
    expectEnd(run, 1, "choose another with --port");
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST(VirtualReaderProgram, WrongUsageEndsWithTwoAndNamesTheValue)
{
    const std::vector<std::pair<QStringList, const char *>> wrong = {
        {{"--port", "65536"}, "65536"},
        {{"--port", "x"}, "\"x\""},
        {{"--listen", "localhorst"}, "localhorst"},
        {{"--device", "1209"}, "\"1209\""},
        {{"--device", "1209:00001"}, "1209:00001"},
        {{"--card", "no-such-card"}, "no-such-card"},
        {{"--card", " "}, "--card"},
        {{"--fault", "no-such-fault"}, "no-such-fault"},
        {{"--port", "1", "--port", "2"}, "only once"},
        {{"--fault", ""}, "--fault takes faults separated by commas, not \"\"."},
        {{"--unknown"}, "has no option --unknown.\n"},
        {{"--prot", "1"}, "idcard-virtual-reader has no option --prot; did you mean --port?"},
        {{"argument"}, "argument"},
    };
    for (const auto &[arguments, part] : wrong) {
        const ProcessResult run = runProcess(PROGRAM, arguments);
        EXPECT_EQ(run.exitStatus, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(run.output(), IsEmpty());
        EXPECT_THAT(run.error(), StartsWith("idcard-virtual-reader: "));
        EXPECT_THAT(run.error(), HasSubstr(part));
    }
}

TEST(VirtualReaderProgram, HelpAndVersion_NameOptionsCommandsAndFaults)
{
    const ProcessResult run = runProcess(PROGRAM, {"--help"});
    EXPECT_EQ(run.exitStatus, 0);
    for (const char *part : {"--until-end-of-input", "card NAME|FILE", "E-answer-cut=N",
                             "usbip attach -r", "Exit status"})
        EXPECT_THAT(run.output(), HasSubstr(part));
    EXPECT_EQ(runProcess(PROGRAM, {"-h"}).standardOutput, run.standardOutput);
    EXPECT_THAT(runProcess(PROGRAM, {"--version"}).output(), StartsWith("idcard-virtual-reader "));
    for (const QByteArray &line : run.standardOutput.split('\n'))
        EXPECT_LE(line.size(), 79) << line.toStdString();
}

} // namespace
