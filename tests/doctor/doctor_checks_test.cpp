// What the doctor makes of what it knows: every check, fine and not.

#include <functional>

#include <gmock/gmock.h>

#include <QJsonArray>

#include "apps/doctor/report.h"
#include "reader/usb_codes.h"
#include "tests/doctor/doctor_machine.h"

using namespace app;
using namespace app::doctor;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

/** The only finding of a check. */
Finding findingOf(const char *check, const Environment &machine)
{
    for (const CheckRow &row : checkTable()) {
        if (QLatin1String(row.id) == QLatin1String(check)) {
            const Findings findings = row.judge(machine);
            EXPECT_EQ(findings.size(), 1) << check;
            return findings.value(0);
        }
    }
    ADD_FAILURE() << "no check " << check;
    return {};
}

struct Fault {
    const char *name;
    const char *check;
    std::function<void(Environment &)> make;
    Level level;
    const char *text;   ///< part of it
    const char *remedy; ///< part of it or of a command
};

void PrintTo(const Fault &fault, std::ostream *stream)
{
    *stream << fault.name;
}

class Checks : public testing::TestWithParam<Fault>
{
};

TEST_P(Checks, FaultIsReportedWithItsRemedy)
{
    const Fault &fault = GetParam();
    Environment machine = fineMachine();
    EXPECT_EQ(findingOf(fault.check, machine).level, Level::FINE);
    fault.make(machine);
    const Finding finding = findingOf(fault.check, machine);
    EXPECT_EQ(finding.level, fault.level);
    EXPECT_THAT(finding.text.toStdString(), HasSubstr(fault.text));
    const QString remedy = (QStringList{finding.remedy} + finding.commands).join('\n');
    EXPECT_THAT(remedy.toStdString(), HasSubstr(fault.remedy));
    EXPECT_THAT(finding.remedy.toStdString(), Not(IsEmpty()));
}

UsbNode &node(Environment &machine)
{
    return machine.usb.nodes.first();
}

void forbid(Environment &machine)
{
    node(machine).device.mayOpen = false;
    node(machine).rights.mode = 0600;
    node(machine).rights.group = "root";
}

INSTANTIATE_TEST_SUITE_P(
    Versions, Checks,
    testing::Values(
        Fault{"other library", "library-version",
              [](Environment &m) { m.versions.library = "version:1.4.0"; }, Level::WARNING,
              "\"version:1.4.0\", idcard-reader is 1.5.0", "ldd"},
        Fault{"older Qt", "qt-version", [](Environment &m) { m.versions.qtRunning = "5.9.5"; },
              Level::FAILURE, "5.9.5, built with 5.11.3: they do not go together",
              "Install Qt 5.11.3"},
        Fault{"Qt of another major version", "qt-version",
              [](Environment &m) { m.versions.qtRunning = "6.4.2"; }, Level::FAILURE, "6.4.2",
              "a later Qt 5"},
        Fault{"missing locale", "locale",
              [](Environment &m) {
                  m.locale = {"xx_YY.UTF-8", false, "C", "ANSI_X3.4-1968"};
              },
              Level::WARNING, "no locale \"xx_YY.UTF-8\"", "dpkg-reconfigure locales"},
        Fault{"other encoding", "locale",
              [](Environment &m) {
                  m.locale = {"zh_CN.GB18030", true, "zh_CN.GB18030", "GB18030"};
              },
              Level::WARNING, "the encoding GB18030, not UTF-8", "export LC_ALL=C.UTF-8"},
        Fault{"mistake in a configuration file", "configuration",
              [](Environment &m) {
                  m.configuration[1].mistake = "there is no setting \"raod\".";
                  m.configuration[1].remedy = "Correct the line.";
                  m.configuration[1].mistakeLine = 7;
              },
              Level::FAILURE, "/home/clerk/.config/idcard-reader.conf, line 7: there is no setting",
              "Correct the line."},
        Fault{"configuration file that cannot be read", "configuration",
              [](Environment &m) {
                  m.configuration[0].mistake = "it cannot be read: Is a directory.";
                  m.configuration[0].remedy = "Remove it.";
              },
              Level::FAILURE, "/etc/idcard-reader.conf: it cannot be read", "Remove it."}));

void answer(Environment &machine, const char *error, const char *message,
            ExitStatus outside = ExitStatus::DONE)
{
    machine.service.error = QLatin1String(error);
    machine.service.message = QLatin1String(message);
    machine.service.outside = outside;
}

INSTANTIATE_TEST_SUITE_P(
    Services, Checks,
    testing::Values(
        Fault{"not installed", "service",
              [](Environment &m) {
                  answer(m, "org.freedesktop.DBus.Error.ServiceUnknown", "The name is not known");
              },
              Level::FAILURE, "it is not installed", "idcard-reader-service"},
        Fault{"not started", "service",
              [](Environment &m) {
                  answer(m, "org.freedesktop.DBus.Error.Spawn.ChildExited", "It exited");
              },
              Level::FAILURE, "it does not answer: It exited",
              "journalctl -u idcard-readerd.service -e"},
        Fault{"without a bus", "service", [](Environment &m) { answer(m, "", "No bus"); },
              Level::FAILURE, "it does not answer: No bus", "journalctl"},
        Fault{"not authorized", "service",
              [](Environment &m) {
                  answer(m, IDCARD_SERVICE_DOMAIN ".Error.NotAuthorized", "polkit refuses");
              },
              Level::FAILURE, "polkit does not let this user read cards through it: polkit refuses",
              "let the account in with a rule"},
        Fault{"in use", "service",
              [](Environment &m) { answer(m, IDCARD_SERVICE_DOMAIN ".Error.Busy", "In use"); },
              Level::WARNING, "another program is reading", "End the other program"},
        Fault{"confined", "service",
              [](Environment &m) {
                  answer(m, IDCARD_SERVICE_DOMAIN ".Error.ReaderNotOpened", "Not opened",
                         ExitStatus::NO_CARD);
              },
              Level::FAILURE,
              "idcard-reader reads, but the service does not: ReaderNotOpened, Not opened",
              "systemctl edit idcard-readerd.service"},
        Fault{"no read at all", "service",
              [](Environment &m) {
                  answer(m, IDCARD_SERVICE_DOMAIN ".Error.ReaderNotOpened", "Not opened",
                         ExitStatus::READER_NOT_OPENED);
              },
              Level::FAILURE, "neither it nor idcard-reader reads: ReaderNotOpened, Not opened",
              "idcard-reader read"}));

TEST(ServiceCheck, WithoutACard_IsFine)
{
    Environment machine = fineMachine();
    answer(machine, IDCARD_SERVICE_DOMAIN ".Error.NoCard", "No card", ExitStatus::NO_CARD);
    const Finding finding = findingOf("service", machine);
    EXPECT_EQ(finding.level, Level::FINE);
    EXPECT_EQ(finding.text, "it reaches the reader, on which no card lies");
}

TEST(ServiceCheck, NotAskedFor_FindsNothing)
{
    Environment machine = fineMachine();
    machine.service.isProbed = false;
    EXPECT_THAT(checkService(machine), IsEmpty());
}

TEST(ConfigurationCheck, NamesTheFilesThatAreNotThere)
{
    Environment machine = fineMachine();
    machine.configuration = {{"/etc/a.conf"}, {"/home/b.conf"}};
    EXPECT_EQ(findingOf("configuration", machine).text, "No /etc/a.conf and no /home/b.conf");
}

TEST(ConfigurationCheck, SaysWhatTheFilesHold)
{
    Environment machine = fineMachine();
    machine.configuration = {{"/etc/a.conf", true, {{"timeout", "30", 1}}}, {"/home/b.conf", true}};
    EXPECT_EQ(findingOf("configuration", machine).text,
              "/etc/a.conf: timeout = 30; /home/b.conf: no setting");
}

INSTANTIATE_TEST_SUITE_P(
    Libraries, Checks,
    testing::Values(
        Fault{"nowhere", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.files.clear();
                  m.readerLibrary.errors << "libmaker.so: cannot open shared object file: No such";
              },
              Level::FAILURE,
              "The reader maker's library, libmaker.so, is not here; looked in "
              "/usr/lib and",
              "ln -s /PATH/OF/THE/MAKERS/FILE /usr/lib/libmaker.so"},
        Fault{"another processor", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.files.first().shape = LibraryShape::OTHER_MACHINE;
                  m.readerLibrary.files.first().machine = "64-bit ARM";
              },
              Level::FAILURE, "64-bit ARM; this program is for x86-64", "library for x86-64"},
        Fault{"leads nowhere", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.files.first().shape = LibraryShape::UNREADABLE;
              },
              Level::FAILURE, "cannot be read by this user", "chmod a+rx /usr/lib/libmaker.so"},
        Fault{"no library", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.files.first().shape = LibraryShape::NO_LIBRARY;
              },
              Level::FAILURE, "/usr/lib/libmaker.so is not a library", "file /usr/lib/libmaker.so"},
        Fault{"some reason of the loader", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.errors << "/usr/lib/libmaker.so: undefined symbol: other";
              },
              Level::FAILURE, "cannot be loaded: /usr/lib/libmaker.so: undefined symbol: other",
              "ldd -r /usr/lib/libmaker.so"},
        Fault{"path with a blank", "reader-library",
              [](Environment &m) {
                  m.readerLibrary.loading = Loading::NOT_LOADED;
                  m.readerLibrary.files.first().path = "/it's here/libmaker.so";
                  m.readerLibrary.files.first().shape = LibraryShape::NO_LIBRARY;
              },
              Level::FAILURE, "/it's here/libmaker.so is not a library",
              "file '/it'\\''s here/libmaker.so'"},
        Fault{"hanging", "photo-decoder",
              [](Environment &m) {
                  m.photoDecoder.loading = Loading::HUNG;
                  m.photoDecoder.tried = "/usr/lib/libdecoder.so";
              },
              Level::FAILURE, "Loading /usr/lib/libdecoder.so hangs", "another version"},
        Fault{"no decoder where one road needs it", "photo-decoder",
              [](Environment &m) {
                  m.photoDecoder.loading = Loading::NOT_LOADED;
                  m.photoDecoder.files.clear();
              },
              Level::FAILURE, "The photo decoder, libdecoder.so, is not here", "ln -s"},
        Fault{"no decoder where few readers need it", "photo-decoder",
              [](Environment &m) {
                  m.roads = Roads::LIBRARY;
                  m.photoDecoder.loading = Loading::NOT_LOADED;
                  m.photoDecoder.files.clear();
              },
              Level::WARNING, "The photo decoder, libdecoder.so, is not here", "ln -s"}));

INSTANTIATE_TEST_SUITE_P(
    Bus, Checks,
    testing::Values(
        Fault{"no USB", "usb-reader",
              [](Environment &m) {
                  m.usb.nodes.clear();
                  m.usb.code = USB_READER_INIT_FAILED;
              },
              Level::FAILURE, "USB could not be used.", "/dev/bus/usb"},
        Fault{"empty bus", "usb-reader", [](Environment &m) { m.usb.nodes.clear(); },
              Level::FAILURE, "No device on the USB bus could be a reader; the bus is empty",
              "idcard-reader usb --list"},
        Fault{"other devices", "usb-reader",
              [](Environment &m) {
                  m.usb.nodes.clear();
                  m.usb.asked = UsbIds{0x1209, 0x00AB};
                  m.usb.others = 3;
              },
              Level::FAILURE, "1209:00ab is not on the USB bus; 3 other devices are there",
              "Plug the reader in"},
        Fault{"no pipes", "usb-reader",
              [](Environment &m) { node(m).device.hasReaderPipes = false; }, Level::FAILURE,
              "it has not the pipes of a reader", "--road library"},
        Fault{"no permission", "usb-permission", forbid, Level::FAILURE,
              "This user may not open /dev/bus/usb/001/002: mode 0600, owner root, group root",
              "as root:\nidcard-reader-access --device 1209:0001"},
        Fault{"no permission but the group's", "usb-permission",
              [](Environment &m) {
                  node(m).device.mayOpen = false;
                  m.usb.group = {"idcard-reader", "clerk", false, true, false, false};
              },
              Level::FAILURE, "mode 0660, owner root, group idcard-reader; clerk is not in",
              "usermod --append --groups idcard-reader clerk"},
        Fault{"no permission in spite of the group", "usb-permission",
              [](Environment &m) { node(m).device.mayOpen = false; }, Level::FAILURE,
              "mode 0660, owner root, group idcard-reader",
              "idcard-reader-access --device 1209:0001"},
        Fault{"node shut to the group", "usb-permission",
              [](Environment &m) {
                  node(m).device.mayOpen = false;
                  node(m).rights.mode = 0640;
              },
              Level::FAILURE, "mode 0640, owner root, group idcard-reader",
              "idcard-reader-access --device 1209:0001"},
        Fault{"no node", "usb-permission",
              [](Environment &m) {
                  forbid(m);
                  node(m).rights = {};
              },
              Level::FAILURE, "/dev/bus/usb/001/002 is not there", "In a container"},
        Fault{"driver", "usb-driver",
              [](Environment &m) { node(m).device.driver = "usbserial_generic"; }, Level::WARNING,
              "\"usbserial_generic\" is bound to the reader",
              "echo 'blacklist usbserial_generic' > /etc/modprobe.d/"},
        Fault{"opened elsewhere", "usb-holder",
              [](Environment &m) {
                  node(m).holders.processes = {{4711, "counter"}};
              },
              Level::WARNING, "The reader's node is open in counter (process 4711)",
              "fuser -v /dev/bus/usb/001/002"},
        Fault{"claimed elsewhere", "usb-holder",
              [](Environment &m) {
                  node(m).device.driver = "usbfs";
                  node(m).holders.processes = {{4711, "counter"}};
              },
              Level::FAILURE, "The reader is held by counter (process 4711)", "end the other one"},
        Fault{"claimed by one unseen", "usb-holder",
              [](Environment &m) {
                  node(m).device.driver = "usbfs";
                  node(m).holders.unseen = 12;
              },
              Level::FAILURE,
              "held by a program that this user cannot see; 12 processes of others cannot be seen",
              "as root"}));

INSTANTIATE_TEST_SUITE_P(
    Access, Checks,
    testing::Values(
        Fault{"no rule", "usb-rule",
              [](Environment &m) {
                  forbid(m);
                  m.usb.rule = {};
                  m.usb.accessProgram = "'/my build/packaging/idcard-reader-access'";
              },
              Level::FAILURE, "69-idcard-reader.rules is in none of udev's folders",
              "as root:\n'/my build/packaging/idcard-reader-access' --device 1209:0001"},
        Fault{"no rule, and no reader yet", "usb-rule",
              [](Environment &m) {
                  m.usb.nodes.clear();
                  m.usb.rule = {};
              },
              Level::WARNING, "is in none of udev's folders",
              "Plug the reader in, then open it, as root:\nidcard-reader-access"},
        Fault{"no rule, but another way in", "usb-rule", [](Environment &m) { m.usb.rule = {}; },
              Level::WARNING, "this user may use the reader anyway",
              "idcard-reader-access --device 1209:0001"},
        Fault{"rule switched off", "usb-rule",
              [](Environment &m) {
                  m.usb.rule = {"/etc/udev/rules.d/x", true, {}, {}};
              },
              Level::WARNING, "by which the rule is switched off", "rm /etc/udev/rules.d/x"},
        Fault{"rule of other ids", "usb-rule",
              [](Environment &m) {
                  forbid(m);
                  node(m).device.ids = {0x1209, 0x00AB};
              },
              Level::FAILURE, "is for 1209:0001, not for 1209:00ab",
              "as root:\nidcard-reader-access --device 1209:00ab"},
        Fault{"rule of the package for other ids", "usb-rule",
              [](Environment &m) {
                  m.usb.rule.path = "/usr/lib/udev/rules.d/69-idcard-reader.rules";
                  m.usb.rule.opened = {UsbIds{0x1209, 0x0002}};
              },
              Level::WARNING, "is for 1209:0002, not for 1209:0001",
              "idcard-reader-access --device 1209:0001"},
        Fault{"rule without ids", "usb-rule",
              [](Environment &m) {
                  m.usb.nodes.clear();
                  m.usb.rule.opened.clear();
              },
              Level::WARNING, "opens no device",
              "Plug the reader in, then open it, as root:\nidcard-reader-access"},
        Fault{"rule not applied", "usb-rule", forbid, Level::FAILURE,
              "has not been applied: the node is not of the group idcard-reader",
              "plug the reader in again"},
        Fault{"no group", "usb-group",
              [](Environment &m) {
                  forbid(m);
                  m.usb.group = {"idcard-reader", "clerk", false, false, false, false};
              },
              Level::FAILURE, "There is no group \"idcard-reader\"",
              "groupadd --system idcard-reader"},
        Fault{"not in the group", "usb-group",
              [](Environment &m) {
                  forbid(m);
                  m.usb.group = {"idcard-reader", "clerk", false, true, false, false};
              },
              Level::FAILURE, "clerk is not in \"idcard-reader\"",
              "usermod --append --groups idcard-reader clerk"},
        Fault{"not in the group, no reader yet", "usb-group",
              [](Environment &m) {
                  m.usb.nodes.clear();
                  m.usb.group = {"idcard-reader", "clerk", false, true, false, false};
              },
              Level::WARNING, "clerk is not in \"idcard-reader\"", "usermod"},
        Fault{"not logged in again", "usb-group",
              [](Environment &m) {
                  forbid(m);
                  m.usb.group = {"idcard-reader", "clerk", false, true, true, false};
              },
              Level::FAILURE, "has not logged in since then", "newgrp idcard-reader"}));

void claim(Environment &machine, double dpiX, double dpiY)
{
    machine.pictures.screen->dpiX = dpiX;
    machine.pictures.screen->dpiY = dpiY;
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, Checks,
    testing::Values(
        Fault{"no display", "screen", [](Environment &m) { m.pictures.isOffscreenChosen = true; },
              Level::WARNING,
              "There is no display. idcard-reader chooses Qt's platform \"offscreen\"",
              "export QT_QPA_PLATFORM=offscreen"},
        Fault{"display does not work", "screen",
              [](Environment &m) {
                  m.pictures.platform = "xcb";
                  m.pictures.failure = "could not connect to display";
                  m.pictures.hasStarted = false;
                  m.pictures.screen.reset();
              },
              Level::FAILURE,
              "Qt does not come up with the platform \"xcb\": could not connect to display",
              "session of its desktop"},
        Fault{"no screen", "screen", [](Environment &m) { m.pictures.screen.reset(); },
              Level::FAILURE, "Qt has no screen", "switch it on"},
        Fault{"no size", "resolution", [](Environment &m) { claim(m, 0, 0); }, Level::FAILURE,
              "0 dpi", "xrandr --query"},
        Fault{"one millimetre", "resolution", [](Environment &m) { claim(m, 48768, 27432); },
              Level::FAILURE, "48768 x 27432 dpi", "Virtual machines"},
        Fault{
            "low", "resolution", [](Environment &m) { claim(m, 59.9, 59.9); }, Level::WARNING,
            "59.9 dpi (508 x 286 mm), which is unusual; a resident card is painted with 324 x 204 "
            "pixels",
            "xrandr --query"},
        Fault{"high", "resolution", [](Environment &m) { claim(m, 401, 401); }, Level::WARNING,
              "401 dpi", "xrandr --query"},
        Fault{"not square", "resolution", [](Environment &m) { claim(m, 96, 107); }, Level::WARNING,
              "different resolutions across and down, 96 x 107 dpi", "xrandr --query"},
        Fault{"hardly a pixel", "resolution", [](Environment &m) { claim(m, 29.9, 29.9); },
              Level::FAILURE, "29.9 dpi", "xrandr --query"},
        Fault{"finer than any", "resolution", [](Environment &m) { claim(m, 801, 801); },
              Level::FAILURE, "801 dpi", "xrandr --query"},
        Fault{"finer than any when it is scaled", "resolution",
              [](Environment &m) {
                  claim(m, 401, 401);
                  m.pictures.screen->devicePixelRatio = 2;
              },
              Level::FAILURE, "401 dpi", "xrandr --query"},
        Fault{"no plug-in", "jpeg",
              [](Environment &m) {
                  m.pictures.canWriteJpeg = false;
                  m.pictures.jpegPlugin.clear();
                  m.pictures.pluginFolders = QStringList{"/qt"};
              },
              Level::FAILURE, "Qt has no JPEG plug-in", "libqt5gui5"},
        Fault{"broken plug-in", "jpeg",
              [](Environment &m) {
                  m.pictures.canWriteJpeg = false;
                  m.pictures.jpegProblem = "not a plug-in";
              },
              Level::FAILURE, "does not work, all pictures come out empty: not a plug-in",
              "--reinstall libqt5gui5"},
        Fault{"plug-in not asked", "jpeg",
              [](Environment &m) {
                  m.pictures.canWriteJpeg = false;
                  m.pictures.isJpegKnown = false;
                  m.pictures.failure = "it hangs";
              },
              Level::FAILURE, "Not known, since Qt does not come up (it hangs)", "\"Screen\""},
        Fault{"no Chinese font", "text-font",
              [](Environment &m) { m.pictures.fonts[0].hasChinese = false; }, Level::FAILURE,
              "no font here has the Chinese characters", "fonts-noto-cjk"},
        Fault{"platform without fonts", "text-font",
              [](Environment &m) {
                  m.pictures.runningPlatform = "minimal";
                  m.pictures.fonts[0].hasChinese = false;
              },
              Level::FAILURE, "Qt's platform \"minimal\" knows no fonts, installed or not",
              "export QT_QPA_PLATFORM=offscreen"},
        Fault{"some font", "text-font",
              [](Environment &m) { m.pictures.fonts[0].isStandIn = false; }, Level::WARNING,
              "no stand-in is named, and Qt takes SomeFont",
              "conf.d; it is in the project's sources, packaging/fonts (docs/fonts.md), as root:\n"
              "apt-get install fontconfig fonts-noto-cjk"},
        Fault{
            "neither font nor choice", "text-font",
            [](Environment &m) {
                m.pictures.fonts[0].isStandIn = false;
                m.pictures.shippedFontChoice = "/build/packaging/69-idcard-reader.conf";
            },
            Level::WARNING, "no stand-in is named",
            "Install a font for it and copy the project's fontconfig file 69-idcard-reader.conf to "
            "/etc/fonts/conf.d (docs/fonts.md), as root:\n"
            "apt-get install fontconfig fonts-noto-cjk\n"
            "cp /build/packaging/69-idcard-reader.conf /etc/fonts/conf.d/"},
        Fault{"font not asked", "number-font",
              [](Environment &m) { m.pictures.fonts[1].isKnown = false; }, Level::FAILURE,
              "not known", "\"Screen\""}));

/** A machine whose package has the rule for another reader than the one that is plugged in. */
Environment machineWithAddedRule()
{
    Environment machine = fineMachine();
    node(machine).device.ids = {0x1A2B, 0x3C4D};
    machine.usb.added = {{"/etc/udev/rules.d/69-idcard-reader-0001-ffff.rules",
                          false,
                          {UsbIds{0x0001, 0xFFFF}},
                          "idcard-reader"},
                         {"/etc/udev/rules.d/69-idcard-reader-1a2b-3c4d.rules",
                          false,
                          {UsbIds{0x1A2B, 0x3C4D}},
                          "idcard-reader"}};
    return machine;
}

TEST(AddedRules, RuleForTheReaderAlone_IsTheOneThatIsNamed)
{
    Environment machine = machineWithAddedRule();
    const Finding finding = findingOf("usb-rule", machine);
    EXPECT_EQ(finding.level, Level::FINE);
    EXPECT_EQ(finding.text, "/etc/udev/rules.d/69-idcard-reader-1a2b-3c4d.rules, for 1a2b:3c4d");
    machine.usb.rule = {};
    EXPECT_EQ(findingOf("usb-rule", machine).level, Level::FINE);
    forbid(machine);
    EXPECT_THAT(findingOf("usb-rule", machine).text.toStdString(),
                HasSubstr("is for 1a2b:3c4d, but has not been applied"));
    machine.usb.added.removeLast();
    EXPECT_EQ(findingOf("usb-rule", machine).level, Level::FAILURE);
}

TEST(AddedRules, WithoutAReader_AreNamedBesideThatOfThePackage)
{
    Environment machine = machineWithAddedRule();
    machine.usb.nodes.clear();
    const auto files = [&] {
        QStringList names;
        for (const Finding &finding : checkRule(machine)) {
            EXPECT_EQ(finding.level, Level::FINE);
            names << finding.text.section(',', 0, 0).section('/', -1);
        }
        return names;
    };
    const QStringList added = {"69-idcard-reader-0001-ffff.rules",
                               "69-idcard-reader-1a2b-3c4d.rules"};
    EXPECT_EQ(files(), QStringList{"69-idcard-reader.rules"} + added);
    machine.usb.rule = {};
    EXPECT_EQ(files(), added);
}

TEST(FontsOfTheDoctor, WhereOnlyTheChoiceIsMissingNoPackageIsAskedFor)
{
    Environment machine = fineMachine();
    machine.pictures.fonts[0].isStandIn = false;
    machine.pictures.fonts[0].standIn = "Noto Sans CJK SC";
    machine.pictures.shippedFontChoice = "/build/packaging/69-idcard-reader.conf";
    const Finding finding = findingOf("text-font", machine);
    EXPECT_EQ(finding.remedy,
              "A font for it is installed, Noto Sans CJK SC. Copy the project's fontconfig file "
              "69-idcard-reader.conf to /etc/fonts/conf.d (docs/fonts.md), as root:");
    EXPECT_EQ(finding.commands,
              QStringList{"cp /build/packaging/69-idcard-reader.conf /etc/fonts/conf.d/"});
}

TEST(FontsOfTheDoctor, WhereTheChoiceIsInForceOnlyAFontIsAskedFor)
{
    Environment machine = fineMachine();
    machine.pictures.fonts[0].isStandIn = false;
    machine.pictures.isFontChoiceInForce = true;
    machine.pictures.shippedFontChoice = "/build/packaging/69-idcard-reader.conf";
    const Finding finding = findingOf("text-font", machine);
    EXPECT_EQ(finding.remedy, "Install a font for it (docs/fonts.md), as root:");
    EXPECT_EQ(finding.commands, QStringList{"apt-get install fontconfig fonts-noto-cjk"});
}

TEST(FineMachine, IsFineInEveryCheck)
{
    const auto findings = judge(fineMachine());
    EXPECT_EQ(findings.size(), checkTable().size());
    for (const CheckedFinding &one : findings) {
        EXPECT_EQ(one.finding.level, Level::FINE) << one.check->id;
        EXPECT_THAT(one.finding.remedy.toStdString(), IsEmpty()) << one.check->id;
        EXPECT_THAT(one.finding.commands, IsEmpty()) << one.check->id;
    }
    EXPECT_THAT(toReport(findings, Roads::BOTH).toStdString(),
                testing::EndsWith("\n\nAll is fine: 19 checks.\n"));
}

TEST(FineMachine, OtherWaysOfBeingFineAreFine)
{
    Environment machine = fineMachine();
    machine.usb.group = {"idcard-reader", "clerk", false, true, false, false};
    EXPECT_EQ(findingOf("usb-group", machine).level, Level::FINE) << "open to who sits there";
    machine.usb.group = {"idcard-reader", "root", true, true, false, false};
    EXPECT_EQ(findingOf("usb-group", machine).level, Level::FINE) << "root";
    node(machine).device.driver = "usbfs";
    EXPECT_EQ(findingOf("usb-driver", machine).level, Level::FINE) << "a program's claim";
    machine.readerLibrary.loading = Loading::NOT_TRIED;
    machine.readerLibrary.definedIn = "/opt/host";
    EXPECT_EQ(findingOf("reader-library", machine).text,
              "its functions are in the process already, from /opt/host");
    node(machine).rights.hasAcl = true;
    EXPECT_THAT(findingOf("usb-permission", machine).text.toStdString(),
                HasSubstr("mode 0660, owner root, group idcard-reader, with an access list"));
    EXPECT_THAT(findingOf("usb-permission", machine).text.toStdString(),
                testing::EndsWith("; root may open it whatever that is"));
    for (const auto &[dpiX, dpiY] : {std::pair(60., 65.), std::pair(370., 400.)}) {
        claim(machine, dpiX, dpiY);
        EXPECT_EQ(findingOf("resolution", machine).level, Level::FINE) << dpiX;
    }
}

TEST(RoadsOfTheDoctor, EachLeavesTheOthersChecksOut)
{
    const auto idsOf = [](Roads roads) {
        Environment machine = fineMachine();
        machine.roads = roads;
        QStringList ids;
        for (const CheckedFinding &one : judge(machine))
            ids << one.check->id;
        return ids.join(' ').toStdString();
    };
    EXPECT_EQ(idsOf(Roads::LIBRARY),
              "library-version qt-version locale configuration reader-library "
              "photo-decoder screen resolution jpeg text-font number-font web-pages service");
    EXPECT_EQ(idsOf(Roads::USB), "library-version qt-version locale configuration usb-reader "
                                 "usb-permission usb-rule usb-group "
                                 "usb-driver usb-holder photo-decoder web-pages service");
}

INSTANTIATE_TEST_SUITE_P(
    WebPages, Checks,
    testing::Values(
        Fault{"list with a mistake", "web-pages",
              [](Environment &m) {
                  m.webPages.list = {{}, "LIST, line 2: it is wrong."};
              },
              Level::FAILURE, "LIST, line 2: it is wrong.", "Correct the list"},
        Fault{"no browser", "web-pages", [](Environment &m) { m.webPages.browsers.clear(); },
              Level::FAILURE, "Sites may read cards, but no browser has the extension",
              "idcard-browser-setup --allow https://pms.example --browser chromium"},
        Fault{"missing file of the host", "web-pages",
              [](Environment &m) { m.webPages.browsers[1].host.clear(); }, Level::FAILURE,
              "firefox lacks /usr/lib/mozilla/host.json",
              "idcard-browser-setup --allow https://pms.example --browser firefox"},
        Fault{"host that cannot start", "web-pages",
              [](Environment &m) { m.webPages.browsers[0].canHostStart = false; }, Level::FAILURE,
              "/etc/chromium/host.json names /usr/libexec/host, which cannot be started",
              "Install idcard-reader-browser again."},
        Fault{"sites without an extension", "web-pages",
              [](Environment &m) {
                  m.webPages.sitesLeftOut = QStringList{"https://pms.example", "http://intranet"};
              },
              Level::FAILURE,
              "No browser's extension was made for https://pms.example, http://intranet",
              "idcard-browser-setup --renew"}));

TEST(WebPagesCheck, NamesTheSites)
{
    Environment machine = fineMachine();
    EXPECT_EQ(findingOf("web-pages", machine).text, "https://pms.example, http://intranet");
    machine.webPages.list = {};
    machine.webPages.browsers.clear();
    EXPECT_EQ(findingOf("web-pages", machine).text, "No site may read cards");
    EXPECT_EQ(findingOf("web-pages", machine).level, Level::FINE);
}

TEST(WebPagesCheck, SaysWhatTheHostLastAnswered)
{
    Environment machine = fineMachine();
    machine.webPages.lastAnswer = {{"time", "2026-11-22T10:20:30"},
                                   {"origin", "https://evil.example\n"},
                                   {"result", "BROWSER_ORIGIN_NOT_LISTED"}};
    machine.webPages.list = {};
    const Finding finding = findingOf("web-pages", machine);
    EXPECT_EQ(finding.text, "No site may read cards; the last answer, at 2026-11-22T10:20:30, was "
                            "BROWSER_ORIGIN_NOT_LISTED for https://evil.example\\u000A");
}

TEST(WebPagesCheck, WhereNothingIsInstalled_FindsNothing)
{
    Environment machine = fineMachine();
    machine.webPages = {};
    EXPECT_THAT(checkWebPages(machine), IsEmpty());
}

TEST(TwoReaders, AreReportedOneAfterTheOther)
{
    Environment machine = fineMachine();
    UsbNode other = node(machine);
    other.device.node = "/dev/bus/usb/001/003";
    other.device.mayOpen = false;
    machine.usb.nodes << other;
    const Findings findings = checkPermission(machine);
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings[0].level, Level::FINE);
    EXPECT_EQ(findings[1].level, Level::FAILURE);
    EXPECT_THAT(findings[1].text.toStdString(), HasSubstr("/dev/bus/usb/001/003"));
}

TEST(ScreenThatIsNotThere, HasNoResolutionToJudge)
{
    Environment machine = fineMachine();
    machine.pictures.screen.reset();
    EXPECT_THAT(checkResolution(machine), IsEmpty());
}

} // namespace
