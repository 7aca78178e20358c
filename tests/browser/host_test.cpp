// The browser's host as a program: a browser's pipes, an administrator's list and the tool.

#include <csignal>
#include <cstring>

#include <gmock/gmock.h>

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include "apps/browser_host/browser_failure.h"
#include "simulator/card/card_library.h"
#include "tests/support/cancelled_thread.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

namespace
{

using testing::HasSubstr;

const QString EXTENSION = QStringLiteral("chrome-extension://ojdlmaapepnmfpiapikmeghcbbbdeipm/");
constexpr int MEBIBYTE = 1024 * 1024;
constexpr int SOON_MS = 20000;
constexpr int TIME_TO_START_S = 4; ///< a shell, on a machine with much to do

QByteArray header(int length)
{
    const auto count = static_cast<quint32>(length);
    return {reinterpret_cast<const char *>(&count), sizeof count};
}

QByteArray frame(const QByteArray &body)
{
    return header(body.size()) + body;
}

QByteArray frame(const QJsonObject &object)
{
    return frame(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QJsonObject pageRequest(const QStringList &include = {}, int timeout = 10,
                        const QString &language = "en")
{
    return {{"include", QJsonArray::fromStringList(include)},
            {"timeout", timeout},
            {"language", language}};
}

QJsonObject requestOf(const QString &origin, const QJsonObject &page = pageRequest())
{
    return {{"origin", origin}, {"request", page}};
}

/** Of a site that may read cards. */
QByteArray goodRequest(const QJsonObject &page = pageRequest())
{
    return frame(requestOf("https://pms.example", page));
}

void expectGoneSoon(int process)
{
    waitUntil([process] { return !isRunning(process); });
}

/** A browser's side of the host. */
class Host
{
public:
    Host(const ProcessInput &input, const QStringList &arguments,
         const QString &program = "browser_host_elsewhere")
        : m_process(program, arguments, input)
    {
    }

    void write(const QByteArray &bytes) { m_process.write(bytes); }

    QJsonObject answer()
    {
        const QByteArray length = m_process.nextBytes(4);
        if (length.size() < 4)
            return {};
        quint32 count = 0;
        std::memcpy(&count, length.constData(), sizeof count);
        EXPECT_LE(count, static_cast<quint32>(MEBIBYTE));
        return parsedObject(m_process.nextBytes(static_cast<int>(count)));
    }
    QJsonObject error() { return answer()["error"].toObject(); }
    std::string errorName() { return error()["name"].toString().toStdString(); }
    QJsonObject answerTo(const QByteArray &bytes)
    {
        write(bytes);
        return answer();
    }
    QJsonObject errorOf(const QByteArray &bytes) { return answerTo(bytes)["error"].toObject(); }

    RunningProcess &process() { return m_process; }

private:
    RunningProcess m_process;
};

class BrowserHostTest : public FolderTest
{
protected:
    BrowserHostTest() { setList("https://pms.example\n"); }

    void setList(const QByteArray &content) { writeFile(list(), content); }
    QString list() const { return path("origins"); }

    /** A program in the place of the tool. */
    void setTool(const QByteArray &script)
    {
        writeFile(tool(), "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(::chmod(QFile::encodeName(tool()).constData(), 0755), 0);
    }
    /** The real one, with this card on the simulator. */
    void setCard(const QByteArray &card, const QByteArray &faults = {})
    {
        setTool("exec " IDCARD_BUILD_BIN_DIR "/idcard-reader \"$@\" --simulate " + card +
                (faults.isEmpty() ? "" : " --fault " + faults));
    }
    /** One that does nothing until it is ended. */
    void setSleepingTool(const char *streams = "")
    {
        setTool("echo $$ > " + path("pid").toUtf8() + "; exec sleep 600" + streams);
    }
    /** One that goes on when it is to end. */
    void setDeafTool()
    {
        setTool("trap '' TERM; echo $$ > " + path("pid").toUtf8() +
                "; while :; do sleep 0.1; done");
    }
    int toolProcess() const
    {
        waitUntil(
            [this] { return QFile::exists(path("pid")) && readFile(path("pid")).endsWith('\n'); });
        return readFile(path("pid")).trimmed().toInt();
    }
    QString tool() const { return path("tool"); }

    Host host(const QStringList &arguments = {EXTENSION}, uid_t listOwner = ::getuid()) const
    {
        ProcessInput input;
        input.environment = {{"TEST_ORIGIN_LIST", list()},
                             {"TEST_LIST_OWNER", QString::number(listOwner)},
                             {"TEST_TOOL", tool()},
                             {"TEST_GRACE_MS", QString::number(m_graceMs)},
                             {"XDG_RUNTIME_DIR", m_runtimeFolder}};
        return {input, arguments};
    }

    /** What the host has noted for the doctor. */
    QJsonObject lastAnswer() const
    {
        return parsedObject(readFile(path("idcard-reader-browser.json")));
    }

    int m_graceMs = 60000;
    QString m_runtimeFolder;
};

class BrowserHostWithTool : public BrowserHostTest
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
            GTEST_SKIP() << "Left out: the host cannot start what the emulator runs";
    }
};

} // namespace

TEST_F(BrowserHostWithTool, ListedSite_GetsTheJsonOfTheTool)
{
    setCard("resident");
    Host browser = host();
    const QJsonObject card = browser.answerTo(goodRequest(pageRequest({"photo", "pictures"})));
    EXPECT_EQ(card, parsedObject(runTool({"read", "--json", "--inline", "photo,pictures",
                                          "--simulate", "resident"})
                                     .standardOutput));
    EXPECT_FALSE(card["photo"].toObject()["data"].toString().isEmpty());
    EXPECT_FALSE(card["fingerprints"].toObject().contains("data"));
}

TEST_F(BrowserHostWithTool, RequestsOneAfterTheOther_AreAllAnswered)
{
    setCard("resident");
    Host browser = host();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "resident") << i;
    browser.process().closeStandardInput();
    EXPECT_TRUE(browser.process().endsWithin(SOON_MS));
}

TEST_F(BrowserHostWithTool, FailureOfTheTool_ComesInThePagesLanguage)
{
    setCard("resident", "no-card");
    Host browser = host();
    EXPECT_EQ(browser.errorOf(goodRequest())["headline"], "No card was found on the reader.");
    const QJsonObject error = browser.errorOf(goodRequest(pageRequest({}, 10, "zh-CN")));
    EXPECT_EQ(error["name"], "IDCARD_RESULT_NO_CARD");
    EXPECT_THAT(error["headline"].toString().toStdString(), HasSubstr("卡"));
}

TEST_F(BrowserHostWithTool, ReadingThatDoesNotEnd_EndsAtThePagesTime)
{
    setCard("resident", "transient-failures=1000000");
    EXPECT_EQ(host().errorOf(goodRequest(pageRequest({}, 1)))["name"], "TOOL_READ_TIMED_OUT");
}

TEST_F(BrowserHostWithTool, CommandOfTheTool_IsThatOfTheRequest)
{
    setTool(R"(printf '{"arguments": "%s", "language": "%s"}' "$*" "$LANGUAGE")");
    Host browser = host();
    const QJsonObject plain = browser.answerTo(goodRequest());
    EXPECT_EQ(plain["arguments"], "read --json --timeout 10");
    EXPECT_EQ(plain["language"], "en");
    const QJsonObject full =
        browser.answerTo(goodRequest(pageRequest({"pictures"}, 3, "zh-Hans-CN")));
    EXPECT_EQ(full["arguments"], "read --json --timeout 3 --inline pictures");
    EXPECT_EQ(full["language"], "zh_Hans_CN");
}

TEST_F(BrowserHostWithTool, LargestCardOfTheSimulator_IsFarBelowTheLimitOfBrowsers)
{
    int largest = 0;
    for (const char *card :
         {"hmt-longest-texts", "foreign-new-longest-name", "resident-longest-texts"}) {
        setCard(card);
        const QJsonObject answer = host().answerTo(goodRequest(pageRequest({"photo", "pictures"})));
        largest = std::max(largest, QJsonDocument(answer).toJson(QJsonDocument::Compact).size());
    }
    RecordProperty("largest", largest);
    EXPECT_GT(largest, MEBIBYTE / 20);
    EXPECT_LT(largest, MEBIBYTE / 4);
}

// Who may ask.

TEST_F(BrowserHostTest, SiteThatIsNotListedToTheLetter_IsRefused)
{
    setSleepingTool();
    setList("https://pms.example\nhttp://intranet:8080\n");
    Host browser = host();
    for (const char *origin :
         {"http://pms.example", "https://pms.example:8443", "https://www.pms.example",
          "https://pms.example.evil.example", "https://pmsxexample", "https://PMS.example",
          "https://pms.example/", "https://pms.example:443", "null", "http://intranet",
          "https://intranet:8080", "http://intranet:80800", "# the counter",
          "https://pms.example\n"}) {
        const QJsonObject error = browser.errorOf(frame(requestOf(origin)));
        EXPECT_EQ(error["name"], "BROWSER_ORIGIN_NOT_LISTED") << origin;
        EXPECT_EQ(error["code"], QJsonValue());
        EXPECT_EQ(error["exitStatus"], 1);
    }
    EXPECT_FALSE(QFile::exists(path("pid")));
    EXPECT_EQ(browser.errorOf(frame(requestOf("https://evil.example")))["cause"],
              "https://evil.example is not in " + list() + ".");
}

TEST_F(BrowserHostTest, RefusalInChinese_IsTranslated)
{
    const QJsonObject error =
        host().errorOf(frame(requestOf("https://evil.example", pageRequest({}, 10, "zh-CN"))));
    EXPECT_EQ(error["headline"], "此网站不得在本机读卡。");
}

TEST_F(BrowserHostWithTool, ListChangedWhileItRuns_CountsFromTheNextRequest)
{
    setTool(R"(echo '{"kind": "none"}')");
    Host browser = host();
    EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "none");
    setList("");
    EXPECT_EQ(browser.errorOf(goodRequest())["name"], "BROWSER_ORIGIN_NOT_LISTED");
}

TEST_F(BrowserHostTest, ListThatCannotBeTrusted_IsRefused)
{
    setSleepingTool();
    EXPECT_EQ(host({EXTENSION}, ::getuid() + 1).errorOf(goodRequest())["name"],
              "BROWSER_LIST_REFUSED");
    setList("https://pms.example\nhttps://*.example\n");
    EXPECT_THAT(host().errorOf(goodRequest())["cause"].toString().toStdString(),
                HasSubstr("/origins, line 2: "));
    ASSERT_TRUE(QFile::remove(list()));
    EXPECT_EQ(host().errorOf(goodRequest())["name"], "BROWSER_LIST_REFUSED");
    EXPECT_FALSE(QFile::exists(path("pid")));
}

TEST_F(BrowserHostWithTool, ExtensionInFirefox_IsServed)
{
    setTool(R"(echo '{"kind": "none"}')");
    Host browser = host({"/usr/lib/mozilla/host.json", "browser@idcard-reader.invalid"});
    EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "none");
}

TEST_F(BrowserHostTest, OtherExtensions_AreRefusedAtOnce)
{
    for (const QStringList &arguments :
         {QStringList{}, QStringList{"chrome-extension://aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/"},
          QStringList{EXTENSION, EXTENSION}, QStringList{EXTENSION.chopped(1)},
          QStringList{"--help"}, QStringList{"browser@idcard-reader.invalid"},
          QStringList{"host.json", "other@idcard-reader.invalid"},
          QStringList{EXTENSION, "host.json", "browser@idcard-reader.invalid"}}) {
        Host browser = host(arguments);
        EXPECT_EQ(browser.errorName(), "BROWSER_EXTENSION_UNKNOWN");
        EXPECT_EQ(browser.process().result().exitStatus, 2);
    }
}

// What a page may send.

TEST_F(BrowserHostTest, WrongRequest_IsRefusedAndTheNextOneAnswered)
{
    Host browser = host();
    QJsonObject page = pageRequest();
    page["origin"] = "https://pms.example";
    EXPECT_EQ(browser.errorOf(frame(requestOf("https://evil.example", page)))["cause"],
              "There is no key \"origin\".");
    EXPECT_EQ(browser.errorOf(goodRequest(pageRequest({"fingerprints"})))["name"],
              "BROWSER_REQUEST_WRONG");
    EXPECT_EQ(browser.errorOf(frame(QByteArray("no JSON")))["name"], "BROWSER_REQUEST_WRONG");
    EXPECT_EQ(browser.errorOf(frame(QByteArray()))["name"], "BROWSER_REQUEST_WRONG");
    EXPECT_EQ(browser.errorOf(frame(requestOf("https://evil.example")))["name"],
              "BROWSER_ORIGIN_NOT_LISTED");
}

TEST_F(BrowserHostTest, RequestBeyondTheLimit_IsRefusedAndTheLastOne)
{
    setTool(R"(echo '{"kind": "none"}')");
    Host browser = host();
    browser.write(header(8193));
    EXPECT_EQ(browser.error()["cause"], "A request has at most 8192 bytes.");
    browser.write(goodRequest());
    const ProcessResult rest = browser.process().result();
    EXPECT_EQ(rest.output(), "");
    EXPECT_EQ(rest.exitStatus, 0);
}

// A browser that cannot write the whole request takes the host for broken.
TEST_F(BrowserHostTest, RequestFarBeyondTheLimit_IsTakenToItsEnd)
{
    constexpr int SIZE = 20 * MEBIBYTE;
    Host browser = host();
    browser.write(header(SIZE) + QByteArray(SIZE / 2, 'x'));
    EXPECT_EQ(browser.error()["cause"], "A request has at most 8192 bytes.");
    EXPECT_FALSE(browser.process().endsWithin(500));
    browser.write(QByteArray(SIZE / 2, 'x'));
    EXPECT_FALSE(browser.process().endsWithin(500));
    EXPECT_EQ(browser.process().result().exitStatus, 0);
}

TEST_F(BrowserHostWithTool, RequestAtTheLimit_IsAnswered)
{
    setTool(R"(echo '{"kind": "none"}')");
    QByteArray body = QJsonDocument(requestOf("https://pms.example")).toJson();
    body += QByteArray(8192 - body.size(), ' ');
    EXPECT_EQ(host().answerTo(frame(body))["kind"], "none");
}

TEST_F(BrowserHostWithTool, FloodDuringARead_IsRefusedOneByOneAndTheReadGoesOn)
{
    setTool("echo $$ > " + path("pid").toUtf8() + "; while [ ! -e " + path("go").toUtf8() +
            R"( ]; do sleep 0.02; done; echo '{"kind": "none"}')");
    Host browser = host();
    browser.write(goodRequest());
    ASSERT_GT(toolProcess(), 0);
    constexpr int MANY = 100;
    browser.write(goodRequest().repeated(MANY));
    for (int i = 0; i < MANY; ++i)
        ASSERT_EQ(browser.error()["cause"], "One request is answered at a time.") << i;
    writeFile(path("go"), "");
    EXPECT_EQ(browser.answer()["kind"], "none");
    EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "none");
}

// The end of the page or the browser.

TEST_F(BrowserHostWithTool, BrowserThatGoesDuringARead_EndsTheTool)
{
    setSleepingTool();
    Host browser = host();
    browser.write(goodRequest());
    const int tool = toolProcess();
    ASSERT_TRUE(isRunning(tool));
    browser.process().closeStandardInput();
    expectGoneSoon(tool);
    EXPECT_EQ(browser.process().result().exitStatus, 0);
}

TEST_F(BrowserHostWithTool, ToolThatDoesNotHeed_IsKilled)
{
    setDeafTool();
    Host browser = host();
    browser.write(goodRequest());
    const int tool = toolProcess();
    ASSERT_TRUE(isRunning(tool));
    browser.process().closeStandardInput();
    expectGoneSoon(tool);
}

TEST_F(BrowserHostWithTool, HostThatIsEnded_EndsTheTool)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        QFile::remove(path("pid"));
        setSleepingTool();
        Host browser = host();
        browser.write(goodRequest());
        const int tool = toolProcess();
        ASSERT_TRUE(isRunning(tool));
        browser.process().signal(signal);
        expectGoneSoon(tool);
    }
}

TEST_F(BrowserHostTest, BrowserThatNoLongerReads_EndsTheHost)
{
    Host browser = host();
    browser.process().closeStandardOutput();
    browser.write(frame(requestOf("https://evil.example")));
    EXPECT_TRUE(browser.process().endsWithin(SOON_MS));
}

// What is kept of an answer.

TEST_F(BrowserHostWithTool, LastAnswer_IsNotedWithItsSiteAndNothingOfTheCard)
{
    m_runtimeFolder = path("");
    setCard("resident");
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    Host first = host();
    EXPECT_EQ(first.answerTo(goodRequest())["kind"], "resident");
    EXPECT_EQ(first.process().result().exitStatus, 0);
    QJsonObject noted = lastAnswer();
    EXPECT_GE(QDateTime::fromString(noted.take("time").toString(), Qt::ISODate), before);
    EXPECT_EQ(noted, (QJsonObject{{"origin", "https://pms.example"}, {"result", "card"}}));

    Host second = host();
    EXPECT_EQ(second.errorOf(frame(requestOf("https://evil.example")))["exitStatus"], 1);
    EXPECT_EQ(second.process().result().exitStatus, 0);
    EXPECT_EQ(lastAnswer()["origin"], "https://evil.example");
    EXPECT_EQ(lastAnswer()["result"], "BROWSER_ORIGIN_NOT_LISTED");
    EXPECT_THAT(namesIn(path("")),
                testing::ElementsAre("idcard-reader-browser.json", "origins", "tool"));
}

TEST_F(BrowserHostWithTool, LastAnswerThatCannotBeNoted_ReachesThePageAllTheSame)
{
    m_runtimeFolder = path("tool"); // no folder
    setTool(R"(echo '{"kind": "none"}')");
    Host browser = host();
    EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "none");
    EXPECT_EQ(browser.answerTo(goodRequest())["kind"], "none");
}

// A tool that does not do its work.

TEST_F(BrowserHostWithTool, MissingTool_IsReportedWithItsPath)
{
    const QJsonObject error = host().errorOf(goodRequest());
    EXPECT_EQ(error["name"], "BROWSER_TOOL_NOT_STARTED");
    EXPECT_EQ(error["cause"], tool() + " could not be started: No such file or directory.");
}

TEST_F(BrowserHostWithTool, ToolThatCrashes_IsReported)
{
    setTool(R"(echo '{"kind": "none"}'; kill -SEGV $$)");
    const QJsonObject error = host().errorOf(goodRequest());
    EXPECT_EQ(error["name"], "BROWSER_TOOL_BROKEN");
    EXPECT_EQ(error["cause"], "It was ended by signal 11.");
}

TEST_F(BrowserHostWithTool, ToolThatPrintsNoObject_IsReported)
{
    for (const char *script :
         {"exit 3", "echo no JSON", "echo '[]'", "echo '{}'", "printf '{\"a\": 1'"}) {
        setTool(script);
        EXPECT_EQ(host().errorOf(goodRequest())["name"], "BROWSER_TOOL_BROKEN") << script;
    }
}

TEST_F(BrowserHostWithTool, ToolThatHangs_IsEndedAndReported)
{
    m_graceMs = 0;
    for (const char *streams : {"", " >&-"}) {
        QFile::remove(path("pid"));
        setSleepingTool(streams);
        Host browser = host();
        browser.write(goodRequest(pageRequest({}, TIME_TO_START_S)));
        const int tool = toolProcess();
        const QJsonObject error = browser.error();
        EXPECT_EQ(error["name"], "BROWSER_TOOL_HANGS");
        EXPECT_EQ(error["exitStatus"], 11);
        EXPECT_FALSE(isRunning(tool));
    }
}

TEST_F(BrowserHostWithTool, ToolThatHangsAndDoesNotHeed_IsKilledAndReported)
{
    m_graceMs = 0;
    setDeafTool();
    Host browser = host();
    browser.write(goodRequest(pageRequest({}, TIME_TO_START_S)));
    const int tool = toolProcess();
    EXPECT_EQ(browser.errorName(), "BROWSER_TOOL_BROKEN");
    EXPECT_FALSE(isRunning(tool));
}

TEST_F(BrowserHostWithTool, AnswerUpToTheLimitOfBrowsers_IsGivenAndALongerOneReported)
{
    // {"a":"xx...x"}, at once: the tool has two seconds from the first byte to its end.
    const auto printing = [this](int size) {
        const QByteArray whole = path("whole").toUtf8();
        return R"((printf '{"a":"'; head -c )" + QByteArray::number(size - 8) +
               " /dev/zero | tr '\\0' x; printf '\"}') > " + whole + "; exec cat " + whole;
    };
    setTool(printing(MEBIBYTE));
    EXPECT_EQ(host().answerTo(goodRequest())["a"].toString().size(), MEBIBYTE - 8);
    for (const int size : {MEBIBYTE + 1, 4 * MEBIBYTE + 1, 64 * MEBIBYTE}) {
        setTool(printing(size));
        const QJsonObject error = host().errorOf(goodRequest());
        EXPECT_EQ(error["name"], "BROWSER_ANSWER_TOO_LONG") << size;
        EXPECT_EQ(error["cause"], "It is more than 1048576 bytes.");
    }
}

TEST_F(BrowserHostWithTool, Tool_GetsNoneOfTheHostsStreams)
{
    setTool("cat > " + path("input").toUtf8() + R"(; echo noise >&2; echo '{"kind": "none"}')");
    Host browser = host();
    browser.write(goodRequest() + goodRequest());
    EXPECT_EQ(browser.errorName(), "BROWSER_REQUEST_WRONG");
    EXPECT_EQ(browser.answer()["kind"], "none");
    EXPECT_EQ(readFile(path("input")), "");
    EXPECT_EQ(browser.process().result().error(), "");
}

// The shipped program.

TEST(BrowserHost, AsShipped_TakesRootsListAlone)
{
    Host shipped({{{"TEST_ORIGIN_LIST", "/dev/null"}, {"TEST_LIST_OWNER", "1"}}}, {EXTENSION},
                 IDCARD_BROWSER_HOST);
    const QJsonObject error = shipped.errorOf(frame(requestOf("https://not-allowed.example")));
    EXPECT_THAT(error["cause"].toString().toStdString(), HasSubstr(IDCARD_ORIGIN_LIST));
}

TEST(BrowserFailure, StandsInTheTableOnceInOrder)
{
    int index = 0;
    for (const app::BrowserFaultEntry &entry : app::browserFaultCatalogue()) {
        EXPECT_EQ(static_cast<int>(entry.fault), index++);
        EXPECT_THAT(entry.name, testing::StartsWith("BROWSER_"));
    }
}
