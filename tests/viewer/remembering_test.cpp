// What the window remembers from one run to the next.

#include <gmock/gmock.h>

#include <QAction>
#include <QDirIterator>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QSplitter>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;
using testing::Not;

namespace
{

class Remembering : public ViewerTest
{
protected:
    void openAgain()
    {
        close();
        open();
    }
};

TEST_F(Remembering, FirstRun_ReadsAsTheMachineIsConfiguredWithoutTheSimulatorsPanel)
{
    open();
    EXPECT_FALSE(find("simulator")->isVisible());
    EXPECT_FALSE(find<QCheckBox>("automatic")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("cover")->isChecked());
    trigger("Settings…");
    EXPECT_EQ(find<QComboBox>("road")->currentText(), "As this machine is configured");
    EXPECT_FALSE(find<QComboBox>("device")->isEnabled());
    EXPECT_EQ(find<QComboBox>("device")->currentText(), "The only one that is plugged in");
}

TEST_F(Remembering, SimulatorsPanel_IsSeenOnlyWhileTheSimulatorIsChosen)
{
    open();
    for (const char *const road :
         {"Over USB", "Through the reader maker's library", "As this machine is configured"}) {
        chooseRoad("From the simulator");
        EXPECT_TRUE(find("simulator")->isVisible());
        chooseRoad(road);
        EXPECT_FALSE(find("simulator")->isVisible()) << road;
    }
    chooseRoad("From the simulator");
    openAgain();
    EXPECT_TRUE(find("simulator")->isVisible());
}

TEST_F(Remembering, WhatTheDialogSets_IsThereInTheNextRun)
{
    open();
    changeSettings([this](viewer::SettingsDialog *dialog) {
        choose(dialog->findChild<QComboBox *>("road"), "Over USB");
        dialog->findChild<QCheckBox *>("simulatorPhotos")->click();
        dialog->findChild<QCheckBox *>("sound")->click();
        choose(dialog->findChild<QComboBox *>("previousCard"), "Grey it, then clear it");
        dialog->findChild<QSpinBox *>("forgetAfter")->setValue(17);
        dialog->findChild<QLineEdit *>("folder")->setText(path("kept"));
        choose(dialog->findChild<QComboBox *>("folderNames"), "By the holder");
        choose(dialog->findChild<QComboBox *>("language"), "简体中文");
    });
    openAgain();
    trigger("Settings…");
    const auto chosen = [&](const char *box) {
        return find<QComboBox>(box)->currentText().toStdString();
    };
    EXPECT_THAT(chosen("road"), testing::StartsWith("Over USB"));
    EXPECT_TRUE(find<QComboBox>("device")->isEnabled());
    EXPECT_TRUE(find<QCheckBox>("simulatorPhotos")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("sound")->isChecked());
    EXPECT_EQ(chosen("previousCard"), "Grey it, then clear it");
    EXPECT_EQ(find<QSpinBox>("forgetAfter")->value(), 17);
    EXPECT_EQ(find<QLineEdit>("folder")->text(), path("kept"));
    EXPECT_THAT(chosen("folderNames"), testing::StartsWith("By the holder"));
    EXPECT_EQ(chosen("language"), "简体中文");
}

TEST_F(Remembering, DialogThatIsCancelled_ChangesNothing)
{
    openWithSimulator();
    trigger("Settings…");
    choose(find<QComboBox>("road"), "Over USB");
    dialog()->reject();
    EXPECT_TRUE(waitForNoDialog());
    EXPECT_TRUE(find("simulator")->isVisible());
    openAgain();
    EXPECT_TRUE(find("simulator")->isVisible());
}

TEST_F(Remembering, DeviceThatIsNotPluggedIn_StaysChosen)
{
    viewer::ViewerSettings settings;
    settings.reader = {app::ReaderRoad::USB, UsbIds{0x1209, 0x00AB}, false};
    settings.store();
    for (int run = 0; run < 2; ++run) {
        open();
        trigger("Settings…");
        EXPECT_EQ(find<QComboBox>("device")->currentText(), "1209:00ab - not plugged in");
        dialog()->accept();
        close();
    }
}

TEST_F(Remembering, SwitchesOfTheWindow_AreAsTheyWereLeft)
{
    openWithSimulator();
    check("automatic", true);
    check("cover", true);
    for (const char *const name : {"True size", "Larger type", "Always on top"})
        trigger(name);
    const int large = window().font().pointSize();
    openAgain();
    EXPECT_TRUE(find<QCheckBox>("automatic")->isChecked());
    EXPECT_TRUE(find<QCheckBox>("cover")->isChecked());
    for (const char *const name : {"True size", "Larger type", "Always on top"})
        EXPECT_TRUE(action(name)->isChecked()) << name;
    EXPECT_TRUE(window().windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(window().font().pointSize(), large);
    EXPECT_GT(large, QApplication::font().pointSize());
    for (const char *const name : {"True size", "Larger type", "Always on top"})
        trigger(name);
    check("automatic", false);
    check("cover", false);
    openAgain();
    EXPECT_FALSE(find<QCheckBox>("automatic")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("cover")->isChecked());
    EXPECT_FALSE(window().windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(window().font().pointSize(), QApplication::font().pointSize());
}

TEST_F(Remembering, SizesAndColumns_AreAsTheyWereLeft)
{
    open();
    window().resize(1000, 700);
    QCoreApplication::processEvents();
    auto *const splitter = find<QSplitter>("mainSplitter");
    splitter->setSizes({400, 560});
    find<QTableView>("history")->setColumnWidth(0, 177);
    const QList<int> sizes = splitter->sizes();
    const QSize size = window().size();
    openAgain();
    QCoreApplication::processEvents();
    EXPECT_EQ(window().size(), size);
    EXPECT_EQ(find<QSplitter>("mainSplitter")->sizes(), sizes);
    EXPECT_EQ(find<QTableView>("history")->columnWidth(0), 177);
}

TEST_F(Remembering, WhatAnotherWindowSet_StaysWhenThisOneChangesSomethingElseAndCloses)
{
    open();
    viewer::MainWindow other;
    changeSettings([this](viewer::SettingsDialog *dialog) {
        dialog->findChild<QLineEdit *>("folder")->setText(path("kept"));
        dialog->findChild<QCheckBox *>("sound")->click();
    });
    other.findChild<QCheckBox *>("cover")->click();
    other.close();
    close();
    const viewer::ViewerSettings remembered = viewer::ViewerSettings::load();
    EXPECT_EQ(remembered.folder, path("kept"));
    EXPECT_FALSE(remembered.hasSound);
    EXPECT_TRUE(remembered.isCovered);
}

// Of the machine's file, that of a user who has one takes over nothing.
TEST_F(Remembering, FileOfTheUser_HasEverySettingOnceTheWindowWasClosed)
{
    open();
    close();
    QSettings file(settingsFile(), QSettings::IniFormat);
    EXPECT_TRUE(file.contains("saving/folder"));
    EXPECT_TRUE(file.contains("reading/automatic"));
    EXPECT_TRUE(file.contains("window/language"));
}

TEST_F(Remembering, OptionsOfTheCommandLine_AreNotRemembered)
{
    viewer::ViewerOptions options;
    options.card = "resident";
    options.isAutomatic = true;
    options.isCovered = true;
    open(options);
    EXPECT_TRUE(waitForCards(1));
    EXPECT_TRUE(find("simulator")->isVisible());
    trigger("Larger type"); // which writes the file
    openAgain();
    EXPECT_FALSE(find("simulator")->isVisible());
    EXPECT_FALSE(find<QCheckBox>("automatic")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("cover")->isChecked());
}

TEST_F(Remembering, OptionsOfTheCommandLine_StayWhenTheDialogChangesSomethingElse)
{
    openWithCard("resident");
    changeSettings(
        [](viewer::SettingsDialog *dialog) { dialog->findChild<QCheckBox *>("sound")->click(); });
    EXPECT_TRUE(find("simulator")->isVisible());
    read();
    expectState(Kind::READ, "The card was read.");
}

TEST_F(Remembering, WayOfReadingOfTheCommandLine_IsShownInTheDialogAndRememberedWhenAnotherIsChosen)
{
    rememberRoad(app::ReaderRoad::LIBRARY);
    openWithCard("resident");
    changeSettings([](viewer::SettingsDialog *dialog) {
        auto *const road = dialog->findChild<QComboBox *>("road");
        EXPECT_TRUE(road->currentText().startsWith("From the simulator"));
        choose(road, "Through the reader maker's library");
    });
    EXPECT_FALSE(find("simulator")->isVisible());
    EXPECT_EQ(viewer::ViewerSettings::load().reader.road, app::ReaderRoad::LIBRARY);
    openWithCard("resident");
    changeSettings(
        [](viewer::SettingsDialog *dialog) { dialog->findChild<QCheckBox *>("sound")->click(); });
    EXPECT_EQ(viewer::ViewerSettings::load().reader.road, app::ReaderRoad::LIBRARY);
}

TEST_F(Remembering, DamagedFile_IsSurvived)
{
    ASSERT_TRUE(QDir().mkpath(path("idcard-reader")));
    for (const QByteArray &content :
         {QByteArray("\0\xff\xfe[[[=\n\n=", 10), QByteArray("[reader]\nroad=teleport\ndevice=@@\n"),
          QByteArray("[window]\ngeometry=@ByteArray(rubbish)\nmain-splitter=7\nside-splitter=@Inv\n"
                     "history-header=@ByteArray(\\0\\0\\0\\xff)\n"
                     "[reading]\nforget-after-seconds=-5\nautomatic=perhaps\nprevious-card=7\n")}) {
        writeFile(settingsFile(), content);
        open();
        EXPECT_FALSE(find("simulator")->isVisible());
        EXPECT_GE(window().width(), 600);
        EXPECT_LE(window().width(), QApplication::primaryScreen()->size().width());
        EXPECT_TRUE(find("front")->isVisible() && find("fields")->isVisible());
        EXPECT_GT(find<QTableView>("history")->columnWidth(0), 10);
        EXPECT_GE(viewer::ViewerSettings::load().forgetAfterSeconds, 1);
        close();
    }
}

TEST_F(Remembering, FolderInChinese_IsReadAsAnAdministratorWritesItAndAsItWasEscaped)
{
    ASSERT_TRUE(QDir().mkpath(path("idcard-reader")));
    for (const char *folder : {"/srv/证件", "/srv/\\x8bc1\\x4ef6"}) {
        writeFile(settingsFile(), QByteArray("[saving]\nfolder=") + folder + "\n");
        EXPECT_EQ(viewer::ViewerSettings::load().folder.toStdString(), "/srv/证件");
        viewer::ViewerSettings::load().store();
        EXPECT_EQ(viewer::ViewerSettings::load().folder.toStdString(), "/srv/证件");
    }
}

TEST_F(Remembering, GeometryOfAScreenThatIsGone_IsBroughtBack)
{
    open();
    window().move(0, 0);
    QCoreApplication::processEvents();
    close();
    // As a window on a second screen far to the right.
    QSettings file;
    QByteArray geometry = file.value("window/geometry").toByteArray();
    ASSERT_FALSE(geometry.isEmpty());
    {
        QWidget far;
        far.setGeometry(9000, 9000, 800, 600);
        file.setValue("window/geometry", far.saveGeometry());
    }
    file.sync();
    open();
    EXPECT_TRUE(QApplication::primaryScreen()->geometry().intersects(window().geometry()));
}

TEST_F(Remembering, NothingOfACard_IsKept)
{
    rememberFolder();
    openWithCard("resident");
    read();
    find<QTableView>("fields")->selectRow(1);
    find<QLineEdit>("search")->setText("x");
    changeSettings(
        [](viewer::SettingsDialog *dialog) { dialog->findChild<QCheckBox *>("sound")->click(); });
    close();
    EXPECT_THAT(namesIn(path("kept")), testing::IsEmpty());
    int files = 0;
    for (QDirIterator all(path(""), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         all.hasNext();) {
        const QByteArray content = readFile(all.next());
        expectNothingOf(builtInCard("resident"), content);
        // In a settings file letters beyond ASCII are written by their numbers.
        for (const QChar letter : builtInCard("resident").name) {
            EXPECT_FALSE(content.contains("\\x" + QByteArray::number(letter.unicode(), 16)));
        }
        ++files;
    }
    EXPECT_GE(files, 1);
}

} // namespace
