// The language of the programs: the user's by the environment, for people; what programs read is
// the same in every language.

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

using Variables = QMap<QString, QString>;

/** As of a desktop in Chinese on a system that has not that locale. */
const Variables CHINESE = {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "zh_CN"}};
const Variables ENGLISH = {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", ""}};

const QStringList COMMANDS = {"read", "watch", "usb", "decode", "render", "cards", "doctor"};

bool hasChinese(const QByteArray &text)
{
    return QString::fromUtf8(text).contains(QRegularExpression("\\p{Han}"));
}

/**
 * Words that no English sentence lacks for long. What stands in quotation marks or is a command on
 * a line of its own is what somebody types, and stays as it is.
 */
std::vector<std::string> englishWordsIn(const QByteArray &text)
{
    QString rest = QString::fromUtf8(text);
    rest.remove(QRegularExpression("“[^”]*”"));
    rest.remove(QRegularExpression("^ *(?:idcard-reader|ls|ln|apt-get|cp|export|udevadm|usermod|"
                                   "groupadd|\\S*/idcard-reader-access) .*$",
                                   QRegularExpression::MultilineOption));
    static const QRegularExpression word(
        "(?<![-/.\\w])(?:the|a|an|is|are|was|be|of|and|or|to|for|with|without|not|no|in|on|at|by|"
        "from|that|this|it|its|has|have|than|as|so|if|see|none|yes|what)(?![-/"
        "\\w=])",
        QRegularExpression::CaseInsensitiveOption);
    std::vector<std::string> words;
    auto found = word.globalMatch(rest);
    while (found.hasNext()) {
        const auto match = found.next();
        words.push_back(rest.mid(match.capturedStart() - 20, 60).toStdString());
    }
    return words;
}

ProcessResult runInChinese(const QStringList &arguments)
{
    return runTool(arguments, {CHINESE});
}

void expectChinese(const QByteArray &text)
{
    EXPECT_TRUE(hasChinese(text)) << text.toStdString();
    EXPECT_THAT(englishWordsIn(text), IsEmpty()) << text.toStdString();
}

/** Keys of an object and of all objects in it, each with those around it. */
QStringList keysOf(const QJsonValue &value, const QString &place = {})
{
    QStringList keys;
    if (value.isArray()) {
        for (const QJsonValue &element : value.toArray())
            keys << keysOf(element, place + "[]");
    }
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        keys << place + '/' + it.key() << keysOf(it.value(), place + '/' + it.key());
    return keys;
}

struct User {
    const char *name;
    Variables environment;
    bool isChinese;
};

void PrintTo(const User &user, std::ostream *stream)
{
    *stream << user.name;
}

class Language : public testing::TestWithParam<User>
{
};

TEST_P(Language, FailedReading_IsReportedInTheUsersLanguage)
{
    Variables environment = {{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", ""}, {"LANGUAGE", ""}};
    environment.insert(GetParam().environment);
    const ProcessResult run =
        runTool({"read", "--simulate", "resident", "--fault", "no-card"}, {environment});
    EXPECT_EQ(run.exitStatus, 4);
    EXPECT_EQ(hasChinese(run.standardError), GetParam().isChinese) << run.error();
    EXPECT_EQ(run.standardError.contains("What to do"), !GetParam().isChinese) << run.error();
}

INSTANTIATE_TEST_SUITE_P(
    Users, Language,
    testing::Values(User{"Locale", {{"LC_ALL", "zh_CN.UTF-8"}}, true},
                    User{"Lang", {{"LANG", "zh_CN.UTF-8"}}, true},
                    User{"Messages", {{"LANG", "C.UTF-8"}, {"LC_MESSAGES", "zh_CN.UTF-8"}}, true},
                    User{"Languages", {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "zh_CN:en"}}, true},
                    User{"Taiwan", {{"LANG", "zh_TW.UTF-8"}}, true},
                    User{"HongKong", {{"LANG", "zh_HK.UTF-8"}}, true}, User{"Nothing", {}, false},
                    User{"PlainLocale", {{"LC_ALL", "C"}, {"LANG", "zh_CN.UTF-8"}}, false},
                    User{"English", {{"LANG", "en_US.UTF-8"}}, false},
                    User{
                        "EnglishFirst", {{"LANG", "zh_CN.UTF-8"}, {"LANGUAGE", "en:zh_CN"}}, false},
                    User{"French", {{"LANG", "fr_FR.UTF-8"}}, false}),
    [](const testing::TestParamInfo<User> &user) { return user.param.name; });

TEST(InChinese, HelpOfEveryCommand_HasNoEnglishSentence)
{
    expectChinese(runInChinese({"help"}).standardOutput);
    for (const QString &command : COMMANDS)
        expectChinese(runInChinese({"help", command}).standardOutput);
    expectChinese(runProcess("idcard-virtual-reader", {"--help"}, {CHINESE}).standardOutput);
    expectChinese(runProcess("idcard-browser-setup", {"--help"}, {CHINESE}).standardOutput);
}

TEST(InChinese, LinesOfHelp_AreNoWiderThanATerminal)
{
    for (const QString &command : COMMANDS) {
        const QString help = QString::fromUtf8(runInChinese({"help", command}).standardOutput);
        for (QString line : help.split('\n')) {
            const int columns =
                line.size() +
                line.count(QRegularExpression("[\\p{Han}\\x{3000}-\\x{303F}\\x{FF01}-\\x{FF60}]"));
            EXPECT_LE(columns, 79) << line.toStdString();
        }
    }
}

TEST(InChinese, WrongCommandLine_IsRefusedWithoutAnEnglishSentence)
{
    for (const QStringList &arguments :
         {QStringList{},
          QStringList{"scan"},
          QStringList{"rea"},
          QStringList{"--json"},
          QStringList{"help", "read", "watch"},
          QStringList{"read", "--jso"},
          QStringList{"read", "--wait"},
          QStringList{"read", "--wait", "0"},
          QStringList{"read", "--json=3"},
          QStringList{"read", "--out", ""},
          QStringList{"read", "--wait", "1", "--wait", "2"},
          QStringList{"read", "--force"},
          QStringList{"read", "stray"},
          QStringList{"read", "--road", "air"},
          QStringList{"read", "--road", "usb", "--simulate", "resident"},
          QStringList{"read", "--device", "1209:0001"},
          QStringList{"read", "--device", "x"},
          QStringList{"usb", "--list", "--out", "x"},
          QStringList{"render"},
          QStringList{"render", "resident"},
          QStringList{"doctor", "--road", "library", "--device", "1209:0001"}}) {
        const ProcessResult run = runInChinese(arguments);
        EXPECT_EQ(run.exitStatus, 2) << arguments.join(' ').toStdString();
        expectChinese(run.standardError);
    }
}

TEST(InChinese, Failures_AreReportedWithoutAnEnglishSentence)
{
    for (const QStringList &arguments :
         {QStringList{"read", "--simulate", "resident", "--fault", "open-fails=1"},
          QStringList{"read", "--simulate", "resident", "--fault", "read-fails=1"},
          QStringList{"read", "--simulate", "resident", "--fault", "photo-undecodable"},
          QStringList{"read", "--simulate", "resident", "--fault", "unknown-kind"},
          QStringList{"read", "--simulate", "resident", "--fault", "earthquake"},
          QStringList{"read", "--simulate", "resident", "--fault", "no-cards"},
          QStringList{"read", "--simulate", "resident", "--fault", "unplugged"},
          QStringList{"read", "--simulate", "resident", "--fault", "read-fails"},
          QStringList{"read", "--simulate", "nobody"}, QStringList{"read", "--simulate", "residen"},
          QStringList{"read", "--simulate", "/dev/null"},
          QStringList{"read", "--simulate", "resident", "--out", "/dev/null"},
          QStringList{"read", "--simulate", "resident", "--out", "/proc/nowhere"},
          QStringList{"usb", "--device", "ffff:ffff"}, QStringList{"decode", "/dev/null"},
          QStringList{"decode", "/nowhere"}, QStringList{"decode", "/"}}) {
        const ProcessResult run = runInChinese(arguments);
        EXPECT_NE(run.exitStatus, 0) << arguments.join(' ').toStdString();
        expectChinese(run.standardError);
    }
}

class InChineseFolder : public FolderTest
{
protected:
    ProcessResult render(const QByteArray &description) const
    {
        writeFile(path("card.json"), description);
        return runInChinese({"render", path("card.json"), "--out", out()});
    }
};

TEST_F(InChineseFolder, RefusedDescription_IsExplainedWithoutAnEnglishSentence)
{
    for (const char *description :
         {"",
          "{",
          "[]",
          "{}",
          R"({"kind": "resident"})",
          R"({"kind": 1})",
          R"({"kind": "person"})",
          R"({"kind": "resident", "colour": 1})",
          R"({"kind": "resident", "sex": 1})",
          R"({"kind": "resident", "sex": "7"})",
          R"({"kind": "resident", "birthDate": "1990"})",
          R"({"kind": "resident", "birthDate": "19900231"})",
          R"({"kind": "resident", "validTo": "2030"})",
          R"({"kind": "resident", "fingerprints": 5})",
          R"({"kind": "resident", "photo": {}})",
          R"({"kind": "resident", "photo": {"delivery": "pigeon"}})",
          R"({"kind": "resident", "photo": {"delivery": "file", "file": "a/b"}})",
          R"({"kind": "resident", "photo": {"delivery": "bmp", "size": 1}})",
          R"({"kind": "resident", "faults": [1]})",
          R"({"kind": "resident", "faults": ["flood"]})",
          R"({"kind": "resident", "name": ""})",
          R"({"kind": "resident", "ethnicGroup": "x"})",
          R"({"kind": "resident", "name": "a\u0007"})",
          R"({"kind": "resident", "name": "aaaaaaaaaaaaaaaaaaaaaaaaaaa"})"}) {
        const ProcessResult run = render(description);
        EXPECT_EQ(run.exitStatus, 2) << description;
        expectChinese(run.standardError);
    }
}

TEST_F(InChineseFolder, CardWithNotes_IsShownWithChineseLabels)
{
    const ProcessResult run =
        runInChinese({"read", "--simulate", "foreign-2017-unknown-nationality", "--out", out()});
    EXPECT_EQ(run.exitStatus, 0);
    for (const char *label : {"证件种类", "国籍", "照片", "提示", "已保存为"})
        EXPECT_THAT(run.output(), HasSubstr(label));
}

TEST_F(InChineseFolder, OccupiedFolder_IsReportedWithoutAnEnglishSentence)
{
    const QStringList arguments = {"read", "--simulate", "resident", "--out", out()};
    EXPECT_EQ(runInChinese(arguments).exitStatus, 0);
    const ProcessResult again = runInChinese(arguments);
    EXPECT_EQ(again.exitStatus, 7);
    expectChinese(again.standardError);
}

TEST(InChinese, DoctorsReport_HasNoEnglishSentence)
{
    for (const char *road : {"library", "usb"}) {
        const ProcessResult run = runInChinese({"doctor", "--road", road});
        EXPECT_THAT(run.output(), HasSubstr("正常"));
        expectChinese(run.standardOutput);
    }
}

TEST(InChinese, UnwritableOutput_IsReportedAfterTheApplicationHasGone)
{
    ProcessInput input{CHINESE};
    input.standardOutputFile = "/dev/full";
    const ProcessResult run = runTool({"cards"}, input);
    EXPECT_EQ(run.exitStatus, 1);
    expectChinese(run.standardError);
}

TEST(Json, InEveryLanguage_HasTheSameKeysNamesAndCodes)
{
    for (const QStringList &arguments :
         {QStringList{"read", "--simulate", "foreign-2017-unknown-nationality", "--json"},
          QStringList{"read", "--simulate", "resident", "--fault", "no-card", "--json"},
          QStringList{"cards", "--json"}, QStringList{"usb", "--list", "--json"},
          QStringList{"doctor", "--road", "usb", "--json"}}) {
        const auto parsed = [&](const Variables &environment) {
            const QJsonDocument document =
                QJsonDocument::fromJson(runTool(arguments, {environment}).standardOutput);
            return document.isArray() ? QJsonValue(document.array())
                                      : QJsonValue(document.object());
        };
        const QJsonValue english = parsed(ENGLISH);
        const QJsonValue chinese = parsed(CHINESE);
        EXPECT_EQ(keysOf(chinese), keysOf(english)) << arguments.join(' ').toStdString();
        const QJsonObject error = chinese["error"].toObject();
        for (const char *key : {"name", "code", "exitStatus"})
            EXPECT_EQ(error[key], english["error"][key]);
        EXPECT_EQ(chinese["notes"], english["notes"]);
        EXPECT_EQ(chinese["kind"], english["kind"]);
        EXPECT_EQ(chinese["findings"][0]["level"], english["findings"][0]["level"]);
    }
}

TEST(Json, ErrorInChinese_HasTextsInChinese)
{
    const ProcessResult run =
        runInChinese({"read", "--simulate", "resident", "--fault", "no-card", "--json"});
    const QJsonObject error = parsedObject(run.standardOutput)["error"].toObject();
    for (const char *key : {"headline", "cause", "remedy"})
        expectChinese(error[key].toString().toUtf8());
}

TEST(InEnglish, Texts_HaveNoChinese)
{
    const auto inEnglish = [](const QStringList &arguments) {
        const ProcessResult run = runTool(arguments, {ENGLISH});
        return run.standardOutput + run.standardError;
    };
    for (const QString &command : COMMANDS)
        EXPECT_FALSE(hasChinese(inEnglish({"help", command}))) << command.toStdString();
    for (const QStringList &arguments :
         {QStringList{"help"}, QStringList{"read", "--jso"},
          QStringList{"read", "--simulate", "resident", "--fault", "no-card"},
          QStringList{"read", "--simulate", "nobody"}, QStringList{"doctor", "--road", "usb"},
          QStringList{"decode", "/nowhere"}, QStringList{"usb", "--list"}})
        EXPECT_FALSE(hasChinese(inEnglish(arguments))) << arguments.join(' ').toStdString();
}

} // namespace
