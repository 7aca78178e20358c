// How the rule is configured: the part of the build that makes it, run alone.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/process.h"

using testing::HasSubstr;

namespace
{

class AccessConfiguration : public testing::Test
{
protected:
    /** Configures a project that holds nothing but the rule. */
    ProcessResult configure(const QStringList &definitions)
    {
        QFile list(folder.filePath("CMakeLists.txt"));
        EXPECT_TRUE(list.open(QIODevice::WriteOnly));
        list.write("cmake_minimum_required(VERSION 3.20)\n"
                   "project(access LANGUAGES NONE)\n"
                   "set(CMAKE_INSTALL_SBINDIR sbin)\n"
                   "add_subdirectory(packaging)\n");
        list.close();
        EXPECT_TRUE(QDir(folder.path()).mkpath("packaging/udev"));
        const QString source = IDCARD_SOURCE_DIR "/packaging/";
        const QString own = folder.filePath("packaging/");
        QFile::copy(source + "access.cmake", own + "CMakeLists.txt");
        for (const char *name : {"udev/69-idcard-reader.rules.in", "udev/idcard-reader-access.in"})
            QFile::copy(source + name, own + name);
        ProcessInput input;
        input.emulated = false;
        return runProcess(
            IDCARD_CMAKE,
            QStringList{"-S", folder.path(), "-B", folder.filePath("build")} + definitions, input);
    }

    QByteArray rule()
    {
        QFile file(folder.filePath("build/packaging/69-idcard-reader.rules"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder;
};

TEST_F(AccessConfiguration, IdsAreThePlaceholdersUnlessGiven)
{
    ASSERT_EQ(configure({}).exitStatus, 0);
    EXPECT_THAT(rule().toStdString(),
                HasSubstr(R"(ATTR{idVendor}=="1209", ATTR{idProduct}=="0001")"));
}

TEST_F(AccessConfiguration, GivenIdsAreWrittenInLowerCase)
{
    ASSERT_EQ(configure({"-DIDCARD_USB_VENDOR_ID=04aB", "-DIDCARD_USB_PRODUCT_ID=00CD"}).exitStatus,
              0);
    EXPECT_THAT(rule().toStdString(),
                HasSubstr(R"(ATTR{idVendor}=="04ab", ATTR{idProduct}=="00cd")"));
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
