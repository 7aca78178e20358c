// The generated udev rule as a file: every key, operator and value, and the group that it names.

#include <gmock/gmock.h>

#include <QFileInfo>
#include <QStringList>

#include "tests/support/files.h"

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

TEST(AccessRule, ComesBeforeTheRulesThatActOnItsTag)
{
    const QString name = QFileInfo(IDCARD_RULE_FILE).fileName();
    bool isNumber = false;
    EXPECT_LT(name.section('-', 0, 0).toInt(&isNumber), 70);
    EXPECT_TRUE(isNumber);
    EXPECT_TRUE(name.endsWith(".rules"));
}

TEST(AccessRule, OpensTheDeviceOfTheConfiguredIdsToOwnerGroupAndTheUserAtTheMachine)
{
    // The ids as the kernel writes them; the device itself, not its interfaces.
    const QString rule = QStringLiteral(
        R"(SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ATTR{idVendor}=="%1", )"
        R"(ATTR{idProduct}=="%2", TAG+="uaccess", GROUP="idcard-reader", MODE="0660")");
    EXPECT_EQ(linesOf(IDCARD_RULE_FILE).join('\n').toStdString(),
              rule.arg(QString(IDCARD_USB_VENDOR_ID).toLower())
                  .arg(QString(IDCARD_USB_PRODUCT_ID).toLower())
                  .toStdString());
}

TEST(AccessRule, NamesTheGroupThatTheSysusersFileMakes)
{
    EXPECT_EQ(linesOf(IDCARD_SYSUSERS_FILE).join('\n').toStdString(), "g idcard-reader -");
}

} // namespace
