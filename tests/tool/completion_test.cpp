// Completion of idcard-reader in bash: what is offered is what the program takes.

#include <gmock/gmock.h>

#include <QRegularExpression>

#include "simulator/card/card_library.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

// What bash does when the key is pressed at the end of the line $1.
constexpr const char *COMPLETE = R"(
source /usr/share/bash-completion/bash_completion
source "$SCRIPT"
compopt() { :; }
COMP_LINE=$1 COMP_POINT=${#1}
read -ra COMP_WORDS <<< "${1//:/ : }"
[[ $1 == *' ' ]] && COMP_WORDS+=('')
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_idcard_reader idcard-reader
printf '%s\n' "${COMPREPLY[@]}"
)";

class Completion : public FolderTest, public usb_test::ReaderOnBus
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
            GTEST_SKIP() << "the shell would start a program of another processor";
    }

    std::vector<std::string> offered(const QString &line)
    {
        ProcessInput input;
        input.workingDirectory = path(QString());
        input.environment = bus().childEnvironment();
        input.environment["SCRIPT"] =
            QStringLiteral(IDCARD_SOURCE_DIR "/packaging/completion/idcard-reader");
        input.environment["PATH"] =
            QStringLiteral(IDCARD_BUILD_BIN_DIR ":") + qEnvironmentVariable("PATH");
        // The shell and its tools leave memory to the system at their ends.
        input.environment["ASAN_OPTIONS"] =
            QStringList({qEnvironmentVariable("ASAN_OPTIONS"), "detect_leaks=0"}).join(':');
        const ProcessResult run =
            runProcess("/bin/bash", {"--norc", "-c", QLatin1String(COMPLETE), "bash", line}, input);
        EXPECT_TRUE(run.finished);
        EXPECT_THAT(run.error(), IsEmpty());
        std::vector<std::string> words;
        for (const QString &word : QString::fromUtf8(run.standardOutput).split('\n')) {
            if (!word.isEmpty())
                words.push_back(word.toStdString());
        }
        return words;
    }
};

std::vector<std::string> optionsOf(const QString &command)
{
    static const QRegularExpression option(QStringLiteral("^  (?:-h, )?(--[a-z-]+)"),
                                           QRegularExpression::MultilineOption);
    const QString help = QString::fromUtf8(runTool({"help", command}).standardOutput);
    std::vector<std::string> names;
    auto matches = option.globalMatch(help);
    while (matches.hasNext())
        names.push_back(matches.next().captured(1).toStdString());
    return names;
}

TEST_F(Completion, CommandsAreOffered)
{
    EXPECT_THAT(offered("idcard-reader "),
                ElementsAre("help", "--help", "--version", "read", "watch", "usb", "decode",
                            "render", "cards", "doctor"));
    EXPECT_THAT(offered("idcard-reader help de"), ElementsAre("decode"));
    EXPECT_THAT(offered("idcard-reader help decode "), IsEmpty());
}

TEST_F(Completion, OptionsAreThoseOfTheCommand)
{
    for (const char *command : {"read", "watch", "usb", "decode", "render", "cards", "doctor"})
        EXPECT_THAT(offered(QStringLiteral("idcard-reader %1 --").arg(command)),
                    ElementsAreArray(optionsOf(command)))
            << command;
}

TEST_F(Completion, CardsAreThoseOfTheSimulatorAndFiles)
{
    std::vector<std::string> names;
    for (const QString &name : simulator::builtInCardNames())
        names.push_back(name.toStdString());
    EXPECT_THAT(offered("idcard-reader read --simulate "), ElementsAreArray(names));
    writeFile(path("visitor.json"), "");
    EXPECT_THAT(offered("idcard-reader render vis"), ElementsAre("visitor.json"));
    EXPECT_THAT(offered("idcard-reader decode v"), ElementsAre("visitor.json"));
}

TEST_F(Completion, EveryFaultThatIsOfferedIsTaken)
{
    const std::vector<std::string> faults = offered("idcard-reader read --fault ");
    EXPECT_THAT(faults, Contains("no-card"));
    EXPECT_EQ(faults.size(), simulator::faultRules(simulator::Road::MAKERS_LIBRARY).size());
    for (const std::string &fault : faults) {
        const QString word = QString::fromStdString(fault) + (fault.back() == '=' ? "2" : "");
        EXPECT_NE(runTool({"read", "--simulate", "resident", "--fault", word}).exitStatus, 2)
            << fault;
    }
}

TEST_F(Completion, ListsGoOnBehindAComma)
{
    EXPECT_THAT(offered("idcard-reader read --fault delay-ms=2,unk"),
                ElementsAre("delay-ms=2,unknown-kind"));
    EXPECT_THAT(offered("idcard-reader read --inline photo,f"), ElementsAre("photo,fingerprints"));
}

TEST_F(Completion, DevicesAreThoseOnTheBus)
{
    plugIn({});
    EXPECT_THAT(offered("idcard-reader usb --device "), ElementsAre("1209:0001"));
    // Bash takes the colon for the end of a word, so the part before it is on the line already.
    EXPECT_THAT(offered("idcard-reader usb --device 1209:0"), ElementsAre("0001"));
}

TEST_F(Completion, HasNothingForWhatTakesNoValue)
{
    EXPECT_THAT(offered("idcard-reader read --json "), IsEmpty());
    EXPECT_THAT(offered("idcard-reader read --wait "), IsEmpty());
    EXPECT_THAT(offered("idcard-reader no-such-command --"), IsEmpty());
}

} // namespace
