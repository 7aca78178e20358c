// The configuration files: what they may hold, what is refused, and which one wins.

#include <gmock/gmock.h>

#include <QDir>

#include <sys/stat.h>

#include "apps/reading/configuration.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using namespace app;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

class ConfigurationTest : public FolderTest
{
protected:
    QString machineFile() const { return path("machine.conf"); }
    QString userFile() const { return path("user.conf"); }

    Configuration read() const { return readConfiguration({machineFile(), userFile()}); }

    ConfigurationFile reading(const QByteArray &content) const
    {
        writeFile(userFile(), content);
        return read().at(1);
    }
};

TEST_F(ConfigurationTest, MissingAndEmptyFilesSayNothing)
{
    for (const ConfigurationFile &file : read()) {
        EXPECT_FALSE(file.isThere);
        EXPECT_THAT(file.placedMistake().toStdString(), IsEmpty());
        EXPECT_TRUE(file.settings.isEmpty());
    }
    EXPECT_EQ(valueIn(read(), "road"), "");
    const ConfigurationFile empty = reading("");
    EXPECT_TRUE(empty.isThere);
    EXPECT_THAT(empty.placedMistake().toStdString(), IsEmpty());
    EXPECT_FALSE(readConfiguration({userFile() + "/below.conf"}).first().isThere);
}

TEST_F(ConfigurationTest, SettingsStandOneALineWithBlanksAndComments)
{
    const ConfigurationFile file = reading("# 三号柜台\n"
                                           "\n"
                                           "  road=usb\r\n"
                                           "\tdevice =  1209:00aB   # the new one\n"
                                           "#timeout = soon\n"
                                           "timeout = 30");
    EXPECT_EQ(file.placedMistake().toStdString(), "");
    EXPECT_TRUE(file.isThere);
    const Configuration configuration = read();
    EXPECT_EQ(valueIn(configuration, "road"), "usb");
    EXPECT_EQ(valueIn(configuration, "device"), "1209:00aB");
    EXPECT_EQ(valueIn(configuration, "timeout"), "30");
}

TEST_F(ConfigurationTest, FileOfTheUserWinsKeyByKey)
{
    writeFile(machineFile(), "road = usb\ntimeout = 30\n");
    writeFile(userFile(), "timeout = 5\ndevice = 1209:0001\n");
    EXPECT_EQ(valueIn(read(), "road"), "usb");
    EXPECT_EQ(valueIn(read(), "timeout"), "5");
    EXPECT_EQ(valueIn(read(), "device"), "1209:0001");
}

struct Wrong {
    QByteArray content;
    int line;
    const char *words;
};

void PrintTo(const Wrong &wrong, std::ostream *stream)
{
    *stream << wrong.content.left(40).toStdString();
}

class WrongConfiguration : public ConfigurationTest, public testing::WithParamInterface<Wrong>
{
};

TEST_P(WrongConfiguration, IsRefusedWithFileAndLine)
{
    const ConfigurationFile file = reading(GetParam().content);
    EXPECT_EQ(file.mistakeLine, GetParam().line);
    EXPECT_THAT(file.placedMistake().toStdString(), HasSubstr(GetParam().words));
    EXPECT_THAT(file.placedMistake().toStdString(),
                testing::StartsWith(GetParam().line == 0 ? userFile().toStdString() + ": "
                                                         : userFile().toStdString() + ", line " +
                                                               std::to_string(file.mistakeLine)));
    EXPECT_THAT(file.placedMistake().size(), testing::Lt(400));
    EXPECT_THAT(file.remedy.toStdString(), Not(IsEmpty()));
}

const Wrong MISTAKES[] = {
    {"road = usb\nraod = usb\n", 2,
     "there is no setting \"raod\". There are: road (library or usb), device (a vendor"},
    {"Road = usb\n", 1, "there is no setting \"Road\""},
    {"\n\nroad = air\n", 3, "road takes library or usb, not \"air\"."},
    {"road = USB\n", 1, "not \"USB\"."},
    {"road =\n", 1, "not \"\"."},
    {"road = usb library\n", 1, "not \"usb library\"."},
    {"device = 1209\n", 1, "four hexadecimal digits each, such as 1209:0001"},
    {"timeout = 0\n", 1, "a whole number from 1 to 3600, not \"0\"."},
    {"timeout = 3601\n", 1, "not \"3601\"."},
    {"timeout = 30 s\n", 1, "not \"30 s\"."},
    {"timeout = 99999999999999999999\n", 1, "from 1 to 3600"},
    {"road usb\n", 1, "\"road usb\" is no setting. A line is \"key = value\""},
    {"= usb\n", 1, "there is no setting \"\""},
    {"road = usb = usb\n", 1, "not \"usb = usb\"."},
    {"road = usb\n#\nroad = usb\n", 3, "road is set in line 1 already."},
    {"road = usb\n# \xB9\xF1\xCC\xA8\n", 2, "the line is not UTF-8 text."},
    {"road = usb\n# \xE6\x9F\n", 2, "the line is not UTF-8 text."},
    {QByteArray("\xFF\xFEr\0o\0", 6), 1, "the line is not UTF-8 text."},
    {QByteArray("road = usb\0\n", 12), 1, "not \"usb\\u0000\"."},
    {"\x1b[2J = usb\n", 1, "there is no setting \"\\u001B[2J\""},
    {QByteArray(9000, 'x'), 1, "xxx...\" is no setting"},
    {"road = usb\n" + QByteArray(20000, '#'), 0, "it is larger than 16384 bytes."}};

INSTANTIATE_TEST_SUITE_P(Mistakes, WrongConfiguration, testing::ValuesIn(MISTAKES));

TEST_F(ConfigurationTest, LargestFileIsTaken)
{
    const QByteArray line = "road = usb\n";
    EXPECT_EQ(reading(line + QByteArray(16384 - line.size(), '#')).placedMistake().toStdString(),
              "");
    EXPECT_EQ(reading(line + QByteArray(16385 - line.size(), '#')).mistakeLine, 0);
}

TEST_F(ConfigurationTest, WhatIsNotAFileIsRefusedWithoutWaiting)
{
    QDir().mkpath(userFile());
    ASSERT_EQ(mkfifo(machineFile().toLocal8Bit().constData(), 0600), 0);
    for (const ConfigurationFile &file : read()) {
        EXPECT_TRUE(file.isThere);
        EXPECT_THAT(file.placedMistake().toStdString(), HasSubstr(": it is not a file of text."));
    }
}

TEST_F(ConfigurationTest, FileThatLeadsToItselfCannotBeRead)
{
    ASSERT_TRUE(QFile::link(userFile(), userFile()));
    EXPECT_THAT(read().at(1).placedMistake().toStdString(), HasSubstr("it cannot be read: "));
}

// Where the files are.

class ConfigurationPaths : public testing::Test
{
protected:
    ConfigurationPaths() : m_home(qgetenv("HOME")), m_folder(qgetenv("XDG_CONFIG_HOME")) {}
    ~ConfigurationPaths() override
    {
        qputenv("HOME", m_home);
        qputenv("XDG_CONFIG_HOME", m_folder);
    }

    static QStringList pathsWith(const char *home, const char *folder)
    {
        qputenv("HOME", home);
        qputenv("XDG_CONFIG_HOME", folder);
        return configurationPaths().mid(1);
    }

private:
    QByteArray m_home;
    QByteArray m_folder;
};

TEST_F(ConfigurationPaths, FirstIsTheFileOfTheMachine)
{
    EXPECT_EQ(configurationPaths().first(),
              QStringLiteral(IDCARD_CONFIGURATION_FOLDER "/idcard-reader.conf"));
}

TEST_F(ConfigurationPaths, SecondIsInTheFolderOfTheUser)
{
    EXPECT_EQ(pathsWith("/home/a", "/b"), QStringList{"/b/idcard-reader.conf"});
    EXPECT_EQ(pathsWith("/home/a", ""), QStringList{"/home/a/.config/idcard-reader.conf"});
    EXPECT_EQ(pathsWith("/home/a", "b"), QStringList{"/home/a/.config/idcard-reader.conf"});
    EXPECT_EQ(pathsWith("", ""), QStringList());
}

} // namespace
