// The sites that may read cards.

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include "apps/web_sites/origin_list.h"
#include "tests/support/files.h"

using namespace app;

namespace
{

class OriginListFile : public testing::Test
{
protected:
    OriginList listOf(const QByteArray &content, mode_t mode = 0644)
    {
        writeFile(path(), content);
        EXPECT_EQ(::chmod(QFile::encodeName(path()).constData(), mode), 0);
        return readOriginList(path(), ::getuid());
    }
    QString path() const { return m_folder.filePath("origins"); }
    /** With the file's path taken out. */
    std::string mistake(const OriginList &list) const
    {
        EXPECT_TRUE(list.origins.isEmpty());
        return QString(list.mistake).replace(path(), "LIST").toStdString();
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(OriginListFile, OriginsWithCommentsAndBlankLines_AreTaken)
{
    const OriginList list =
        listOf("# the counter\n\nhttps://pms.example\n  http://intranet:8080  \n"
               "https://pms.example:8443\r\nhttps://[::1]:1\nhttp://10.0.0.7");
    EXPECT_EQ(list.mistake, "");
    EXPECT_EQ(list.origins,
              (QStringList{"https://pms.example", "http://intranet:8080",
                           "https://pms.example:8443", "https://[::1]:1", "http://10.0.0.7"}));
}

TEST_F(OriginListFile, Empty_HasNoOrigin)
{
    const OriginList list = listOf("");
    EXPECT_EQ(list.mistake, "");
    EXPECT_TRUE(list.origins.isEmpty());
}

TEST_F(OriginListFile, LineThatIsNoOrigin_RefusesTheListWithItsNumber)
{
    EXPECT_EQ(mistake(listOf("https://pms.example\n\nhttps://*.example\n")),
              "LIST, line 3: \"https://*.example\" is no origin, such as https://pms.example or "
              "https://pms.example:8443.");
    EXPECT_EQ(mistake(listOf("\xff\xfe\n")).substr(0, 13), "LIST, line 1:");
}

TEST_F(OriginListFile, OfAnotherUser_IsRefused)
{
    listOf("https://pms.example\n");
    const uid_t other = ::getuid() + 1;
    EXPECT_EQ(mistake(readOriginList(path(), other)), "LIST belongs to the user with the number " +
                                                          std::to_string(::getuid()) + ", not to " +
                                                          std::to_string(other) + ".");
}

TEST_F(OriginListFile, WritableByOthers_IsRefused)
{
    for (const mode_t mode : {0664U, 0646U, 0666U})
        EXPECT_EQ(mistake(listOf("https://pms.example\n", mode)),
                  "LIST can be written by others than its owner.");
    EXPECT_EQ(listOf("https://pms.example\n", 0444).mistake, "");
}

TEST_F(OriginListFile, ThatIsNotThereOrNoFile_IsRefused)
{
    EXPECT_EQ(mistake(readOriginList(path(), ::getuid())),
              "LIST cannot be read: No such file or directory.");
    ASSERT_EQ(::mkdir(QFile::encodeName(path()).constData(), 0755), 0);
    EXPECT_EQ(mistake(readOriginList(path(), ::getuid())), "LIST is no file.");
    ASSERT_EQ(::rmdir(QFile::encodeName(path()).constData()), 0);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0644), 0);
    EXPECT_EQ(mistake(readOriginList(path(), ::getuid())), "LIST is no file.");
}

TEST_F(OriginListFile, LargerThanAnyList_IsRefused)
{
    EXPECT_EQ(mistake(listOf(QByteArray(65537, '\n'))), "LIST is larger than 65536 bytes.");
    EXPECT_EQ(listOf(QByteArray(65536, '\n')).mistake, "");
}

TEST(Origin, AsBrowsersWriteIt_IsOne)
{
    for (const char *text : {"https://pms.example", "http://intranet", "https://a-b.c_d.example:1",
                             "https://xn--fiqs8s.example:65535", "http://127.0.0.1:443",
                             "https://[2001:db8::1]", "https://pms.example:80",
                             "https://255.0.99.100", "https://3com.example", "https://1.2.3.x4"})
        EXPECT_TRUE(isOrigin(text)) << text;
}

TEST(Origin, InAnyOtherForm_IsNone)
{
    for (const char *text : {"",
                             "pms.example",
                             "https://",
                             "https://pms.example/",
                             "https://pms.example/page",
                             "https://PMS.example",
                             "HTTPS://pms.example",
                             "https://pms.example:443",
                             "http://pms.example:80",
                             "https://pms.example:0",
                             "https://pms.example:08443",
                             "https://pms.example:65536",
                             "https://pms.example:99999",
                             "https://pms.example:",
                             "https://*.example",
                             "https://*",
                             "*",
                             "null",
                             "https://user@pms.example",
                             "https://pms.example https://b.example",
                             "https://pms.example.",
                             "https://.example",
                             "https://-a.example",
                             "https://a..example",
                             "ftp://pms.example",
                             "file://",
                             "wss://a.example",
                             "chrome-extension://abc",
                             "https://pms.example?x",
                             "https://pms.example#x",
                             "https://\xe4\xb8\xad.example",
                             "https://[::1",
                             "https://[1:2]",
                             "https://[::0001]",
                             "https://[::1.2.3.4]",
                             "https://[v7.a]",
                             "https://[fe80::1%25eth0]",
                             "https://a%2e.example",
                             "\nhttps://a.example",
                             "https://a.example\n",
                             "https://192.168.1.300",
                             "https://192.168.1",
                             "https://192.168.1.1.1",
                             "https://192.168.1.01",
                             "https://pms.1",
                             "https://17",
                             "https://pms.0x1f",
                             "https://0x"})
        EXPECT_FALSE(isOrigin(QString::fromUtf8(text))) << text;
    EXPECT_FALSE(isOrigin("https://" + QString(254, 'a')));
    const QString longest = "https://a." + QString("a.").repeated(125) + 'a';
    EXPECT_TRUE(isOrigin(longest)); // 253 characters of host
    EXPECT_FALSE(isOrigin(longest + 'a'));
}

} // namespace
