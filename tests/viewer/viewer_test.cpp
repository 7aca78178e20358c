#include "tests/viewer/viewer_test.h"

#include <cmath>

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSettings>
#include <QTranslator>

#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "tests/support/files.h"

namespace viewer_test
{

namespace
{

class Application : public testing::Environment
{
public:
    void SetUp() override
    {
        app::installMessageHandler(); // as the program does
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
        m_application = std::make_unique<QApplication>(m_count, m_words);
        QCoreApplication::setOrganizationName(QStringLiteral("idcard-reader"));
        QCoreApplication::setApplicationName(QStringLiteral("idcard-viewer"));
    }
    void TearDown() override { m_application.reset(); }

private:
    char m_name[5] = "test";
    char *m_words[2] = {m_name, nullptr};
    int m_count = 1;
    std::unique_ptr<QApplication> m_application;
};

[[maybe_unused]] const testing::Environment *const ENVIRONMENT =
    testing::AddGlobalTestEnvironment(new Application);

constexpr int LAST_ROLE = Qt::UserRole + 16;

int cellsOf(const QAbstractItemModel &model)
{
    return model.rowCount() * model.columnCount();
}

/** The fourth word of the system's line of a process, whose second may have blanks. */
pid_t parentOf(const QString &process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> words = file.readAll().split(')').last().trimmed().split(' ');
    return words.value(0) == "Z" ? 0 : words.value(1).toInt();
}

} // namespace

bool waitFor(const std::function<bool()> &holds, int milliseconds)
{
    return QTest::qWaitFor(holds, milliseconds);
}

std::vector<pid_t> children(pid_t parent)
{
    std::vector<pid_t> found;
    for (const QString &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        if (name.at(0).isDigit() && parentOf(name) == parent)
            found.push_back(name.toInt());
    }
    return found;
}

QString clipboard()
{
    return QApplication::clipboard()->text();
}

ProcessResult runReader(const QStringList &arguments)
{
    return runProcess(QStringLiteral("idcard-reader"), arguments);
}

InChinese::InChinese()
{
    qputenv("LANGUAGE", "zh_CN"); // of the programs that it starts
    app::chooseLanguage(QLocale(QLocale::Chinese, QLocale::China));
    app::translateApplication();
}

InChinese::~InChinese()
{
    qDeleteAll(qApp->findChildren<QTranslator *>()); // Qt's own
    app::chooseLanguage(QLocale::c());
    qputenv("LANGUAGE", "");
}

ViewerTest::ViewerTest() = default;
ViewerTest::~ViewerTest() = default;

void ViewerTest::SetUp()
{
    qunsetenv("IDCARD_SIMULATOR_CARD");
    qunsetenv("IDCARD_SIMULATOR_FAULTS");
    qputenv("XDG_CONFIG_HOME", m_folder.path().toUtf8());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    QApplication::clipboard()->clear();
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "Left out: the window cannot start what the emulator runs";
}

void ViewerTest::TearDown()
{
    if (HasFailure() && m_window) {
        const auto *const test = testing::UnitTest::GetInstance()->current_test_info();
        QString name =
            QStringLiteral("%1.%2.png")
                .arg(QLatin1String(test->test_suite_name()), QLatin1String(test->name()));
        keepScreenshot(name.replace(QLatin1Char('/'), QLatin1Char('-')));
    }
    m_window.reset();
    EXPECT_TRUE(children().empty());
}

void ViewerTest::keepScreenshot(const QString &name)
{
    QCoreApplication::processEvents();
    m_window->grab().save(name);
}

QString ViewerTest::settingsFile() const
{
    return path(QStringLiteral("idcard-reader/idcard-viewer.conf"));
}

void ViewerTest::rememberFolder()
{
    ASSERT_TRUE(QDir().mkdir(path("kept")));
    viewer::ViewerSettings settings;
    settings.folder = path("kept");
    settings.store();
}

void ViewerTest::rememberRoad(app::ReaderRoad road)
{
    viewer::ViewerSettings settings;
    settings.reader.road = road;
    settings.store();
}

QString ViewerTest::describedResident(const QMap<QString, QString> &facts)
{
    QJsonObject card{{"kind", "resident"},
                     {"name", "测试"},
                     {"sex", "1"},
                     {"ethnicGroup", "01"},
                     {"birthDate", "19900307"},
                     {"address", "某地"},
                     {"idNumber", "110101199003070038"},
                     {"issuingAuthority", "某局"},
                     {"validFrom", "20200101"},
                     {"validTo", "20990101"}};
    for (const QString &key : facts.keys())
        card[key] = facts[key];
    QString file = path(QStringLiteral("card-%1.json").arg(++m_describedCards));
    writeFile(file, QJsonDocument(card).toJson());
    return file;
}

void ViewerTest::open(const viewer::ViewerOptions &options)
{
    m_window = std::make_unique<viewer::MainWindow>(options);
    m_window->show();
    m_window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
}

void ViewerTest::openWithCard(const QString &card, const QString &faults)
{
    viewer::ViewerOptions options;
    options.card = card;
    options.faults = faults;
    open(options);
}

void ViewerTest::openCovered(const QString &card)
{
    viewer::ViewerOptions options;
    options.card = card;
    options.isCovered = true;
    open(options);
}

void ViewerTest::openWithSimulator()
{
    rememberRoad(app::ReaderRoad::SIMULATOR);
    open();
}

void ViewerTest::close()
{
    m_window->close();
    m_window.reset();
}

bool ViewerTest::waitForNoDialog()
{
    const bool isGone = waitFor([this] { return dialog() == nullptr; });
    m_window->activateWindow(); // where no window manager does it
    return isGone && waitFor([this] { return m_window->isActiveWindow(); });
}

void ViewerTest::click(const char *name)
{
    auto *const widget = find(name);
    // A check box is pressed by its mark.
    const QPoint place = qobject_cast<QCheckBox *>(widget) != nullptr
                             ? QPoint(8, widget->height() / 2)
                             : widget->rect().center();
    QTest::mouseClick(widget, Qt::LeftButton, {}, place);
}

void ViewerTest::press(const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(find(name), key, modifiers);
}

void ViewerTest::check(const char *name, bool checked)
{
    if (find<QCheckBox>(name)->isChecked() != checked)
        click(name);
    EXPECT_EQ(find<QCheckBox>(name)->isChecked(), checked) << name;
}

void ViewerTest::choose(QComboBox *box, const QString &text)
{
    const int index = box->findText(text, Qt::MatchStartsWith);
    ASSERT_GE(index, 0) << box->objectName().toStdString() << ": " << text.toStdString();
    box->setFocus();
    // As with the arrow keys.
    for (int step = 0; step < box->count() && box->currentIndex() != index; ++step)
        QTest::keyClick(box, box->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_EQ(box->currentIndex(), index);
}

void ViewerTest::putCard(const QString &card, const QString &faults)
{
    auto *const box = find<QComboBox>("card");
    ASSERT_GE(box->findText(card), 0) << card.toStdString();
    box->setCurrentText(card);
    find<QComboBox>("faults")->setEditText(faults);
    click("putCard");
}

void ViewerTest::changeSettings(const std::function<void(viewer::SettingsDialog *dialog)> &change)
{
    viewer::SettingsDialog *settings = nullptr;
    // A window that is not active yet takes no key.
    ASSERT_TRUE(waitFor([&] {
        QTest::keyClick(m_window.get(), Qt::Key_Comma, Qt::ControlModifier);
        settings = dialog<viewer::SettingsDialog>();
        return settings != nullptr;
    }));
    change(settings);
    settings->accept();
    EXPECT_TRUE(waitForNoDialog());
}

void ViewerTest::chooseRoad(const QString &road)
{
    changeSettings([&](viewer::SettingsDialog *dialog) {
        choose(dialog->findChild<QComboBox *>("road"), road);
    });
}

void ViewerTest::answerFileDialog(const QString &path)
{
    const QPointer<QFileDialog> asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(asked));
    auto *const edit = asked->findChild<QLineEdit *>();
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_TRUE(waitForNoDialog());
    EXPECT_TRUE(waitFor([&] { return asked.isNull(); })); // its texts are not the window's
}

QAction *ViewerTest::action(const QString &text)
{
    for (QAction *const found : m_window->findChildren<QAction *>()) {
        if (found->text().remove(QLatin1Char('&')) == text)
            return found;
    }
    ADD_FAILURE() << text.toStdString();
    return nullptr;
}

void ViewerTest::trigger(const QString &text)
{
    QAction *const found = action(text);
    ASSERT_NE(found, nullptr);
    ASSERT_TRUE(found->isEnabled()) << text.toStdString();
    found->trigger();
}

void ViewerTest::read()
{
    click("read");
    EXPECT_TRUE(waitUntilRead());
}

void ViewerTest::readNext(const QString &card, const QString &faults)
{
    putCard(card, faults);
    read();
}

bool ViewerTest::waitUntilRead()
{
    return waitFor([this] { return state().kind != Kind::READING; });
}

bool ViewerTest::waitForCards(int count)
{
    return waitFor([this, count] { return model("history")->rowCount() == count; });
}

const viewer::State &ViewerTest::state()
{
    return find<viewer::StateLine>("stateLine")->state();
}

bool ViewerTest::waitForHeadline(const QString &text)
{
    const bool came = waitFor([&] { return state().headline == text; });
    EXPECT_EQ(headline(), text.toStdString());
    return came;
}

bool ViewerTest::waitForState(Kind kind)
{
    return waitFor([&] { return state().kind == kind; });
}

void ViewerTest::expectState(Kind kind)
{
    EXPECT_EQ(int(state().kind), int(kind)) << headline();
    auto *const icon = find<QLabel>("icon");
    EXPECT_EQ(icon->property("pixmap").value<QPixmap>().toImage(),
              viewer::stateIcon(kind, icon->width(), m_window->devicePixelRatioF()).toImage());
    EXPECT_EQ(find("stateLine")->accessibleName(), state().headline);
    EXPECT_EQ(find("stateLine")->accessibleDescription(), state().line);
    EXPECT_EQ(find("cancel")->isVisible(), kind == Kind::READING);
    EXPECT_EQ(find("diagnose")->isVisible(),
              kind == Kind::FAILED || (kind != Kind::READING && !state().details.isEmpty()));
}

void ViewerTest::expectState(Kind kind, const std::string &expected, const std::string &partOfLine)
{
    EXPECT_EQ(headline(), expected);
    EXPECT_NE(line().find(partOfLine), std::string::npos) << line();
    expectState(kind);
}

void ViewerTest::expectNobody()
{
    for (const char *const button : {"save", "print"})
        EXPECT_FALSE(find(button)->isEnabled()) << button;
    for (const QAction *const each : m_window->findChild<QActionGroup *>()->actions())
        EXPECT_FALSE(each->isEnabled()) << each->text().toStdString();
    for (const char *const view : {"photo", "front", "back"})
        EXPECT_TRUE(find<viewer::PictureView>(view)->visibleFile().isNull()) << view;
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    auto *const fields = find<QTableView>("fields");
    fields->selectRow(1);
    press("fields", Qt::Key_C, Qt::ControlModifier);
    QTest::mouseClick(fields->viewport(), Qt::LeftButton, {}, {20, 20});
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2})
        QTest::keyClick(m_window.get(), key, Qt::ControlModifier);
    QTest::keyClick(m_window.get(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(clipboard().toStdString(), "mine");
}

QString ViewerTest::text(const char *label)
{
    return find<QLabel>(label)->text();
}

QAbstractItemModel *ViewerTest::model(const char *table)
{
    return find<QTableView>(table)->model();
}

QStringList ViewerTest::rows(const char *table)
{
    const QAbstractItemModel *const cells = model(table);
    QStringList all;
    for (int row = 0; row < cells->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < cells->columnCount(); ++column)
            texts << cells->index(row, column).data().toString();
        all << texts.join(QLatin1Char('\t'));
    }
    return all;
}

QString ViewerTest::everyText()
{
    QStringList texts;
    for (QWidget *const widget : m_window->findChildren<QWidget *>()) {
        texts << widget->toolTip() << widget->statusTip() << widget->whatsThis();
        QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(widget);
        for (int text = QAccessible::Name; seen != nullptr && text <= QAccessible::Help; ++text)
            texts << seen->text(static_cast<QAccessible::Text>(text));
        const auto *const table = qobject_cast<QTableView *>(widget);
        for (int cell = 0; table != nullptr && cell < cellsOf(*table->model()); ++cell) {
            const int columns = table->model()->columnCount();
            const QModelIndex place = table->model()->index(cell / columns, cell % columns);
            for (int role = Qt::DisplayRole; role < LAST_ROLE; ++role)
                texts << place.data(role).toString();
        }
    }
    return texts.join(QLatin1Char('\n'));
}

QString ViewerTest::field(const QString &label)
{
    for (const QString &row : rows("fields")) {
        if (row.section(QLatin1Char('\t'), 0, 0) == label)
            return row.section(QLatin1Char('\t'), 1);
    }
    return {};
}

double difference(const QImage &first, const QImage &second)
{
    const QSize size = first.size().boundedTo(second.size());
    const QImage one = first.convertToFormat(QImage::Format_RGB32);
    const QImage other = second.convertToFormat(QImage::Format_RGB32);
    double sum = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            sum += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y)));
    }
    return sum / std::max(1, size.width() * size.height());
}

} // namespace viewer_test
