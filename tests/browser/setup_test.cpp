// What lets the pages of a site read cards: the files that the setup writes and removes.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QThread>

#include <sys/stat.h>

#include "apps/browser_setup/browser_setup.h"
#include "tests/support/files.h"
#include "tests/support/process.h"

using namespace app;

namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const QString ID = QStringLiteral("ojdlmaapepnmfpiapikmeghcbbbdeipm");
const QString HOST_FILE = QStringLiteral("invalid.idcard_reader.browser_host.json");

const QString FIREFOX_LINK =
    QStringLiteral("usr/share/mozilla/extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}/"
                   "browser@idcard-reader.invalid");
const QString FIREFOX_HOST = QStringLiteral("usr/lib/mozilla/native-messaging-hosts/") + HOST_FILE;
const QString MADE = extensionsFolder().mid(1);

/** A machine with a browser that packs an extension by copying its manifest. */
class BrowserSetup : public testing::Test
{
protected:
    BrowserSetup()
    {
        for (const char *folder :
             {"shipped/chromium", "shipped/firefox", "etc/chromium/policies/managed", "etc/list"})
            EXPECT_TRUE(QDir(m_folder.path()).mkpath(folder));
        writeFile(
            path("shipped/chromium/manifest.json"),
            R"({"name": "cards", "version": "1.5.0", "externally_connectable": {"matches": []}})");
        writeFile(path("shipped/chromium/background.js"), "// background");
        writeFile(
            path("shipped/firefox/manifest.json"),
            R"({"version": "1.5.0", "content_scripts": [{"matches": [], "js": ["relay.js"]}]})");
        writeFile(path("shipped/firefox/relay.js"), "// relay");
        writeFile(path("shipped/firefox-host.json"), R"({"name": "firefox's host"})");
        writeFile(path("shipped/extension.pem"), "key");
        writeFile(path("shipped/chromium-host.json"), R"({"name": "host"})");
        setBrowser("for word; do case $word in --pack-extension=*) folder=${word#*=};; esac; done\n"
                   "umask 077; cp \"$folder/manifest.json\" \"$folder.crx\"");
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    void setBrowser(const QByteArray &script)
    {
        writeFile(path("browser"), "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(::chmod(QFile::encodeName(path("browser")).constData(), 0755), 0);
    }
    SetupPlaces places() const
    {
        return {path("etc/list/origins"), path("shipped"), m_folder.path(), path("browser"), 0};
    }
    QString allow(const QString &origin, const QString &browser = QStringLiteral("chromium")) const
    {
        return allowSite(origin, *findBrowser(browser, m_folder.path()), places());
    }
    QJsonObject json(const QString &name) const
    {
        return QJsonDocument::fromJson(readFile(path(name))).object();
    }
    std::vector<std::string> patterns() const
    {
        std::vector<std::string> all;
        const QJsonArray array = json(MADE + "/chromium/manifest.json")["externally_connectable"]
                                     .toObject()["matches"]
                                     .toArray();
        for (const QJsonValue &pattern : array)
            all.push_back(pattern.toString().toStdString());
        return all;
    }
    QString version() const { return json(MADE + "/chromium.crx")["version"].toString(); }

private:
    QTemporaryDir m_folder;
};

TEST_F(BrowserSetup, FirstSite_WritesAllFilesForEverybodyToRead)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(readFile(path("etc/list/origins")), "https://pms.example\n");
    EXPECT_THAT(patterns(), ElementsAre("https://pms.example:443/*"));
    EXPECT_EQ(version(), "1.5.0.1");
    EXPECT_EQ(readFile(path(MADE + "/chromium/background.js")), "// background");
    EXPECT_EQ(json("etc/chromium/native-messaging-hosts/" + HOST_FILE)["name"], "host");
    const QJsonObject policy = json("etc/chromium/policies/managed/idcard-reader.json");
    const QJsonObject extension = policy["ExtensionSettings"].toObject()[ID].toObject();
    EXPECT_EQ(extension["installation_mode"], "force_installed");
    EXPECT_EQ(extension["update_url"], "file://" + path(MADE + "/update.xml"));
    EXPECT_THAT(readFile(path(MADE + "/update.xml")).toStdString(),
                HasSubstr("codebase='file://" + path(MADE + "/chromium.crx").toStdString() +
                          "' version='1.5.0.1'"));
    for (const QString &file :
         {QString("etc/list/origins"), QString(MADE + "/chromium.crx"),
          QString(MADE + "/update.xml"), QString(MADE + "/chromium/manifest.json"),
          QString("etc/chromium/policies/managed/idcard-reader.json"),
          "etc/chromium/native-messaging-hosts/" + HOST_FILE})
        EXPECT_EQ(modeOf(path(file)), 0644) << file.toStdString();
}

TEST_F(BrowserSetup, FurtherSites_AreAddedOnceAndTheExtensionBecomesNewer)
{
    writeFile(path("etc/list/origins"), "# the counter\nhttps://pms.example:8443");
    EXPECT_EQ(allow("http://intranet"), "");
    EXPECT_EQ(allow("http://intranet:81"), "");
    EXPECT_EQ(allow("http://intranet"), "");
    EXPECT_EQ(readFile(path("etc/list/origins")),
              "# the counter\nhttps://pms.example:8443\nhttp://intranet\nhttp://intranet:81\n");
    EXPECT_THAT(patterns(), ElementsAre("https://pms.example:8443/*", "http://intranet:80/*",
                                        "http://intranet:81/*"));
    EXPECT_EQ(version(), "1.5.0.3");
}

TEST_F(BrowserSetup, NewRelease_CountsFromOneAgain)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    writeFile(path("shipped/chromium/manifest.json"), R"({"version": "1.6.0"})");
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(version(), "1.6.0.1");
}

TEST_F(BrowserSetup, Renewal_MakesTheNewReleaseForTheSitesInTheBrowsersThatHaveIt)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    writeFile(path("etc/list/origins"), "https://pms.example\nhttp://intranet\n");
    writeFile(path("shipped/chromium/manifest.json"),
              R"({"version": "1.6.0", "externally_connectable": {"matches": []}})");
    EXPECT_EQ(renewExtensions(places()), "");
    EXPECT_EQ(version(), "1.6.0.1");
    EXPECT_THAT(patterns(), ElementsAre("https://pms.example:443/*", "http://intranet:80/*"));
    EXPECT_FALSE(QFile::exists(path(MADE + "/firefox")));

    EXPECT_EQ(allow("https://pms.example", "firefox"), "");
    EXPECT_EQ(renewExtensions(places()), "");
    EXPECT_EQ(version(), "1.6.0.2");
    EXPECT_EQ(json(MADE + "/firefox/manifest.json")["version"], "1.5.0.2");
}

TEST_F(BrowserSetup, RenewalAfterAnInterruption_BringsThePolicyAndTheLinkBack)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(allow("https://pms.example", "firefox"), "");
    ASSERT_TRUE(QFile::remove(path("etc/chromium/policies/managed/idcard-reader.json")));
    ASSERT_TRUE(QFile::remove(path(FIREFOX_LINK)));
    EXPECT_EQ(renewExtensions(places()), "");
    EXPECT_TRUE(QFile::exists(path("etc/chromium/policies/managed/idcard-reader.json")));
    EXPECT_TRUE(QFile::exists(path(FIREFOX_LINK)));
}

TEST_F(BrowserSetup, RenewalWhereNothingWasEverAllowed_IsDone)
{
    ASSERT_TRUE(QFile::remove(path("browser")));
    EXPECT_EQ(renewExtensions(places()), "");
    EXPECT_THAT(allow("https://pms.example").toStdString(), HasSubstr("cannot be started"));
    EXPECT_EQ(renewExtensions(places()), "") << "the browser has got nothing";
    EXPECT_FALSE(QFile::exists(path("etc/chromium/policies/managed/idcard-reader.json")));
}

TEST_F(BrowserSetup, RenewalWithoutSites_ChangesNothing)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    writeFile(path("etc/list/origins"), "# https://pms.example\n");
    EXPECT_EQ(renewExtensions(places()), "");
    EXPECT_EQ(version(), "1.5.0.1");
}

TEST_F(BrowserSetup, RenewalThatFails_IsReported)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    ASSERT_TRUE(QFile::remove(path("browser")));
    EXPECT_THAT(renewExtensions(places()).toStdString(), HasSubstr("cannot be started"));
    writeFile(path("etc/list/origins"), "https://*.example\n");
    EXPECT_THAT(renewExtensions(places()).toStdString(), HasSubstr("origins, line 1:"));
}

TEST_F(BrowserSetup, RenewalThatFailsInOneBrowser_IsDoneInTheOther)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(allow("https://pms.example", "firefox"), "");
    ASSERT_TRUE(QFile::remove(path("browser")));
    EXPECT_THAT(renewExtensions(places()).toStdString(), HasSubstr("cannot be started"));
    EXPECT_EQ(json(MADE + "/firefox/manifest.json")["version"], "1.5.0.2");
}

TEST_F(BrowserSetup, RenewalThatFailsInEveryBrowser_IsReportedOnceForEachReason)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(allow("https://pms.example", "firefox"), "");
    ASSERT_TRUE(QFile::remove(path("browser")));
    ASSERT_TRUE(QFile::remove(path(FIREFOX_LINK)));
    ASSERT_TRUE(QDir().mkpath(path(FIREFOX_LINK)));
    const QStringList problems = renewExtensions(places()).split('\n');
    ASSERT_EQ(problems.size(), 2) << problems.join('\n').toStdString();
    EXPECT_THAT(problems[0].toStdString(), HasSubstr("cannot be started"));
    EXPECT_THAT(problems[1].toStdString(), HasSubstr("cannot be removed"));

    writeFile(path("etc/list/origins"), "https://*.example\n");
    const QString mistake = renewExtensions(places());
    EXPECT_THAT(mistake.toStdString(), HasSubstr("origins, line 1:"));
    EXPECT_FALSE(mistake.contains('\n'));
}

TEST_F(BrowserSetup, ListWithAMistake_ChangesNothing)
{
    writeFile(path("etc/list/origins"), "https://*.example\n");
    EXPECT_THAT(allow("https://pms.example").toStdString(), HasSubstr("origins, line 1:"));
    EXPECT_EQ(readFile(path("etc/list/origins")), "https://*.example\n");
    EXPECT_FALSE(QFile::exists(path(MADE)));
}

TEST_F(BrowserSetup, BrowserThatIsMissingOrDoesNotPack_IsReportedAndAllowsNothing)
{
    setBrowser("echo 'no key' >&2; exit 1");
    EXPECT_EQ(allow("https://pms.example"),
              path("browser") + ", the browser, did not pack the extension: no key");
    ASSERT_TRUE(QFile::remove(path("browser")));
    EXPECT_THAT(allow("https://pms.example").toStdString(), HasSubstr("cannot be started"));
    EXPECT_FALSE(QFile::exists(path("etc/list/origins")));
    EXPECT_FALSE(QFile::exists(path("etc/chromium/policies/managed/idcard-reader.json")));
}

TEST_F(BrowserSetup, BrowserThatDoesNotPack_LeavesWhatWasThere)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    const QByteArray packed = readFile(path(MADE + "/chromium.crx"));
    const QByteArray update = readFile(path(MADE + "/update.xml"));
    const QByteArray half = "for word; do case $word in --pack-extension=*) folder=${word#*=};; "
                            "esac; done\necho half > \"$folder.crx\"; echo disk full >&2; ";
    for (const char *end : {"exit 1", "kill -KILL $$"}) {
        setBrowser(half + end);
        EXPECT_THAT(allow("https://two.example").toStdString(), HasSubstr("did not pack"));
        EXPECT_EQ(readFile(path(MADE + "/chromium.crx")), packed);
        EXPECT_EQ(readFile(path(MADE + "/update.xml")), update);
        EXPECT_TRUE(QFile::exists(path("etc/chromium/policies/managed/idcard-reader.json")));
        EXPECT_EQ(readFile(path("etc/list/origins")), "https://pms.example\n");
    }
}

TEST_F(BrowserSetup, BrowserThatPacksNothing_IsReported)
{
    setBrowser("exit 0");
    EXPECT_THAT(allow("https://pms.example").toStdString(), HasSubstr("did not pack"));
    EXPECT_FALSE(QFile::exists(path(MADE + "/chromium.crx")));
}

TEST_F(BrowserSetup, Removal_LeavesTheFilesOfOthersAndTheCommentsOfTheList)
{
    writeFile(path("etc/chromium/policies/managed/other.json"), "{}");
    writeFile(path("etc/list/origins"), "# the counter\n");
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(removeSites(places()), "");
    EXPECT_EQ(readFile(path("etc/list/origins")), "# the counter\n");
    EXPECT_FALSE(QFile::exists(path(MADE)));
    EXPECT_THAT(namesIn(path("etc/chromium/policies/managed")), ElementsAre("other.json"));
    EXPECT_THAT(namesIn(path("etc/chromium/native-messaging-hosts")), ElementsAre());
    EXPECT_EQ(removeSites(places()), "");
}

TEST_F(BrowserSetup, RemovalThatFailsForOneFile_IsReportedAndTakesTheOthers)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    const QString policy = path("etc/chromium/policies/managed/idcard-reader.json");
    ASSERT_TRUE(QFile::remove(policy));
    ASSERT_TRUE(QDir().mkpath(policy + "/in the way"));
    EXPECT_THAT(
        removeSites(places()).toStdString(),
        AllOf(HasSubstr(policy.toStdString() + " cannot be removed"), Not(HasSubstr("\n"))));
    EXPECT_FALSE(QFile::exists(path("etc/chromium/native-messaging-hosts/") + HOST_FILE));
    EXPECT_FALSE(QFile::exists(path(MADE)));
    EXPECT_EQ(readFile(path("etc/list/origins")), "");
}

TEST_F(BrowserSetup, Firefox_IsLinkedToAnExtensionForTheSites)
{
    EXPECT_EQ(allow("https://pms.example:8443"), "");
    EXPECT_EQ(allow("http://intranet", "firefox"), "");
    EXPECT_EQ(QFile::symLinkTarget(path(FIREFOX_LINK)), path(MADE + "/firefox"));
    EXPECT_EQ(readFile(path(MADE + "/firefox/relay.js")), "// relay");
    EXPECT_EQ(modeOf(path(MADE + "/firefox/relay.js")), 0644);
    const QJsonObject manifest = json(MADE + "/firefox/manifest.json");
    EXPECT_EQ(manifest["version"], "1.5.0.1");
    EXPECT_EQ(QJsonDocument(manifest["content_scripts"].toArray()).toJson(QJsonDocument::Compact),
              R"([{"js":["relay.js"],"matches":["https://pms.example/*","http://intranet/*"]}])");
    EXPECT_FALSE(manifest.contains("externally_connectable"));
    EXPECT_EQ(json(FIREFOX_HOST)["name"], "firefox's host");

    EXPECT_EQ(allow("http://intranet", "firefox"), "");
    EXPECT_EQ(json(MADE + "/firefox/manifest.json")["version"], "1.5.0.2");
    EXPECT_EQ(QFile::symLinkTarget(path(FIREFOX_LINK)), path(MADE + "/firefox"));
}

TEST_F(BrowserSetup, SitesWithAnAddressOfIPv6_KeepItsColons)
{
    EXPECT_EQ(allow("http://[fd00::1]"), "");
    EXPECT_EQ(allow("https://[fd00::2]:8443"), "");
    EXPECT_THAT(patterns(), ElementsAre("http://[fd00::1]:80/*", "https://[fd00::2]:8443/*"));
    EXPECT_EQ(allow("http://[fd00::1]", "firefox"), "");
    EXPECT_THAT(readFile(path(MADE + "/firefox/manifest.json")).toStdString(),
                AllOf(HasSubstr("\"http://[fd00::1]/*\""), HasSubstr("\"https://[fd00::2]/*\"")));
}

TEST_F(BrowserSetup, RemovalFromFirefox_TakesTheLinkAndTheHost)
{
    EXPECT_EQ(allow("https://pms.example", "firefox"), "");
    ASSERT_TRUE(QDir(path(MADE)).removeRecursively()); // the link leads nowhere
    EXPECT_EQ(removeSites(places()), "");
    EXPECT_FALSE(QFileInfo(path(FIREFOX_LINK)).isSymLink());
    EXPECT_FALSE(QFile::exists(path(FIREFOX_HOST)));
}

TEST_F(BrowserSetup, FirefoxThatCannotBeLinkedTo_IsReportedAndAllowsNothing)
{
    ASSERT_TRUE(QDir().mkpath(path(FIREFOX_LINK)));
    EXPECT_THAT(allow("https://pms.example", "firefox").toStdString(),
                HasSubstr("browser@idcard-reader.invalid cannot be"));
    EXPECT_FALSE(QFile::exists(path("etc/list/origins")));
}

TEST_F(BrowserSetup, RivalPolicies_AreThoseThatSetTheSameOne)
{
    writeFile(path("etc/chromium/policies/managed/a.json"), R"({"ExtensionSettings": {}})");
    writeFile(path("etc/chromium/policies/managed/b.json"), R"({"HomepageLocation": "x"})");
    EXPECT_EQ(allow("https://pms.example"), "");
    EXPECT_EQ(rivalPolicies(*findBrowser("chromium", places().root)),
              QStringList{path("etc/chromium/policies/managed/a.json")});
}

TEST_F(BrowserSetup, Show_SaysWhatIsThereAndWhatIsMissing)
{
    EXPECT_EQ(allow("https://pms.example"), "");
    ASSERT_TRUE(QFile::remove(path("etc/chromium/native-messaging-hosts/") + HOST_FILE));
    const std::string shown = shownSetup(places(), ::getuid()).toStdString();
    EXPECT_THAT(shown, HasSubstr("Sites     https://pms.example\n"));
    EXPECT_THAT(
        shown, HasSubstr("chromium  " +
                         path("etc/chromium/policies/managed/idcard-reader.json\n").toStdString()));
    EXPECT_THAT(shown, HasSubstr(HOST_FILE.toStdString() + " is missing\n"));
    EXPECT_THAT(shown, HasSubstr("firefox   " + path("usr/share/mozilla").toStdString()));
}

/** What a browser calls an extension: each half of a byte as a letter from a on. */
QByteArray bytesOf(QString id)
{
    for (QChar &letter : id)
        letter = QLatin1Char("0123456789abcdef"[letter.unicode() - 'a']);
    return QByteArray::fromHex(id.toLatin1());
}

// The shipped extension, packed by the browser itself.
TEST_F(BrowserSetup, PackedByChromium_HasTheIdThatPagesAndHostKnow)
{
    const QString chromium = QStringLiteral(IDCARD_CHROMIUM);
    if (chromium.isEmpty())
        GTEST_SKIP() << "Left out: there is no Chromium here: scripts/install-packages browser "
                        "installs it";
    SetupPlaces real = places();
    real.shipped = path("real");
    real.browserProgram = chromium;
    ASSERT_TRUE(QDir().mkpath(path("real/chromium")));
    for (const char *file : {"manifest.json", "background.js"})
        ASSERT_TRUE(QFile::copy(QStringLiteral(IDCARD_EXTENSION_FILES "/chromium/") + file,
                                path("real/chromium/") + file));
    ASSERT_TRUE(
        QFile::copy(QStringLiteral(IDCARD_SOURCE_DIR "/apps/browser_extension/extension.pem"),
                    path("real/extension.pem")));
    writeFile(path("real/chromium-host.json"), "{}");
    ASSERT_TRUE(QDir().mkpath(path("temporary")));
    const QByteArray folderBefore = qgetenv("TMPDIR");
    qputenv("TMPDIR", path("temporary").toUtf8());
    EXPECT_EQ(allowSite("https://pms.example", *findBrowser("chromium", real.root), real), "");
    qputenv("TMPDIR", folderBefore);
    const QByteArray packed = readFile(path(MADE + "/chromium.crx"));
    EXPECT_TRUE(packed.startsWith("Cr24"));
    EXPECT_TRUE(packed.contains(bytesOf(ID)));
    EXPECT_FALSE(packed.contains(bytesOf(QString(ID).replace('o', 'p'))));
    QThread::msleep(500); // in which what is left of the browser would make its profile again
    EXPECT_TRUE(QDir(path("temporary")).isEmpty());
}

struct WrongCall {
    QStringList arguments;
    const char *problem;
};

// The shipped program. Nothing here gets as far as a file of this machine.
TEST(BrowserSetupProgram, WrongUsage_IsRefused)
{
    for (const WrongCall &call : std::vector<WrongCall>{
             {{}, "--allow"},
             {{"--browser", "chromium"}, "--allow"},
             {{"--allow", "https://*.example", "--browser", "chromium"}, "https://*.example"},
             {{"--allow", "https://pms.example/", "--browser", "chromium"}, "https://pms.example/"},
             {{"--allow", "https://pms.example", "--browser", "lynx"}, "lynx"},
             {{"--show", "--remove"}, "--remove"},
             {{"--renew", "--remove"}, "--remove"},
             {{"--renew", "--allow", "https://pms.example"}, "--allow"},
             {{"--show", "--allow", "https://pms.example", "--browser", "chromium"}, "--allow"}})
        expectEnd(runProcess("idcard-browser-setup", call.arguments), 2, call.problem);
}

} // namespace
