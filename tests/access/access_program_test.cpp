// The program that opens a reader of any ids, with the rules that it writes as this machine's own
// udev evaluates them. The bus is a folder in the place of /sys; the running udev is a socket, with
// a udevadm that notes how it is called.

#include "tests/access/access_machine.h"

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

const QString RULE_OF_1A2B_3C4D = QStringLiteral("69-idcard-reader-1a2b-3c4d.rules");

class AccessProgram : public AccessMachine
{
protected:
    void SetUp() override
    {
        if (!mayMakeFileTrees())
            GTEST_SKIP() << "this machine lets no test make a file tree of its own";
        EXPECT_TRUE(QDir(folder.path()).mkpath("sys/bus/usb/devices"));
        write("bin/udevadm", "#!/bin/sh\n"
                             "{ echo \"$@\" && ls /etc/udev/rules.d; } >>../calls\n"
                             "[ \"$1\" != \"$(cat ../refused)\" ]\n");
        write("refused", "");
        write("calls", "");
        QFile::setPermissions(path("bin/udevadm"), QFile::ReadOwner | QFile::ExeOwner);
    }

    /** A device on port `port`, whose interface 0 has bulk endpoints. */
    void plugIn(int port, const QByteArray &vendor, const QByteArray &product,
                const QStringList &endpoints = {"02", "81"})
    {
        const QString device = QStringLiteral("sys/bus/usb/devices/1-%1").arg(port);
        write(device + "/idVendor", vendor + '\n');
        write(device + "/idProduct", product + '\n');
        for (const QString &endpoint : endpoints)
            write(device + ":1.0/ep_" + endpoint + "/type", "Bulk\n");
    }

    void bindDriver(int port, const QString &driver)
    {
        EXPECT_TRUE(
            QFile::link("../../../../bus/usb/drivers/" + driver,
                        path(QStringLiteral("sys/bus/usb/devices/1-%1:1.0/driver").arg(port))));
    }

    /** Runs it as root, behind the shell lines `before`. */
    ProcessResult run(const QStringList &arguments, const QByteArray &before = {})
    {
        return runAsRoot(QStringList{IDCARD_ACCESS_PROGRAM} + arguments, before);
    }

    ProcessResult runAsRoot(const QStringList &command, const QByteArray &before = {})
    {
        const QByteArray udev = hasUdev
                                    ? "mkdir /run/udev\n"
                                      "python3 -c 'import socket; "
                                      "socket.socket(socket.AF_UNIX).bind(\"/run/udev/control\")'\n"
                                    : "";
        return runInTree("mount --bind sys /sys\n" + udev + before +
                             "cd bin\n"
                             "PATH=$PWD:$PATH exec \"$@\"\n",
                         command);
    }

    void expectFailure(const ProcessResult &result, int status, const char *message)
    {
        EXPECT_EQ(result.exitStatus, status);
        EXPECT_THAT(result.output(), IsEmpty());
        EXPECT_THAT(QString::fromUtf8(result.standardError).simplified().toStdString(),
                    AllOf(StartsWith("idcard-reader-access: "), HasSubstr(message)));
    }

    /** Whatever is in the folder of rules. */
    std::vector<std::string> rules() const { return namesIn(path("rules")); }

    std::string contentOf(const QString &name) const { return readFile(path(name)).toStdString(); }

    void expectOpened(const QByteArray &vendor, const QByteArray &product)
    {
        AccessMachine::expectOpened(vendor, product,
                                    "69-idcard-reader-" +
                                        (vendor + '-' + product + ".rules").toStdString());
    }

    void expectLeftAlone(const QByteArray &vendor, const QByteArray &product)
    {
        const std::string said = evaluate(vendor, product);
        EXPECT_THAT(said, HasSubstr("Reading rules file: /etc/udev/rules.d/"));
        EXPECT_THAT(said, Not(ContainsRegex("69-idcard-reader[-0-9a-f]*.rules:[0-9]+ GROUP")));
        EXPECT_THAT(said, Not(HasSubstr("RUN 'uaccess'")));
    }

    bool hasUdev = true;
};

TEST_F(AccessProgram, ReadersOfTheSameIds_AreOpenedByOneRuleToTheGroupAndToTheUserAtTheMachine)
{
    plugIn(1, "1a2b", "3c4d");
    plugIn(2, "1a2b", "3c4d");
    for (const int port : {1, 2})
        bindDriver(port, "usbfs");                    // a program holds it
    write("rules/" + RULE_OF_1A2B_3C4D, "half a ru"); // of an earlier run
    const ProcessResult result = run({});
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    EXPECT_THAT(
        result.output(),
        AllOf(StartsWith("/etc/udev/rules.d/69-idcard-reader-1a2b-3c4d.rules opens 1a2b:3c4d\n"),
              HasSubstr("usermod --append --groups idcard-reader NAME")));
    EXPECT_THAT(rules(), ElementsAre(RULE_OF_1A2B_3C4D.toStdString()));
    expectOpened("1a2b", "3c4d");
    expectLeftAlone("1a2b", "3c4e");
    expectLeftAlone("1a2c", "3c4d");
}

TEST_F(AccessProgram, RuleThatItWrites_IsThatOfThePackageForOtherIds)
{
    ASSERT_EQ(run({"--device", "1A2b:3C4d"}).exitStatus, 0);
    const QByteArray rule = readFile(IDCARD_RULE_FILE)
                                .replace("\"" IDCARD_USB_VENDOR_ID "\"", "\"1a2b\"")
                                .replace("\"" IDCARD_USB_PRODUCT_ID "\"", "\"3c4d\"");
    EXPECT_EQ(contentOf("rules/" + RULE_OF_1A2B_3C4D), rule.toStdString());
}

TEST_F(AccessProgram, UdevThatRuns_ReadsTheRuleAndAppliesItToTheseDevicesAlone)
{
    ASSERT_EQ(run({"--device=1a2b:3c4d"}).exitStatus, 0);
    const std::string rule = RULE_OF_1A2B_3C4D.toStdString() + '\n';
    EXPECT_EQ(contentOf("calls"),
              "control --reload\n" + rule +
                  "trigger --settle --action=add --subsystem-match=usb --attr-match=idVendor=1a2b "
                  "--attr-match=idProduct=3c4d\n" +
                  rule);
}

TEST_F(AccessProgram, SecondReader_LeavesTheFirstOneOpen)
{
    ASSERT_EQ(run({"--device", "1a2b:3c4d"}).exitStatus, 0);
    ASSERT_EQ(run({"--device", "0001:ffff"}).exitStatus, 0);
    expectOpened("1a2b", "3c4d");
    expectOpened("0001", "ffff");
}

TEST_F(AccessProgram, Rule_IsReadableByAllWhateverRootsUmaskIs)
{
    ASSERT_EQ(run({"--device", "1a2b:3c4d"}, "umask 077\n").exitStatus, 0);
    EXPECT_EQ(modeOf(path("rules/" + RULE_OF_1A2B_3C4D)), 0644);
}

TEST_F(AccessProgram, ReadersOfSeveralIds_AreNamedAndNoneIsOpened)
{
    plugIn(1, "1a2b", "3c4d");
    plugIn(2, "0001", "ffff");
    expectFailure(
        run({}), 3,
        "Several devices could be the reader. Unplug the others, or name it: "
        "idcard-reader-access --device 0001:ffff idcard-reader-access --device 1a2b:3c4d");
    EXPECT_THAT(rules(), IsEmpty());
}

TEST_F(AccessProgram, NoReader_IsAFailureThatOpensNothing)
{
    const char *const message = "No device on the USB bus could be the reader";
    expectFailure(run({}), 3, message);
    plugIn(1, "1d6b", "0002", {"81"});
    plugIn(2, "1d6b", "0003", {"02"});
    plugIn(3, "0781", "5567"); // a memory stick has the same pipes
    bindDriver(3, "usb-storage");
    plugIn(4, "1a2b", "0001");
    write("sys/bus/usb/devices/1-4:1.0/ep_81/type", "Interrupt\n");
    plugIn(5, "1a2b", "0002", {});
    write("sys/bus/usb/devices/1-5:1.1/ep_02/type", "Bulk\n");
    write("sys/bus/usb/devices/1-5:1.1/ep_81/type", "Bulk\n");
    expectFailure(run({}), 3, message);
    EXPECT_THAT(rules(), IsEmpty());
}

TEST_F(AccessProgram, WrongIdsAndOptions_AreRefusedWithTheValue)
{
    for (const char *wrong : {"", "1a2b", "1a2b:3c4", "1a2b:3c4d5", "1a2g:3c4d", "0x1a:3c4d", "*:*",
                              "../x:3c4d", "1a2b-3c4d", "[0-9]:3c4d"})
        expectFailure(run({"--device", wrong}), 2, "is no pair of ids: two numbers of four");
    expectFailure(run({"--device", "1a2b:3c4G"}), 2, "\"1a2b:3c4G\" is no pair of ids");
    expectFailure(run({"--device"}), 2, "--device needs the reader's ids");
    expectFailure(run({"--device", "1a2b:3c4d", "--device", "1a2b:3c4e"}), 2, "given twice");
    expectFailure(run({"--open"}), 2, "\"--open\" is not an option");
    expectFailure(run({"1a2b:3c4d"}), 2, "\"1a2b:3c4d\" is not an option");
    EXPECT_THAT(rules(), IsEmpty());
}

TEST_F(AccessProgram, UserWhoIsNotRoot_IsGivenTheCommandForRoot)
{
    const ProcessResult result =
        runHere("/usr/bin/unshare", {"-U", IDCARD_ACCESS_PROGRAM, "--device", "1A2B:3c4d"});
    expectFailure(result, 1, "Only root may do this: sudo idcard-reader-access --device 1A2B:3c4d");
}

TEST_F(AccessProgram, MissingGroup_IsAFailureThatOpensNothing)
{
    write("root/etc/group", "root:x:0:\n");
    expectFailure(
        run({"--device", "1a2b:3c4d"}), 1,
        "There is no group idcard-reader. Make it first: groupadd --system idcard-reader");
    EXPECT_THAT(rules(), IsEmpty());
}

TEST_F(AccessProgram, NoUdevThatRuns_LeavesTheRuleForTheNextStart)
{
    hasUdev = false;
    expectFailure(run({"--device", "1a2b:3c4d"}), 4,
                  "69-idcard-reader-1a2b-3c4d.rules is written, but no udev is running here");
    EXPECT_EQ(contentOf("calls"), "");
    expectOpened("1a2b", "3c4d");
}

TEST_F(AccessProgram, UdevThatRefuses_IsAFailure)
{
    for (const char *refused : {"control", "trigger"}) {
        write("refused", refused);
        expectFailure(run({"--device", "1a2b:3c4d"}), 4, "or it refused");
    }
}

TEST_F(AccessProgram, FolderThatCannotBeWritten_IsNamedAndNothingIsLeftThere)
{
    const QStringList arguments = {"--device", "1a2b:3c4d"};
    const ProcessResult result = run(arguments, "mount -o remount,bind,ro /etc/udev/rules.d\n");
    EXPECT_EQ(result.exitStatus, 1);
    const char *const message =
        "/etc/udev/rules.d/69-idcard-reader-1a2b-3c4d.rules could not be written.";
    EXPECT_THAT(result.error(), HasSubstr(message));
    EXPECT_EQ(contentOf("calls"), "");

    const ProcessResult full =
        run(arguments,
            "mount -t tmpfs -o size=8k none /etc/udev/rules.d\n"
            "cat /dev/zero >/etc/udev/rules.d/filler 2>/dev/null || true\n"
            "set -- sh -c '\"$0\" \"$@\" || { s=$?; ls -A /etc/udev/rules.d; exit $s; }' \"$@\"\n");
    EXPECT_EQ(full.exitStatus, 1);
    EXPECT_THAT(full.error(), HasSubstr(message));
    EXPECT_EQ(full.output(), "filler\n");
}

class AccessRemoval : public AccessProgram
{
protected:
    void SetUp() override
    {
        AccessProgram::SetUp();
        for (const char *name :
             {"69-idcard-reader.rules", "69-idcard-reader-local.rules",
              "69-idcard-reader-1a2b-3c4d.rules", "69-idcard-reader-0001-ffff.rules"})
            write(QStringLiteral("rules/") + name, "#\n");
    }
};

const char *const OTHER_RULES[] = {"69-idcard-reader-local.rules", "69-idcard-reader.rules"};

TEST_F(AccessRemoval, AllRulesOfTheProgram_GoAndNoOthers)
{
    const ProcessResult result = run({"--remove"});
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    EXPECT_THAT(result.output(),
                AllOf(HasSubstr("/etc/udev/rules.d/69-idcard-reader-0001-ffff.rules is removed.\n"),
                      HasSubstr("/etc/udev/rules.d/69-idcard-reader-1a2b-3c4d.rules is removed.\n"),
                      HasSubstr("stays open until it is unplugged")));
    EXPECT_THAT(rules(), testing::ElementsAreArray(OTHER_RULES));
    EXPECT_THAT(contentOf("calls"), StartsWith("control --reload\n"));
}

TEST_F(AccessRemoval, RuleOfOneReader_GoesAlone)
{
    EXPECT_EQ(run({"--remove", "--device", "1A2B:3C4D"}).exitStatus, 0);
    EXPECT_THAT(rules(),
                ElementsAre("69-idcard-reader-0001-ffff.rules", OTHER_RULES[0], OTHER_RULES[1]));
}

TEST_F(AccessRemoval, NothingToRemove_IsNoFailure)
{
    const ProcessResult result = run({"--remove", "--device", "1a2b:0000"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output(), "There is no such rule in /etc/udev/rules.d.\n");
    EXPECT_EQ(rules().size(), 4U);
    EXPECT_EQ(contentOf("calls"), "");
}

TEST_F(AccessRemoval, NoUdevThatRuns_IsAFailureAfterTheRemoval)
{
    hasUdev = false;
    EXPECT_EQ(run({"--remove"}).exitStatus, 4);
    EXPECT_THAT(rules(), testing::ElementsAreArray(OTHER_RULES));
}

TEST_F(AccessProgram, InstallationOfThePackage_OpensTheReadersThatArePluggedIn)
{
    const QStringList script = {"sh", IDCARD_SOURCE_DIR "/debian/libidcard-reader-lib1.postinst",
                                "configure"};
    write("refused", "control");
    EXPECT_EQ(runAsRoot(script).exitStatus, 0) << "a udev that fails keeps no package out";
    EXPECT_THAT(contentOf("calls"), AllOf(HasSubstr("control --reload\n"),
                                          HasSubstr("trigger --subsystem-match=usb ")));
}

TEST_F(AccessProgram, InstallationOfThePackageWithoutUdev_IsDone)
{
    hasUdev = false;
    const QStringList script = {"sh", IDCARD_SOURCE_DIR "/debian/libidcard-reader-lib1.postinst",
                                "configure"};
    EXPECT_EQ(runAsRoot(script).exitStatus, 0);
    EXPECT_EQ(contentOf("calls"), "");
}

TEST_F(AccessRemoval, PurgeOfTheLastPackage_TakesTheRulesOfTheProgramAndNoOthers)
{
    const QStringList script = {"sh", IDCARD_SOURCE_DIR "/debian/libidcard-reader-lib1.postrm"};
    EXPECT_EQ(runInTree("exec \"$@\"\n", script + QStringList{"remove"}).exitStatus, 0);
    EXPECT_EQ(runInTree("DPKG_MAINTSCRIPT_PACKAGE_REFCOUNT=2 exec \"$@\"\n",
                        script + QStringList{"purge"})
                  .exitStatus,
              0);
    EXPECT_EQ(rules().size(), 4U);
    EXPECT_EQ(runInTree("DPKG_MAINTSCRIPT_PACKAGE_REFCOUNT=1 exec \"$@\"\n",
                        script + QStringList{"purge"})
                  .exitStatus,
              0);
    EXPECT_THAT(rules(), testing::ElementsAreArray(OTHER_RULES));
}

} // namespace
