// The rule as this machine's own udev evaluates it for an imitated device, with the group that this
// machine's systemd-sysusers makes. All of it happens in a file tree of its own, which a machine
// may refuse to a test; then this is skipped.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/process.h"

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

namespace
{

const char *const DEVICE_PATH = "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1";

ProcessResult runHere(const QString &program, const QStringList &arguments)
{
    ProcessInput input;
    input.emulated = false;
    return runProcess(program, arguments, input);
}

bool mayMakeFileTrees()
{
    return runHere("/usr/bin/unshare", {"-rm", "/bin/true"}).exitStatus == 0;
}

class AccessEvaluation : public testing::Test
{
protected:
    AccessEvaluation()
    {
        QDir root(folder.path());
        EXPECT_TRUE(root.mkpath("root/etc"));
        EXPECT_TRUE(root.mkpath("rules"));
        EXPECT_TRUE(QFile::copy(IDCARD_RULE_FILE, root.filePath("rules/69-idcard-reader.rules")));
        const ProcessResult made =
            runHere("/usr/bin/systemd-sysusers",
                    {"--root=" + root.filePath("root"), QStringLiteral(IDCARD_SYSUSERS_FILE)});
        EXPECT_EQ(made.exitStatus, 0) << made.standardError.toStdString();
    }

    void write(const char *name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /** What udev says about a device with these ids when it is plugged in. */
    std::string evaluate(const QByteArray &vendor, const QByteArray &product)
    {
        write("device", "P: /devices/pci0000:00/0000:00:14.0/usb1/1-1\n"
                        "N: bus/usb/001/002\n"
                        "E: SUBSYSTEM=usb\n"
                        "E: DEVTYPE=usb_device\n"
                        "E: DEVNAME=/dev/bus/usb/001/002\n"
                        "E: MAJOR=189\n"
                        "E: MINOR=1\n"
                        "A: busnum=1\\n\n"
                        "A: devnum=2\\n\n"
                        "A: idVendor=" +
                            vendor + "\\n\nA: idProduct=" + product + "\\n\n");
        // udev notes what it finds below /run and /dev; this machine's own stay untouched.
        write("evaluate", "set -e\n"
                          "cd \"$1\"\n"
                          "mount --bind rules /etc/udev/rules.d\n"
                          "mount --bind root/etc/group /etc/group\n"
                          "mount -t tmpfs none /run\n"
                          "mkdir /run/dev\n"
                          "touch /run/dev/null\n"
                          "mount --bind /dev/null /run/dev/null\n"
                          "mount --rbind /run/dev /dev\n"
                          "exec umockdev-run -d device -- udevadm --debug test \"$2\"\n");
        const ProcessResult run =
            runHere("/usr/bin/unshare", {"-rm", "/bin/sh", folder.filePath("evaluate"),
                                         folder.path(), QLatin1String(DEVICE_PATH)});
        EXPECT_EQ(run.exitStatus, 0) << run.standardError.toStdString();
        return (run.standardOutput + run.standardError).toStdString();
    }

    QByteArray groupNumber()
    {
        QFile file(folder.filePath("root/etc/group"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray line = file.readAll().trimmed();
        EXPECT_TRUE(line.startsWith("idcard-reader:")) << line.toStdString();
        return line.split(':').value(2);
    }

    QTemporaryDir folder;
};

TEST_F(AccessEvaluation, SysusersMakesTheGroup)
{
    EXPECT_GT(groupNumber().toInt(), 0);
}

TEST_F(AccessEvaluation, ReaderIsOpenedToTheGroupAndToWhoeverSitsThere)
{
    if (!mayMakeFileTrees())
        GTEST_SKIP() << "this machine lets no test make a file tree of its own";
    const std::string said = evaluate(IDCARD_USB_VENDOR_ID, IDCARD_USB_PRODUCT_ID);
    EXPECT_THAT(
        said, ContainsRegex("69-idcard-reader.rules:[0-9]+ GROUP " + groupNumber().toStdString()));
    EXPECT_THAT(said, ContainsRegex("69-idcard-reader.rules:[0-9]+ MODE 0660"));
    EXPECT_THAT(said, ContainsRegex("73-seat-late.rules:[0-9]+ RUN 'uaccess'"));
    EXPECT_THAT(said, Not(HasSubstr("69-idcard-reader.rules:3 Unknown")));
}

TEST_F(AccessEvaluation, OtherDevicesAreLeftAlone)
{
    if (!mayMakeFileTrees())
        GTEST_SKIP() << "this machine lets no test make a file tree of its own";
    for (const auto &[vendor, product] :
         {std::pair(IDCARD_USB_VENDOR_ID, "fffe"), std::pair("fffe", IDCARD_USB_PRODUCT_ID)}) {
        const std::string said = evaluate(vendor, product);
        EXPECT_THAT(said,
                    HasSubstr("Reading rules file: /etc/udev/rules.d/69-idcard-reader.rules"));
        EXPECT_THAT(said, Not(HasSubstr("69-idcard-reader.rules:3")));
        EXPECT_THAT(said, Not(HasSubstr("RUN 'uaccess'")));
    }
}

} // namespace
