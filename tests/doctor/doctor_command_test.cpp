// "idcard-reader doctor" without a bus: versions, locale, the makers' libraries and the pictures.

#include <csignal>

#include <QLibraryInfo>

#include <sys/resource.h>

#include "tests/doctor/doctor_runner.h"
#include "tests/support/process.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

TEST_F(Doctor, MachineInOrderIsFine)
{
    const ProcessResult text = run({"--road", "library"});
    expectEnd(text, 0);
    EXPECT_THAT(text.output(), EndsWith("\n\nAll is fine: 11 checks.\n"));
    const ProcessResult json = run({"--road", "library", "--json"});
    EXPECT_EQ(json.exitStatus, 0);
    const QJsonObject report = reportOf(json);
    EXPECT_EQ(report["result"].toString(), "ok");
    EXPECT_THAT(textOf(findingIn(report, "resolution")),
                AllOf(StartsWith("100 dpi ("), HasSubstr("painted with 337 x 213 pixels")));
    EXPECT_THAT(textOf(findingIn(report, "number-font")),
                EndsWith("its stand-in Noto Sans Mono CJK SC Bold"));
}

TEST_F(Doctor, ConfigurationIsShownAndItsMistakeIsAFailure)
{
    set("XDG_CONFIG_HOME", path("."));
    const QString file = path("idcard-reader.conf");
    writeFile(file, "# counter 3\nroad = usb\ndevice = 1209:00AB\ntimeout = 30\n");
    const ProcessResult fine = run({"--road", "library", "--json"});
    EXPECT_EQ(fine.exitStatus, 0) << fine.output();
    EXPECT_EQ(textOf(findingIn(reportOf(fine), "configuration")),
              file.toStdString() + ": road = usb, device = 1209:00AB, timeout = 30");

    writeFile(file, "road = usb\ntimeout = soon\n");
    expectFault("configuration", "failure", "idcard-reader.conf, line 2: timeout takes");
    QFile::remove(file);
    QDir().mkpath(file);
    expectFault("configuration", "failure", "idcard-reader.conf: it is not a file of text.");
}

TEST_F(Doctor, LinesFitATerminalButForCommandsAndPaths)
{
    set("LC_ALL", "xx_YY.UTF-8");
    const ProcessResult text = run({});
    for (const QByteArray &line : text.standardOutput.split('\n')) {
        if (!line.contains('/') && !line.startsWith("ln ")) {
            EXPECT_LE(QString::fromUtf8(line).size(), 79) << line.toStdString();
        }
    }
}

TEST_F(Doctor, VerboseShowsWhatLibrariesPrintAndItIsNeverInTheReport)
{
    install(readFile(builtLibrary("WRITES")));
    const ProcessResult quiet = run({"--road", "library"});
    EXPECT_THAT(quiet.error(), IsEmpty());
    const ProcessResult verbose = run({"--road", "library", "--verbose"});
    EXPECT_THAT(verbose.error(), StartsWith("noise\nnoise\n"));
    EXPECT_EQ(verbose.output(), quiet.output());
    EXPECT_EQ(verbose.exitStatus, 0);
}

TEST_F(Doctor, OtherVersionsAreReported)
{
    preload("libidcard_other_versions.so");
    expectFault("qt-version", "failure",
                "5.9.5, built with " QT_VERSION_STR ": they do not go together");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    const QJsonObject library = findingIn(report, "library-version");
    EXPECT_EQ(library["level"].toString(), "warning");
    EXPECT_THAT(textOf(library), HasSubstr("\"version:0.9.0\""));
}

TEST_F(Doctor, MissingLocaleIsAWarning)
{
    set("LC_ALL", "xx_YY.UTF-8");
    expectFault("locale", "warning", "This system has no locale \"xx_YY.UTF-8\"");
}

TEST_F(Doctor, LocaleWithoutUtf8IsAWarning)
{
    set("LC_ALL", "C");
    expectFault("locale", "warning", "\"C\" has the encoding ANSI_X3.4-1968, not UTF-8");
}

TEST_F(Doctor, MakersLibraryThatIsNowhereIsAFailure)
{
    set("LD_LIBRARY_PATH", path("nothing"));
    const QJsonObject finding = expectFault("reader-library", "failure", "is not here; looked in");
    EXPECT_THAT(textOf(finding), HasSubstr(", " + path("nothing").toStdString() + ", "));
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    EXPECT_EQ(findingIn(report, "photo-decoder")["level"].toString(), "warning");
}

TEST_F(Doctor, MakersLibraryInTheCurrentFolderIsNotFound)
{
    install(readFile(builtLibrary("WRITES")));
    set("LD_LIBRARY_PATH", path("nothing"));
    runIn(path("vendor"));
    const QJsonObject finding = expectFault("reader-library", "failure", "is not here; looked in");
    const QString places =
        finding["text"].toString().section("looked in ", 1).section(" and in", 0, 0);
    for (const QString &place : places.split(", "))
        EXPECT_THAT(place.toStdString(), StartsWith("/"));
}

TEST_F(Doctor, MakersLibraryToWhichOnlyThePathOfThisProgramLeadsIsNotFound)
{
    // "../lib" is that path; the library of ours comes from elsewhere.
    for (const char *folder : {"bin", "lib"})
        QDir().mkpath(path(folder));
    ASSERT_TRUE(QFile::copy(QDir(IDCARD_BUILD_BIN_DIR).filePath("idcard-reader"),
                            path("bin/idcard-reader")));
    writeFile(path("lib/" IDCARD_VENDOR_READER_LIBRARY), readFile(builtLibrary("WRITES")));
    runFrom(path("bin/idcard-reader"));
    set("LD_LIBRARY_PATH", IDCARD_BUILD_LIB_DIR);
    const QJsonObject finding = expectFault("reader-library", "failure", "is not here; looked in");
    EXPECT_THAT(textOf(finding), Not(HasSubstr(path("lib").toStdString() + ",")));
}

TEST_F(Doctor, MakersLibraryForAnotherProcessorIsAFailure)
{
    QByteArray content = readFile(builtLibrary("WRITES"));
    content[18] = '\xf3'; // EM_RISCV
    content[19] = '\0';
    install(content);
    // Where it does not go the loader goes on, and finds the one that is installed.
    EXPECT_EQ(run({"--road", "library"}).exitStatus, 0);
    set("LD_LIBRARY_PATH", path("vendor"));
    expectFault("reader-library", "failure", "is for another processor: RISC-V");
}

TEST_F(Doctor, MakersLibraryThatIsCutOffIsAFailure)
{
    install(readFile(builtLibrary("WRITES")).left(5000));
    expectFault("reader-library", "failure", "is cut off: its 5000 bytes are fewer than");
}

TEST_F(Doctor, MakersLibraryWithoutAFunctionIsAFailure)
{
    install(readFile(builtLibrary("LACKS_FUNCTIONS")));
    expectFault("reader-library", "failure",
                "has no function KVO_FindIDCard, KVO_ReadIDCard, KVO_ClosePort");
}

TEST_F(Doctor, MakersLibraryWithoutALibraryThatItNeedsIsAFailure)
{
    install(readFile(builtLibrary("NEEDS_ANOTHER")));
    expectFault("reader-library", "failure", "needs libidcard_maker_needed.so, which is not");
}

TEST_F(Doctor, MissingDependencyIsKnownWhereTheLoaderSpeaksChinese)
{
    install(readFile(builtLibrary("NEEDS_ANOTHER")));
    set("LOCPATH", IDCARD_CHINESE_LOCALES);
    set("LC_ALL", "zh_CN.UTF-8");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    EXPECT_TRUE(findingIn(report, "reader-library")["commands"].toArray().contains(
        "apt-file search libidcard_maker_needed.so"));
}

TEST_F(Doctor, MakersLibraryThatCrashesIsAFailureAndLeavesNoCoreFile)
{
    install(readFile(builtLibrary("CRASHES")));
    expectFault("reader-library", "failure", "crashes (signal 6");

    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    const rlimit all{limit.rlim_max, limit.rlim_max};
    setrlimit(RLIMIT_CORE, &all);
    QDir().mkpath(path("here"));
    runIn(path("here"));
    EXPECT_EQ(run({"--road", "library"}).exitStatus, 10);
    EXPECT_THAT(namesIn(path("here")), IsEmpty());
    setrlimit(RLIMIT_CORE, &limit);
}

TEST_F(Doctor, FunctionsThatAreInTheProcessAreTakenFromThere)
{
    set("LD_LIBRARY_PATH", path("nothing"));
    preload("libidcard_simulator.so");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    for (const char *check : {"reader-library", "photo-decoder"}) {
        const QJsonObject finding = findingIn(report, check);
        EXPECT_EQ(finding["level"].toString(), "ok");
        EXPECT_THAT(textOf(finding), AllOf(StartsWith("its functions are in the process already"),
                                           EndsWith("/libidcard_simulator.so")));
    }
}

TEST_F(Doctor, DisplayThatIsNotThereIsAFailureAndTheRestIsLookedAt)
{
    set("QT_QPA_PLATFORM", "xcb");
    expectFault("screen", "failure",
                "Qt does not come up with the platform \"xcb\": could not connect to display");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    EXPECT_EQ(report["counts"].toObject()["failure"].toInt(), 1);
    EXPECT_EQ(report["findings"].toArray().size(), 10) << "no resolution without a screen";
}

TEST_F(Doctor, PlatformThatQtDoesNotHaveIsAFailure)
{
    set("QT_QPA_PLATFORM", "no-such-platform");
    expectFault("screen", "failure", "Could not find the Qt platform plugin \"no-such-platform\"");
}

TEST_F(Doctor, PlatformWithoutFontsIsNamedAsTheirCause)
{
    set("QT_QPA_PLATFORM", "minimal");
    expectFault("number-font", "failure", "Qt's platform \"minimal\" knows no fonts");
}

TEST_F(Doctor, OffscreenForWantOfADisplayIsAWarning)
{
    set("QT_QPA_PLATFORM", QString());
    expectFault("screen", "warning", "chooses Qt's platform \"offscreen\" by itself");
}

TEST_F(Doctor, UnbelievableResolutionIsAFailure)
{
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=1x1:port=0");
    const QJsonObject finding =
        expectFault("resolution", "failure", "The screen claims 20320 x 15240 dpi (1 x 1 mm)");
    EXPECT_THAT(textOf(finding), HasSubstr("painted with 68480 x "));
}

TEST_F(Doctor, UnusualAndUnequalResolutionsAreWarnings)
{
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=400x300:port=0");
    expectFault("resolution", "warning", "The screen claims 50.8 dpi (400 x 300 mm), which is");
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=200x120:port=0");
    expectFault("resolution", "warning", "different resolutions across and down, 101.6 x 127 dpi");
}

/** The program in a folder of its own, whose Qt plug-ins are those of that folder. */
class DoctorWithOwnPlugins : public Doctor
{
protected:
    void SetUp() override
    {
        Doctor::SetUp();
        QDir().mkpath(path("bin"));
        QDir().mkpath(path("plugins"));
        ASSERT_TRUE(QFile::copy(QDir(IDCARD_BUILD_BIN_DIR).filePath("idcard-reader"),
                                path("bin/idcard-reader")));
        ASSERT_TRUE(QFile::link(IDCARD_BUILD_LIB_DIR, path("lib")));
        writeFile(path("bin/qt.conf"), "[Paths]\nPlugins=" + path("plugins").toLocal8Bit() + '\n');
        runFrom(path("bin/idcard-reader"));
    }

    void takePlatforms() const
    {
        const QString plugins = QLibraryInfo::location(QLibraryInfo::PluginsPath);
        ASSERT_TRUE(QFile::link(plugins + "/platforms", path("plugins/platforms")));
    }
};

TEST_F(DoctorWithOwnPlugins, MissingJpegPluginIsAFailure)
{
    takePlatforms();
    const QJsonObject finding = expectFault("jpeg", "failure", "Qt has no JPEG plug-in");
    EXPECT_THAT(textOf(finding), HasSubstr("looked in " + path("plugins").toStdString()));
}

TEST_F(DoctorWithOwnPlugins, BrokenJpegPluginIsAFailure)
{
    takePlatforms();
    QDir().mkpath(path("plugins/imageformats"));
    writeFile(path("plugins/imageformats/libqjpeg.so"), QByteArray(5000, 'x'));
    const QJsonObject finding = expectFault("jpeg", "failure", "Qt's JPEG plug-in does not work");
    EXPECT_THAT(textOf(finding), HasSubstr(path("plugins/imageformats/libqjpeg.so").toStdString()));
}

TEST_F(DoctorWithOwnPlugins, QtWithoutAnyPlatformFailsInEverythingThatItPaints)
{
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    for (const char *check : {"screen", "jpeg", "text-font", "number-font"}) {
        EXPECT_EQ(findingIn(report, check)["level"].toString(), "failure") << check;
    }
}

TEST_F(Doctor, NoChineseFontIsAFailure)
{
    writeFile(path("fonts.conf"),
              "<fontconfig><dir>" + path("none").toUtf8() + "</dir></fontconfig>");
    set("FONTCONFIG_FILE", path("fonts.conf"));
    expectFault("text-font", "failure", "no font here has the Chinese characters");
}

TEST_F(Doctor, FontWithoutTheStandInFileIsAWarning)
{
    writeFile(path("fonts.conf"),
              "<fontconfig><dir>/usr/share/fonts/opentype/noto</dir><selectfont><rejectfont>"
              "<glob>*</glob></rejectfont><acceptfont>"
              "<glob>*/NotoSansCJK-Regular.ttc</glob></acceptfont></selectfont>"
              "<match target=\"pattern\"><edit name=\"family\" mode=\"assign_replace\" "
              "binding=\"strong\"><string>Noto Sans CJK JP</string></edit></match></fontconfig>");
    set("FONTCONFIG_FILE", path("fonts.conf"));
    expectFault("number-font", "warning", "no stand-in is named");
}

TEST_F(Doctor, HostThatIgnoresSigchldChangesNoVerdict)
{
    ProcessInput input;
    input.environment = variables();
    const auto handler = std::signal(SIGCHLD, SIG_IGN); // which the program inherits
    RunningTool doctor({"doctor", "--road", "library"}, input);
    std::signal(SIGCHLD, handler);
    expectEnd(doctor.result(), 0);
}

TEST_F(Doctor, MakersLibraryThatHangsIsAFailure)
{
    install(readFile(builtLibrary("HANGS")));
    const ProcessResult json = run({"--road", "library", "--json"});
    EXPECT_EQ(json.exitStatus, 10);
    EXPECT_THAT(
        textOf(findingIn(reportOf(json), "reader-library")),
        HasSubstr("/" IDCARD_VENDOR_READER_LIBRARY " hangs, and with it every program that reads"));
}

} // namespace
