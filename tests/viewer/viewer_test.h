#pragma once

// The real window with its parts, for tests that use it as a user does; what reads the cards is the
// built idcard-reader. Settings are in a folder of each test's own. When a test fails, a picture of
// the window is kept in the folder that it runs in.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <sys/types.h>
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "apps/viewer/main_window.h"
#include "apps/viewer/settings_dialog.h"
#include "tests/support/process.h"

namespace viewer_test
{

/** Waits until it holds; false when it does not in time. */
bool waitFor(const std::function<bool()> &holds, int milliseconds = 20000);

/** The programs that another has started, this one if none is named, and that have not ended. */
std::vector<pid_t> children(pid_t parent = ::getpid());

QString clipboard();

/** Runs the program that reads as the window does, on the same screen. */
ProcessResult runReader(const QStringList &arguments);

/** The Chinese of the window, as long as it lives. */
class InChinese
{
public:
    InChinese();
    ~InChinese();
    InChinese(const InChinese &) = delete;
    InChinese &operator=(const InChinese &) = delete;
};

class ViewerTest : public testing::Test
{
public:
    using Kind = viewer::StateKind;

    ~ViewerTest() override;

protected:
    ViewerTest();

    void SetUp() override;
    void TearDown() override;

    /** In a folder that is empty when the test begins. */
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /** What the window remembers. */
    QString settingsFile() const;
    /** Makes a folder "kept" and has the window remember it as that of the cards. */
    void rememberFolder();
    static void rememberRoad(app::ReaderRoad road);
    /** Describes a resident, with these facts instead of the usual ones, in a file; its path. */
    QString describedResident(const QMap<QString, QString> &facts = {});

    /** Opens the window, which is then there. */
    void open(const viewer::ViewerOptions &options = {});
    /** Opens it with a card on the simulator. */
    void openWithCard(const QString &card, const QString &faults = {});
    /** Opens it with a card on the simulator that is covered from the beginning. */
    void openCovered(const QString &card);
    /** Opens it with the simulator on which no card lies. */
    void openWithSimulator();
    /** As a user closes it. */
    void close();

    viewer::MainWindow &window() { return *m_window; }

    template <typename Widget = QWidget>
    Widget *find(const char *name)
    {
        auto *const found = m_window->findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    /** The dialog that is open; null when none of this class is. */
    template <typename Dialog = QDialog>
    Dialog *dialog()
    {
        for (Dialog *const found : m_window->findChildren<Dialog *>()) {
            if (found->isVisible())
                return found;
        }
        return nullptr;
    }
    bool waitForNoDialog();

    void click(const char *name);
    void press(const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void check(const char *name, bool checked);
    void trigger(const QString &action);
    QAction *action(const QString &text);

    /** Chooses from a box as with the arrow keys. */
    static void choose(QComboBox *box, const QString &text);
    /** Lays another card on the simulator. */
    void putCard(const QString &card, const QString &faults = {});
    /** Opens the settings, lets `change` use them and takes them over. */
    void changeSettings(const std::function<void(viewer::SettingsDialog *dialog)> &change);
    /** Chooses a way of reading in the settings. */
    void chooseRoad(const QString &road);
    /** Answers the file dialog that is open as a user does who types a name. */
    void answerFileDialog(const QString &path);

    /** Presses Read and waits for what comes of it. */
    void read();
    /** Reads another card on the simulator. */
    void readNext(const QString &card, const QString &faults = {});
    bool waitUntilRead();
    bool waitForCards(int count);

    const viewer::State &state();
    std::string headline() { return state().headline.toStdString(); }
    std::string line() { return state().line.toStdString(); }
    std::string details() { return state().details.toStdString(); }
    bool waitForHeadline(const QString &text);
    bool waitForState(Kind kind);
    /** Expects a state, with its icon and for those who hear the window, too. */
    void expectState(Kind kind);
    void expectState(Kind kind, const std::string &headline, const std::string &partOfLine = {});
    /** Nobody is there to be saved, printed, copied or dragged; the history may have somebody. */
    void expectNobody();

    QAbstractItemModel *model(const char *table);
    /** All cells of a table, row by row, each with a tabulator before the next. */
    QStringList rows(const char *table);
    /** All texts of the window and its tables, also those that only a tool tip or a reader has. */
    QString everyText();
    /** What the table says of a field. */
    QString field(const QString &label);
    QString text(const char *label);

    /** A widget as it is on the screen. */
    QImage picture(const char *name) { return find(name)->grab().toImage(); }

    void keepScreenshot(const QString &name);

private:
    QTemporaryDir m_folder;
    int m_describedCards = 0;
    std::unique_ptr<viewer::MainWindow> m_window;
};

/** How much two pictures differ on average, 0 to 255, in the part that both have. */
double difference(const QImage &first, const QImage &second);

} // namespace viewer_test
