#pragma once

// The real window with its parts, for tests that use it as a user does. When a test fails, a
// picture of the window is kept in the folder that it runs in.

#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTableView>
#include <QTest>

#include "apps/viewer/main_window.h"

namespace viewer_test
{

/** Waits until it holds; false when it does not in time. */
bool waitFor(const std::function<bool()> &holds, int milliseconds = 20000);

/** Whether a library can be unloaded here: the sanitizers keep one that they watch. */
constexpr bool UNLOADS_LIBRARIES = IDCARD_SANITIZERS[0] == '\0';

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
    using Kind = app::Message::Kind;

    ~ViewerTest() override;

protected:
    ViewerTest();

    void SetUp() override;
    void TearDown() override;

    /** Opens the window, which is then there. */
    void open(const viewer::ViewerOptions &options = {});
    /** Opens it with a card on the simulator. */
    void openWithCard(const QString &card, const QString &faults = {});
    void close() { m_window.reset(); }

    viewer::MainWindow &window() { return *m_window; }

    template <typename Widget = QWidget>
    Widget *find(const char *name)
    {
        auto *const found = m_window->findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void click(const char *name);
    void press(const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void check(const char *name, bool checked);
    void choose(const char *box, const QString &text);
    void trigger(const QString &action);

    /** Presses Read and waits for what comes of it. */
    void read();

    std::string headline();
    std::string details();
    bool waitForHeadline(const QString &text);
    /** Expects a message of this kind, with its icon and for those who hear the window, too. */
    void expectMessage(Kind kind);
    void expectMessage(Kind kind, const std::string &headline,
                       const std::string &partOfDetails = {});

    QAbstractItemModel *model(const char *table);
    /** All cells of a table, row by row, each with a tabulator before the next. */
    QStringList rows(const char *table);
    /** All texts of the window and its tables, also those that only a tool tip or a reader has. */
    QString everyText();
    /** What the table says of a field. */
    QString field(const QString &label);

    /** A widget as it is on the screen. */
    QImage picture(const char *name) { return find(name)->grab().toImage(); }

    void keepScreenshot(const QString &name);

private:
    std::unique_ptr<viewer::MainWindow> m_window;
};

/** How much two pictures differ on average, 0 to 255, in the part that both have. */
double difference(const QImage &first, const QImage &second);

} // namespace viewer_test
