// What a program reports, as a structure and on a terminal.

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "apps/results/message.h"

using namespace app;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

const ResultEntry ENTRY = {-7,     "A_CONSTANT",          "It failed.",
                           "Why.", "What is to be done.", ExitStatus::READ_FAILED};

std::vector<std::string> linesOf(const Message &message)
{
    std::vector<std::string> lines;
    for (const QString &line : message.lines)
        lines.push_back(line.toStdString());
    return lines;
}

TEST(Message, OfAResult_LeadsWithWhatToDoThenCauseCodeAndDetails)
{
    const Message message = messageOf(ENTRY, {QStringLiteral("Device: 1209:0001")});
    EXPECT_EQ(message.headline.toStdString(), "It failed.");
    EXPECT_THAT(linesOf(message), ElementsAre("What to do: What is to be done.", "Cause: Why.",
                                              "Code: -7 (A_CONSTANT)", "Device: 1209:0001"));
}

TEST(Message, OfAnUnknownCode_NamesItAndSaysWhatToDo)
{
    const Message message = unknownCodeMessage(-77);
    EXPECT_THAT(message.headline.toStdString(),
                testing::AllOf(HasSubstr("the code -77,"), HasSubstr("Install")));
}

TEST(TerminalText, LinesAreIndentedUnderTheHeadline)
{
    EXPECT_EQ(terminalText(messageOf(ENTRY)).toStdString(), "It failed.\n"
                                                            "  What to do: What is to be done.\n"
                                                            "  Cause: Why.\n"
                                                            "  Code: -7 (A_CONSTANT)");
}

TEST(TerminalText, LongLinesAreBrokenAndIndentedFurther)
{
    const Message message{QStringLiteral("word ").repeated(20).trimmed(),
                          {QStringLiteral("more ").repeated(30).trimmed()}};
    const QStringList lines = terminalText(message).split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[1].startsWith(QLatin1String("  word")));
    EXPECT_TRUE(lines[2].startsWith(QLatin1String("  more")));
    EXPECT_TRUE(lines[3].startsWith(QLatin1String("    more")));
}

TEST(TerminalText, OfAHeadlineAlone_IsTheHeadline)
{
    const Message message{QStringLiteral("word ").repeated(20)};
    EXPECT_EQ(terminalText(message), message.headline);
}

} // namespace
