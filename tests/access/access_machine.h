#pragma once

// A machine for the tests of who may use the reader: this one, with a folder of rules and a list of
// groups of its own. They are put in place in a file tree of the test's own, which a machine may
// refuse; then the test is skipped.

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include "tests/support/files.h"
#include "tests/support/process.h"

class AccessMachine : public testing::Test
{
protected:
    AccessMachine()
    {
        EXPECT_TRUE(QDir(folder.path()).mkpath("root/etc"));
        EXPECT_TRUE(QDir(folder.path()).mkpath("rules"));
        const ProcessResult made =
            runHere("/bin/systemd-sysusers",
                    {"--root=" + path("root"), QStringLiteral(IDCARD_SYSUSERS_FILE)});
        EXPECT_EQ(made.exitStatus, 0) << made.standardError.toStdString();
    }

    static ProcessResult runHere(const QString &program, const QStringList &arguments)
    {
        return runProcess(program, arguments);
    }

    static bool mayMakeFileTrees()
    {
        return runHere("/usr/bin/unshare", {"-rm", "/bin/true"}).exitStatus == 0;
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    void write(const QString &name, const QByteArray &content)
    {
        ASSERT_TRUE(QFileInfo(path(name)).dir().mkpath("."));
        writeFile(path(name), content);
    }

    /** Runs a shell script as root of a file tree, in this machine's folder. */
    ProcessResult runInTree(const QByteArray &script, const QStringList &arguments)
    {
        write("script", "set -e\n"
                        "cd \"$1\"\n"
                        "shift\n"
                        "mount --bind rules /etc/udev/rules.d\n"
                        "mount --bind root/etc/group /etc/group\n"
                        "mount -t tmpfs none /run\n" +
                            script);
        return runHere("/usr/bin/unshare",
                       QStringList{"-rm", "/bin/sh", path("script"), folder.path()} + arguments);
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
        const ProcessResult run =
            runInTree("mkdir /run/dev\n"
                      "touch /run/dev/null\n"
                      "mount --bind /dev/null /run/dev/null\n"
                      "mount --rbind /run/dev /dev\n"
                      "exec umockdev-run -d device -- udevadm --debug test \"$1\"\n",
                      {"/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1"});
        EXPECT_EQ(run.exitStatus, 0) << run.standardError.toStdString();
        return (run.standardOutput + run.standardError).toStdString();
    }

    /** By this rule. */
    void expectOpened(const QByteArray &vendor, const QByteArray &product, const std::string &rule)
    {
        const std::string said = evaluate(vendor, product);
        EXPECT_THAT(said,
                    testing::ContainsRegex(rule + ":[0-9]+ GROUP " + groupNumber().toStdString()));
        EXPECT_THAT(said, testing::ContainsRegex(rule + ":[0-9]+ MODE 0660"));
        EXPECT_THAT(said, testing::ContainsRegex("73-seat-late.rules:[0-9]+ RUN 'uaccess'"));
        EXPECT_THAT(said, testing::Not(testing::HasSubstr(rule + ":3 Unknown")));
    }

    QByteArray groupNumber()
    {
        const QByteArray line = readFile(path("root/etc/group")).trimmed();
        EXPECT_TRUE(line.startsWith("idcard-reader:")) << line.toStdString();
        return line.split(':').value(2);
    }

    QTemporaryDir folder;
};
