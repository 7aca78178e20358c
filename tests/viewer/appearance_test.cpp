// How the window looks and is worked with: its states, screens of every size, themes, keys and
// languages.

#include <set>

#include <gmock/gmock.h>

#include <QAccessible>
#include <QAction>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTranslator>

#include "apps/process/translation.h"
#include "apps/viewer/diagnosis_dialog.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;

namespace
{

class Appearance : public ViewerTest
{
protected:
    void showState(const viewer::State &state)
    {
        find<viewer::StateLine>("stateLine")->setState(state);
        QCoreApplication::processEvents();
    }

    /** Where everything of the window is, but for what is in the line of the state. */
    std::vector<std::string> places()
    {
        std::vector<std::string> all;
        for (const QWidget *const widget : window().findChildren<QWidget *>()) {
            if (find("stateLine")->isAncestorOf(widget) || !widget->isVisible())
                continue;
            QString place;
            QDebug(&place) << widget->metaObject()->className() << widget->objectName()
                           << widget->mapTo(&window(), QPoint()) << widget->size();
            all.push_back(place.toStdString());
        }
        return all;
    }

    /** The places once the rows have their heights, and the table its scroll bar. */
    std::vector<std::string> settledPlaces()
    {
        std::vector<std::string> last;
        EXPECT_TRUE(waitFor([&] {
            QTest::qWait(300);
            const std::vector<std::string> before = last;
            last = places();
            return last == before;
        }));
        return last;
    }
};

const viewer::StateKind STATES[] = {viewer::StateKind::WAITING, viewer::StateKind::READING,
                                    viewer::StateKind::READ, viewer::StateKind::ATTENTION,
                                    viewer::StateKind::FAILED};

TEST_F(Appearance, StateThatChanges_MovesNothing)
{
    openWithCard("resident");
    read();
    const std::vector<std::string> before = settledPlaces();
    EXPECT_GE(before.size(), 20U);
    for (const Kind kind : STATES) {
        for (const QString &text :
             {QString(), QStringLiteral("word"), QString("word ").repeated(200),
              QString("Zeile\n").repeated(20), QString(500, 'w')}) {
            for (const QString &details : {QString(), QStringLiteral("Code: 1")}) {
                showState({kind, text, text, details});
                EXPECT_THAT(places(), testing::ContainerEq(before))
                    << int(kind) << ": " << text.left(20).toStdString();
            }
        }
    }
}

/** What of a picture is in its one colour, without that colour: not what is clear or white. */
QImage formOf(const QPixmap &pixmap)
{
    const QImage picture = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    QImage form(picture.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor colour = picture.pixelColor(x, y);
            form.setPixelColor(
                x, y, colour.alpha() > 127 && colour.lightness() < 190 ? Qt::black : Qt::white);
        }
    }
    return form;
}

TEST_F(Appearance, States_DifferInIconAndColour)
{
    open();
    std::set<QRgb> colours;
    std::vector<QImage> icons;
    QSet<QRgb> grounds;
    for (const Kind kind : STATES) {
        showState({kind, "Headline"});
        colours.insert(viewer::stateColour(kind).rgb());
        // In one colour they would still differ.
        const QImage icon = formOf(find<QLabel>("icon")->property("pixmap").value<QPixmap>());
        for (const QImage &other : icons)
            EXPECT_NE(icon, other);
        icons.push_back(icon);
        const QImage line = picture("stateLine");
        grounds.insert(line.pixel(line.width() / 2, line.height() - 4));
    }
    EXPECT_EQ(colours.size(), 5U);
    EXPECT_EQ(grounds.size(), 5);
}

TEST_F(Appearance, TextThatHasNoRoom_IsWholeInItsToolTipForThoseWhoHearItAndUnderDetails)
{
    open();
    const QString remedy =
        QString("Plug the reader in, end other programs that use it. ").repeated(9);
    showState({Kind::FAILED, "Headline", remedy, "Code: 1"});
    auto *const line = find<QLabel>("line");
    EXPECT_TRUE(line->text().endsWith(QChar(0x2026))) << line->text().toStdString();
    EXPECT_LT(line->text().size(), remedy.size());
    EXPECT_EQ(line->toolTip(), remedy);
    EXPECT_EQ(find("stateLine")->accessibleDescription(), remedy);
    const QRect needed = line->fontMetrics().boundingRect(QRect(0, 0, line->width(), 1000),
                                                          Qt::TextWordWrap, line->text());
    EXPECT_LT(needed.height(), line->height() + line->fontMetrics().lineSpacing() / 2);
    click("details");
    auto *const box = dialog<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->informativeText().toStdString(), HasSubstr(remedy.toStdString()));
    box->close();
    window().resize(QApplication::primaryScreen()->size());
    showState({Kind::FAILED, "Headline", "Short.", "Code: 1"});
    EXPECT_EQ(line->text(), "Short.");
    EXPECT_EQ(line->toolTip(), QString());
}

TEST_F(Appearance, StateAndPictures_AreWhatScreenReadersSpeak)
{
    open();
    const auto role = [this](const char *name) {
        return QAccessible::queryAccessibleInterface(find(name))->role();
    };
    EXPECT_EQ(role("stateLine"), QAccessible::Notification);
    for (const char *const view : {"front", "back", "photo"})
        EXPECT_EQ(role(view), QAccessible::Graphic) << view;
}

TEST_F(Appearance, NameAndNumber_AreInLargeType)
{
    openWithCard("resident");
    read();
    EXPECT_GE(find("name")->font().pointSizeF(), 1.8 * window().font().pointSizeF());
    EXPECT_GE(find("number")->font().pointSizeF(), 1.3 * window().font().pointSizeF());
    const double before = find("name")->font().pointSizeF();
    QTest::keyClick(&window(), Qt::Key_F8);
    QCoreApplication::processEvents();
    EXPECT_GT(find("name")->font().pointSizeF(), 1.2 * before);
    EXPECT_GT(find("read")->font().pointSizeF(), 1.2 * QApplication::font().pointSizeF());
    EXPECT_EQ(text("name"), builtInCard("resident").name);
}

TEST_F(Appearance, Sides_GrowWithTheWindowAndKeepTheirShape)
{
    openWithCard("resident");
    read();
    const auto front = [this] {
        QCoreApplication::processEvents();
        return find<viewer::PictureView>("front")->pictureRect();
    };
    const QRect before = front();
    EXPECT_NEAR(double(before.width()) / before.height(), 85.6 / 54, 0.02);
    window().resize(window().width() + 300, window().height() + 200);
    EXPECT_GE(front().width(), before.width() + 60);
    EXPECT_NEAR(double(front().width()) / front().height(), 85.6 / 54, 0.02);
    EXPECT_TRUE(find("front")->rect().contains(front()));
}

TEST_F(Appearance, PicturesInTrueSize_HaveTheSizeOfACardAtAnyScale)
{
    openWithCard("resident");
    read();
    QTest::keyClick(&window(), Qt::Key_F9);
    constexpr double PIXELS_PER_MM = 96 / 25.4; // of the X server
    const double ratio = window().devicePixelRatioF();
    for (const char *name : {"front", "back"}) {
        const QSizeF size = QSizeF(find<viewer::PictureView>(name)->pictureRect().size()) * ratio;
        EXPECT_NEAR(size.width(), 85.6 * PIXELS_PER_MM, ratio) << name;
        EXPECT_NEAR(size.height(), 54 * PIXELS_PER_MM, ratio) << name;
    }
    EXPECT_NEAR(find("photo")->width() * ratio, 26 * PIXELS_PER_MM, ratio);
    EXPECT_NEAR(find("photo")->height() * ratio, 32 * PIXELS_PER_MM, ratio);
    EXPECT_FALSE(find("scaleNote")->isVisible());
    if (const double scale = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(); scale > 0) {
        EXPECT_EQ(ratio, scale);
    }
}

/** All that a user can work with, by walking through every widget of a window. */
QList<QWidget *> controls(const QWidget &window)
{
    QList<QWidget *> all;
    for (QWidget *const widget : window.findChildren<QWidget *>()) {
        const bool isPart =
            qobject_cast<QAbstractScrollArea *>(widget->parentWidget()) != nullptr ||
            qobject_cast<QLineEdit *>(widget->parentWidget()) != nullptr ||
            qobject_cast<QComboBox *>(widget->parentWidget()) != nullptr ||
            qobject_cast<QAbstractSpinBox *>(widget->parentWidget()) != nullptr;
        if (widget->isVisible() && widget->window() == &window && !isPart &&
            (widget->focusPolicy() & Qt::TabFocus) != 0)
            all << widget;
    }
    return all;
}

/** A screen as small as the counter's, or as large: the window is inside, and all of it seen. */
class Fitting : public Appearance
{
protected:
    void expectEverythingInside()
    {
        QCoreApplication::processEvents();
        const QRect screen = QApplication::primaryScreen()->availableGeometry();
        EXPECT_LE(window().frameGeometry().width(), screen.width());
        EXPECT_LE(window().frameGeometry().height(), screen.height());
        QList<QWidget *> seen = controls(window());
        EXPECT_GE(seen.size(), 8);
        for (const char *const name : {"front", "back", "photo", "stateLine"})
            seen << find(name);
        for (const QWidget *const widget : seen) {
            const QRect place(widget->mapTo(&window(), QPoint(0, 0)), widget->size());
            EXPECT_TRUE(window().rect().contains(place))
                << widget->objectName().toStdString() << widget->metaObject()->className();
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                << widget->objectName().toStdString();
            EXPECT_FALSE(widget->visibleRegion().isEmpty()) << widget->objectName().toStdString();
        }
        EXPECT_LE(window().minimumSizeHint().width(), screen.width());
        EXPECT_LE(window().minimumSizeHint().height(), screen.height());
    }

    void moveToCorner() { window().move(0, 0); }

    /** Where there is no simulator, whose panel would take room. */
    void showAtACounter(const QString &card)
    {
        openWithSimulator();
        moveToCorner();
        readNext(card);
        changeSettings([](viewer::SettingsDialog *dialog) {
            dialog->findChild<QComboBox *>("road")->setCurrentIndex(0);
        });
        find<QTableView>("history")->selectRow(0);
        EXPECT_FALSE(find("simulator")->isVisible());
        EXPECT_TRUE(find("save")->isEnabled());
    }
};

TEST_F(Fitting, WindowWithTheSimulator_IsInsideOnAnyScreen)
{
    openWithCard("resident", "open-fails=7");
    moveToCorner();
    expectEverythingInside();
    read();
    expectState(Kind::FAILED);
    expectEverythingInside();
}

TEST_F(Fitting, WindowOfTheFirstRun_LeavesRoomForItsTitleOnAnyScreen)
{
    open();
    const int height = QApplication::primaryScreen()->availableSize().height();
    EXPECT_LE(window().height(), height - 40);
}

TEST_F(Fitting, WindowWithACardToLookAt_IsInsideOnAnyScreen)
{
    openWithCard("hmt-longest-texts");
    moveToCorner();
    read();
    expectEverythingInside();
    // The field that a clerk needs first is seen without scrolling.
    auto *const table = find<QTableView>("fields");
    EXPECT_TRUE(table->viewport()->rect().contains(
        table->visualRect(table->model()->index(0, 1)).center()));
    EXPECT_FALSE(table->horizontalScrollBar()->isVisible());
}

TEST_F(Fitting, LargerTypeInChinese_IsInsideOnAnyScreen)
{
    const InChinese chinese;
    showAtACounter("foreign-2017-longest-name");
    QTest::keyClick(&window(), Qt::Key_F8);
    expectEverythingInside();
}

TEST_F(Fitting, NameAndNumberOfAnyLength_AreSeenInWholeOnAnyScreen)
{
    for (const char *const card : {"resident", "hmt-longest-texts", "foreign-2017-longest-name"}) {
        showAtACounter(card);
        QCoreApplication::processEvents();
        for (const char *const name : {"name", "number"}) {
            const auto *const label = find<QLabel>(name);
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << card << name;
            for (const QString &word : label->text().split(' ')) {
                EXPECT_LE(label->fontMetrics().boundingRect(word).width(), label->width())
                    << word.toStdString();
            }
        }
        close();
    }
}

TEST_F(Fitting, EveryDialog_IsInsideOnAnyScreen)
{
    openWithCard("resident");
    read();
    const QSize screen = QApplication::primaryScreen()->availableSize();
    for (const char *const name : {"Settings…", "Diagnose…", "Help", "About"}) {
        for (QAction *const each : window().findChildren<QAction *>()) {
            if (each->text().remove('&') == name && each->menu() == nullptr)
                each->trigger();
        }
        auto *const shown = dialog();
        ASSERT_NE(shown, nullptr) << name;
        QCoreApplication::processEvents();
        EXPECT_LE(shown->width(), screen.width()) << name;
        EXPECT_LE(shown->height(), screen.height()) << name;
        shown->reject();
        EXPECT_TRUE(waitForNoDialog());
    }
}

// At 1920 pixels the name was out of view.
TEST_F(Fitting, NameInTheHistory_ComesFirstAndIsReadableOnAnyScreen)
{
    for (const char *const card : {"resident", "foreign-2017", "foreign-new"}) {
        openWithCard(card);
        moveToCorner();
        read();
        QCoreApplication::processEvents();
        auto *const history = find<QTableView>("history");
        EXPECT_EQ(history->model()->headerData(0, Qt::Horizontal).toString(), "Name");
        EXPECT_EQ(history->horizontalHeader()->visualIndex(0), 0);
        const QModelIndex cell = history->model()->index(0, 0);
        const QRect place = history->visualRect(cell);
        EXPECT_TRUE(history->viewport()->rect().contains(place)) << card;
        EXPECT_GE(place.width(),
                  history->fontMetrics().boundingRect(cell.data().toString()).width())
            << card;
        EXPECT_EQ(cell.data().toString(), text("name"));
        close();
    }
}

/** A palette of light texts on dark grounds, as a dark theme has it. */
class DarkTheme
{
public:
    DarkTheme()
    {
        QPalette dark(QColor(45, 45, 45));
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        dark.setColor(QPalette::AlternateBase, QColor(38, 38, 38));
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::ButtonText, Qt::white);
        QApplication::setPalette(dark);
    }
    ~DarkTheme() { QApplication::setPalette(QPalette()); }
    DarkTheme(const DarkTheme &) = delete;
    DarkTheme &operator=(const DarkTheme &) = delete;
};

int brightest(const QImage &image)
{
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, qGray(image.pixel(x, y)));
    }
    return most;
}

int meanBrightness(const QImage &image)
{
    return qGray(image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
}

TEST_F(Appearance, InADarkTheme_GroundsAreDarkAndTextsBright)
{
    const DarkTheme dark;
    openWithCard("resident");
    for (const char *name : {"front", "fields", "history", "headline", "read"}) {
        EXPECT_LT(meanBrightness(picture(name)), 110) << name;
    }
    for (const char *name : {"headline", "read"})
        EXPECT_GT(brightest(picture(name)), 180) << name;
    EXPECT_GT(brightest(picture("front")), 110);
    read();
    for (const Kind kind : STATES) {
        showState({kind, "Headline", "Line"});
        EXPECT_LT(meanBrightness(picture("stateLine")), 110) << int(kind);
        EXPECT_GT(brightest(picture("headline")), 180) << int(kind);
    }
    for (const char *name : {"name", "number", "fields"})
        EXPECT_GT(brightest(picture(name)), 180) << name;
    check("cover", true);
    EXPECT_LT(meanBrightness(picture("front")), 110);
}

TEST_F(Appearance, ThemeThatBecomesDark_IsFollowed)
{
    openWithCard("resident");
    read();
    const DarkTheme dark;
    QCoreApplication::processEvents();
    EXPECT_LT(meanBrightness(picture("stateLine")), 110);
    EXPECT_GT(brightest(picture("headline")), 180);
}

/** Which controls Tab reaches from the one that has the focus. */
std::set<QWidget *> reachedByTab()
{
    std::set<QWidget *> reached;
    for (int i = 0; i < 60; ++i) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return reached;
}

void expectNamedAndReached(const QWidget &window, const std::set<QWidget *> &reached)
{
    for (QWidget *const control : controls(window)) {
        QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(seen, nullptr);
        EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty())
            << control->metaObject()->className() << ' ' << control->objectName().toStdString();
        if (control->isEnabled()) {
            EXPECT_TRUE(reached.count(control) == 1)
                << control->metaObject()->className() << ' ' << control->objectName().toStdString();
        }
    }
}

TEST_F(Appearance, EveryControl_HasANameAndIsReachedByTab)
{
    for (const bool isSimulated : {false, true}) {
        if (isSimulated)
            openWithCard("resident", "photo-length=77");
        else
            open();
        if (isSimulated)
            read();
        find("read")->setFocus();
        ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("read"); }));
        EXPECT_GE(controls(window()).size(), 8);
        expectNamedAndReached(window(), reachedByTab());
        for (const char *const view : {"front", "back", "photo", "stateLine"})
            EXPECT_FALSE(find(view)->accessibleName().isEmpty()) << view;
        close();
    }
}

TEST_F(Appearance, EveryControlOfTheSettings_HasANameAndIsReachedByTab)
{
    open();
    trigger("Settings…");
    auto *const settings = dialog<viewer::SettingsDialog>();
    choose(settings->findChild<QComboBox *>("road"), "Over USB");
    settings->activateWindow();
    ASSERT_TRUE(waitFor([&] {
        return QApplication::focusWidget() != nullptr &&
               settings->isAncestorOf(QApplication::focusWidget());
    }));
    EXPECT_GE(controls(*settings).size(), 10);
    expectNamedAndReached(*settings, reachedByTab());
}

/** The keys that go with Alt, of what is seen at once. */
QStringList mnemonics(const QWidget &window)
{
    QStringList keys;
    const auto take = [&](const QString &text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty())
            keys << key;
    };
    for (const QAbstractButton *const button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible() && button->window() == &window)
            take(button->text());
    }
    for (const QLabel *const label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && label->buddy() != nullptr && label->window() == &window)
            take(label->text());
    }
    return keys;
}

class AltKeys : public Appearance
{
protected:
    static void expectEachOnce(const QStringList &keys, const char *where)
    {
        QStringList different = keys;
        EXPECT_EQ(different.removeDuplicates(), 0) << where << ": " << keys.join(' ').toStdString();
    }

    void expectOnceEverywhere()
    {
        openWithCard("resident", "open-fails=7");
        read();
        QStringList keys = mnemonics(window());
        for (const QAction *const menu : window().menuBar()->actions()) {
            keys << QKeySequence::mnemonic(menu->text()).toString();
            QStringList entries;
            for (const QAction *const entry : menu->menu()->actions()) {
                if (entry->isSeparator())
                    continue;
                entries << QKeySequence::mnemonic(entry->text()).toString();
                EXPECT_FALSE(entries.last().isEmpty()) << entry->text().toStdString();
            }
            expectEachOnce(entries, menu->text().toUtf8());
        }
        EXPECT_GE(keys.size(), 14);
        expectEachOnce(keys, "window");
        (new viewer::SettingsDialog({}, &window()))->open();
        keys = mnemonics(*dialog());
        EXPECT_GE(keys.size(), 8);
        expectEachOnce(keys, "settings");
        dialog()->reject();
        close();
    }
};

TEST_F(AltKeys, InEnglish_AreEachGivenOnce)
{
    expectOnceEverywhere();
}

TEST_F(AltKeys, InChinese_AreEachGivenOnce)
{
    const InChinese chinese;
    expectOnceEverywhere();
}

TEST_F(AltKeys, Shortcuts_AreEachGivenOnce)
{
    open();
    QStringList keys;
    for (const QAction *const action : window().findChildren<QAction *>()) {
        for (const QKeySequence &key : action->shortcuts()) {
            if (action->parent() == &window())
                keys << key.toString();
        }
    }
    EXPECT_GE(keys.size(), 14);
    expectEachOnce(keys, "shortcuts");
}

bool hasChinese(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.script() == QChar::Script_Han; });
}

bool hasLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

/** Names of keys and what the user wrote need no translation. */
void expectChinese(const QString &text)
{
    EXPECT_TRUE(!hasLetters(text) || hasChinese(text)) << text.toStdString();
}

class InChineseWindow : public Appearance
{
protected:
    void expectChineseWidgets(const QWidget &window)
    {
        for (const QWidget *const widget : window.findChildren<QWidget *>()) {
            if (widget->window() != &window)
                continue;
            if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
                expectChinese(button->text());
            if (const auto *const edit = qobject_cast<const QLineEdit *>(widget))
                expectChinese(edit->placeholderText());
            expectChinese(widget->accessibleName());
            expectChinese(widget->accessibleDescription());
            if (widget->toolTip() != QStringLiteral("Esc"))
                expectChinese(widget->toolTip());
        }
    }

    const InChinese m_chinese;
};

TEST_F(InChineseWindow, EveryText_IsChinese)
{
    openWithCard("hmt-hong-kong");
    expectChinese(headline().c_str());
    read();
    expectChinese(QString::fromStdString(headline()));
    expectChinese(QString::fromStdString(line()));
    expectChinese(window().windowTitle());
    for (const QString &row : rows("fields"))
        EXPECT_TRUE(hasChinese(row.section('\t', 0, 0))) << row.toStdString();
    EXPECT_TRUE(hasChinese(rows("history").value(0).section('\t', 2, 2)));
    for (const char *const table : {"fields", "history"}) {
        for (int column = 0; column < model(table)->columnCount(); ++column)
            expectChinese(model(table)->headerData(column, Qt::Horizontal).toString());
    }
    for (const QAction *const action : window().findChildren<QAction *>()) {
        if (action->parent() == &window())
            expectChinese(action->text());
    }
    for (const QAction *const menu : window().menuBar()->actions())
        expectChinese(menu->text());
    expectChineseWidgets(window());
    find<QTableView>("history")->selectRow(0);
    expectChinese(text("caption"));
    readNext("resident", "no-card");
    expectChinese(text("caption"));
}

TEST_F(InChineseWindow, EveryState_IsChinese)
{
    openWithSimulator();
    const auto expectState = [this](const char *what) {
        EXPECT_TRUE(hasChinese(state().headline)) << what << headline();
        expectChinese(state().line);
        for (const QString &line : state().details.split('\n')) {
            EXPECT_TRUE(line.isEmpty() || hasChinese(line)) << what << line.toStdString();
        }
    };
    check("automatic", true);
    expectState("automatic");
    check("automatic", false);
    putCard("resident", "transient-failures=1000000");
    expectState("card put on");
    click("read");
    expectState("reading");
    click("cancel");
    expectState("cancelled");
    click("takeCard");
    expectState("card taken off");
    for (const char *const fault : {"open-fails=7", "no-card", "unknown-kind", "no-such-fault"}) {
        readNext("resident", fault);
        expectState(fault);
    }
    readNext("resident-ethnic-name-cut");
    expectState("cut");
    QTest::keyClick(&window(), Qt::Key_1, Qt::ControlModifier);
    expectState("copied");
    find<QAbstractButton>("clearHistory")->click();
    expectState("cleared");
}

TEST_F(InChineseWindow, EveryDialog_HasChineseTitlesButtonsAndLabels)
{
    // With Qt's own: Debian has them in qttranslations5-l10n.
    openWithCard("resident");
    read();
    const auto expectChineseDialog = [&](QDialog *dialog) {
        ASSERT_NE(dialog, nullptr);
        QStringList texts{dialog->windowTitle()};
        for (const QAbstractButton *const button : dialog->findChildren<QAbstractButton *>())
            texts << (button->isVisible() ? button->text() : QString());
        for (const QLabel *const label : dialog->findChildren<QLabel *>())
            texts << (label->isVisible() && label->buddy() != nullptr ? label->text() : QString());
        for (const QComboBox *const box : dialog->findChildren<QComboBox *>()) {
            const bool isOurs = box->objectName() == "road" ||
                                box->objectName() == "previousCard" ||
                                box->objectName() == "folderNames";
            for (int i = 0; isOurs && i < box->count(); ++i)
                texts << box->itemText(i);
        }
        texts.removeAll(QString());
        texts.removeAll(QStringLiteral("..."));
        EXPECT_GE(texts.size(), 2);
        for (const QString &text : texts)
            expectChinese(text);
        delete dialog;
    };
    int dialogs = 0;
    for (QAction *const action : window().findChildren<QAction *>()) {
        if (action->text().contains(QStringLiteral("…"))) {
            action->trigger();
            if (dialog<viewer::DiagnosisDialog>() != nullptr) {
                auto *const report = dialog()->findChild<QPlainTextEdit *>("report");
                EXPECT_TRUE(waitFor([&] { return report->toPlainText().count('\n') > 5; }, 60000));
                expectChinese(report->toPlainText().section('\n', 0, 0));
            }
            expectChineseDialog(dialog());
            ++dialogs;
        }
    }
    EXPECT_EQ(dialogs, 6);
    click("cardFile");
    expectChineseDialog(dialog());
}

TEST_F(Appearance, LanguageThatWasChosen_IsThatOfWhatTheToolSays)
{
    viewer::ViewerSettings settings;
    settings.language = "zh_CN";
    settings.store();
    openWithCard("resident", "open-fails=7");
    read();
    EXPECT_TRUE(hasChinese(QString::fromStdString(headline())));
    EXPECT_TRUE(hasChinese(QString::fromStdString(line())));
}

TEST_F(Appearance, LanguageWithoutATranslation_LeavesTheWindowEnglishFromLeftToRight)
{
    app::chooseLanguage(QLocale(QLocale::Arabic, QLocale::Egypt));
    app::translateApplication();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancel");
    qDeleteAll(qApp->findChildren<QTranslator *>());
    app::chooseLanguage(QLocale::c());
}

TEST_F(Appearance, IconOfItsName_IsTakenFromTheDesktop)
{
    const QString theme = path("hicolor");
    ASSERT_TRUE(QDir().mkpath(theme + "/48x48/apps"));
    writeFile(theme + "/index.theme", "[Icon Theme]\nName=Hicolor\nDirectories=48x48/apps\n"
                                      "[48x48/apps]\nSize=48\n");
    QImage picture(48, 48, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(theme + "/48x48/apps/idcard-viewer.png"));
    const QStringList before = QIcon::themeSearchPaths();
    QIcon::setThemeSearchPaths({path("")});
    QIcon::setThemeName("hicolor");
    open();
    EXPECT_EQ(window().windowIcon().pixmap(48, 48).toImage().pixelColor(24, 24), QColor(Qt::red));
    QIcon::setThemeSearchPaths(before);
    QIcon::setThemeName({});
}

// It had none where it was not installed.
TEST_F(Appearance, IconWithoutADesktop_IsItsOwn)
{
    open();
    EXPECT_FALSE(window().windowIcon().pixmap(48, 48).isNull());
}

TEST_F(Appearance, HelpAndAbout_SayWhatTheyAreFor)
{
    open();
    QTest::keyClick(&window(), Qt::Key_F1);
    auto *box = dialog<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->informativeText().toStdString(), HasSubstr("Ctrl+2"));
    box->close();
    EXPECT_TRUE(waitForNoDialog());
    trigger("About");
    box = dialog<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->informativeText().toStdString(), HasSubstr("idcard-viewer "));
}

TEST_F(Appearance, Search_LeavesThoseCardsWhoseNameNumberOrKindHasTheText)
{
    openWithCard("resident");
    read();
    readNext("hmt-macao");
    readNext("foreign-2017");
    QTest::keyClick(&window(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("search"); }));
    const auto found = [this](const QString &text) {
        find<QLineEdit>("search")->setText(text);
        QStringList names;
        for (const QString &row : rows("history"))
            names << row.section('\t', 0, 0);
        return names;
    };
    const simulator::CardDescription macao = builtInCard("hmt-macao");
    EXPECT_EQ(found(macao.name.left(2)), QStringList(macao.name));
    EXPECT_EQ(found(macao.idNumber.right(6)), QStringList(macao.name));
    EXPECT_EQ(found("residence permit for"), QStringList(macao.name));
    EXPECT_EQ(found("no such card").size(), 0);
    EXPECT_EQ(found("").size(), 3);
    // What is found can be chosen.
    found(macao.name);
    find<QTableView>("history")->selectRow(0);
    EXPECT_EQ(text("name"), macao.name);
}

TEST_F(Appearance, CardReadWhileTheHistoryIsSearched_IsShown)
{
    openWithCard("resident");
    read();
    find<QLineEdit>("search")->setText("no such card");
    readNext("hmt-macao");
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    EXPECT_TRUE(find("save")->isEnabled());
    find<QLineEdit>("search")->clear();
    EXPECT_EQ(model("history")->rowCount(), 2);
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
}

} // namespace
