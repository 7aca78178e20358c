// The generated udev rule as a file: every key, operator and value, and the group that it names.

#include <gmock/gmock.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include "tests/support/files.h"

using testing::ElementsAre;

namespace
{

/** The lines of a file that are neither blank nor comments. */
QStringList linesOf(const char *path)
{
    QStringList lines;
    for (const QString &line : QString::fromUtf8(readFile(path)).split('\n')) {
        if (!line.trimmed().isEmpty() && !line.startsWith('#'))
            lines << line;
    }
    return lines;
}

std::string ruleLine()
{
    const QStringList lines = linesOf(IDCARD_RULE_FILE);
    EXPECT_EQ(lines.size(), 1);
    return lines.value(0).toStdString();
}

/** The value of a part such as KEY=="value"; empty when there is none. */
QString valueOf(const QString &keyAndOperator)
{
    const QRegularExpression pattern(QRegularExpression::escape(keyAndOperator) + "\"([^\"]*)\"");
    return pattern.match(QString::fromStdString(ruleLine())).captured(1);
}

TEST(AccessRule, ComesBeforeTheRulesThatActOnItsTag)
{
    const QString name = QFileInfo(IDCARD_RULE_FILE).fileName();
    bool isNumber = false;
    EXPECT_LT(name.section('-', 0, 0).toInt(&isNumber), 70);
    EXPECT_TRUE(isNumber);
    EXPECT_TRUE(name.endsWith(".rules"));
}

TEST(AccessRule, ConsistsOfMatchesAndAssignmentsInUdevsSyntax)
{
    std::vector<std::string> keys;
    for (const QString &part : QString::fromStdString(ruleLine()).split(", ")) {
        static const QRegularExpression syntax(
            R"re(\A((?:SUBSYSTEM|ENV\{\w+\}|ATTR\{\w+\})==|TAG\+=|GROUP=|MODE=)"[^"]+"\z)re");
        const QRegularExpressionMatch match = syntax.match(part);
        EXPECT_TRUE(match.hasMatch()) << part.toStdString();
        keys.push_back(match.captured(1).toStdString());
    }
    EXPECT_THAT(keys, ElementsAre("SUBSYSTEM==", "ENV{DEVTYPE}==", "ATTR{idVendor}==",
                                  "ATTR{idProduct}==", "TAG+=", "GROUP=", "MODE="));
}

TEST(AccessRule, MatchesTheDeviceAndNotItsInterfaces)
{
    EXPECT_EQ(valueOf("SUBSYSTEM=="), "usb");
    EXPECT_EQ(valueOf("ENV{DEVTYPE}=="), "usb_device");
}

TEST(AccessRule, NamesTheConfiguredIdsAsTheKernelWritesThem)
{
    EXPECT_EQ(valueOf("ATTR{idVendor}=="), QStringLiteral(IDCARD_USB_VENDOR_ID).toLower());
    EXPECT_EQ(valueOf("ATTR{idProduct}=="), QStringLiteral(IDCARD_USB_PRODUCT_ID).toLower());
    const QRegularExpression pattern(R"(\A[0-9a-f]{4}\z)");
    EXPECT_TRUE(pattern.match(valueOf("ATTR{idVendor}==")).hasMatch());
    EXPECT_TRUE(pattern.match(valueOf("ATTR{idProduct}==")).hasMatch());
}

TEST(AccessRule, OpensTheNodeOnlyToOwnerGroupAndTheUserAtTheMachine)
{
    EXPECT_EQ(valueOf("MODE="), "0660");
    EXPECT_EQ(valueOf("TAG+="), "uaccess");
}

TEST(AccessRule, NamesTheGroupThatTheSysusersFileMakes)
{
    const QStringList lines = linesOf(IDCARD_SYSUSERS_FILE);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0], QStringLiteral("g %1 -").arg(valueOf("GROUP=")));
}

} // namespace
