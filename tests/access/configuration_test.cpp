// How the rule is configured, and what a software centre takes for the reader: the parts of the
// build that make them, run alone.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/files.h"
#include "tests/support/process.h"

using testing::HasSubstr;

namespace
{

class AccessConfiguration : public testing::Test
{
protected:
    /** Configures a project that holds nothing else. */
    ProcessResult configure(const QStringList &definitions)
    {
        for (const char *name : {"packaging/udev", "packaging/desktop"})
            EXPECT_TRUE(QDir(folder.path()).mkpath(name));
        writeFile(folder.filePath("CMakeLists.txt"), "cmake_minimum_required(VERSION 3.13)\n"
                                                     "project(access LANGUAGES NONE)\n"
                                                     "set(CMAKE_INSTALL_SBINDIR sbin)\n"
                                                     "set(CMAKE_INSTALL_DATADIR share)\n"
                                                     "add_subdirectory(packaging)\n");
        writeFile(folder.filePath("packaging/CMakeLists.txt"),
                  "include(access.cmake)\ninclude(desktop.cmake)\n");
        const QString source = IDCARD_SOURCE_DIR "/packaging/";
        const QString own = folder.filePath("packaging/");
        for (const char *name : {"access.cmake", "desktop.cmake", "udev/69-idcard-reader.rules.in",
                                 "udev/idcard-reader-access.in", "desktop/idcard-viewer.desktop",
                                 "desktop/idcard-viewer.metainfo.xml.in"})
            QFile::copy(source + name, own + name);
        return runProcess(IDCARD_CMAKE,
                          QStringList{"-S", folder.path(), "-B", folder.filePath("build")} +
                              definitions);
    }

    QByteArray made(const QString &pattern)
    {
        const QDir packaging(folder.filePath("build/packaging"));
        const QStringList names = packaging.entryList({pattern}, QDir::Files);
        EXPECT_EQ(names.size(), 1);
        return readFile(packaging.filePath(names.value(0)));
    }

    QByteArray rule() { return made("69-idcard-reader.rules"); }

    QTemporaryDir folder;
};

TEST_F(AccessConfiguration, IdsAreThePlaceholdersUnlessGiven)
{
    ASSERT_EQ(configure({}).exitStatus, 0);
    EXPECT_THAT(rule().toStdString(),
                HasSubstr(R"(ATTR{idVendor}=="1209", ATTR{idProduct}=="0001")"));
}

TEST_F(AccessConfiguration, GivenIdsAreWrittenAsUdevAndSoftwareCentresTakeThem)
{
    ASSERT_EQ(configure({"-DIDCARD_USB_VENDOR_ID=04aB", "-DIDCARD_USB_PRODUCT_ID=00CD"}).exitStatus,
              0);
    EXPECT_THAT(rule().toStdString(),
                HasSubstr(R"(ATTR{idVendor}=="04ab", ATTR{idProduct}=="00cd")"));
    EXPECT_THAT(made("*.metainfo.xml").toStdString(),
                HasSubstr("<modalias>usb:v04ABp00CDd*</modalias>"));
}

TEST_F(AccessConfiguration, WrongIdsStopItWithTheValueAndWhatToGive)
{
    const QString ids = QStringLiteral("-DIDCARD_USB_%1_ID:STRING=%2");
    for (const char *wrong : {"", "120", "12090", "0x12", "12g9", "1209;0001", "*", "12\"9"}) {
        for (const auto &[bad, good] : {std::pair("VENDOR", "PRODUCT"), {"PRODUCT", "VENDOR"}}) {
            const ProcessResult run = configure(
                {ids.arg(QLatin1String(bad), QLatin1String(wrong)), ids.arg(good, "0001")});
            EXPECT_NE(run.exitStatus, 0) << bad << wrong;
            const std::string message = run.standardError.simplified().toStdString();
            EXPECT_THAT(message,
                        HasSubstr(std::string("IDCARD_USB_") + bad + "_ID is '" + wrong + "'"));
            EXPECT_THAT(message, HasSubstr("four hexadecimal digits"));
        }
    }
}

} // namespace
