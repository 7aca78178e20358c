#include "tests/viewer/viewer_test.h"

#include <cmath>

#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QStyle>
#include <QTranslator>

#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"

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
        m_application = std::make_unique<QApplication>(m_count, m_words);
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

} // namespace

bool waitFor(const std::function<bool()> &holds, int milliseconds)
{
    return QTest::qWaitFor(holds, milliseconds);
}

InChinese::InChinese()
{
    app::chooseLanguage(QLocale(QLocale::Chinese, QLocale::China));
    app::translateApplication();
}

InChinese::~InChinese()
{
    qDeleteAll(qApp->findChildren<QTranslator *>()); // Qt's own
    app::chooseLanguage(QLocale::c());
}

ViewerTest::ViewerTest() = default;
ViewerTest::~ViewerTest() = default;

void ViewerTest::SetUp()
{
    qunsetenv("IDCARD_SIMULATOR_CARD");
    qunsetenv("IDCARD_SIMULATOR_FAULTS");
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
    close();
}

void ViewerTest::keepScreenshot(const QString &name)
{
    QCoreApplication::processEvents();
    m_window->grab().save(name);
}

void ViewerTest::open(const viewer::ViewerOptions &options)
{
    m_window = std::make_unique<viewer::MainWindow>(options);
    m_window->resize(1000, 620);
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

void ViewerTest::choose(const char *box, const QString &text)
{
    auto *const found = find<QComboBox>(box);
    const int index = found->findText(text, Qt::MatchStartsWith);
    ASSERT_GE(index, 0) << box << ": " << text.toStdString();
    found->setFocus();
    // As with the arrow keys.
    for (int step = 0; step < found->count() && found->currentIndex() != index; ++step)
        QTest::keyClick(found, found->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_EQ(found->currentIndex(), index);
}

void ViewerTest::trigger(const QString &action)
{
    for (QAction *const found : m_window->findChildren<QAction *>()) {
        if (found->text().remove(QLatin1Char('&')) == action) {
            ASSERT_TRUE(found->isEnabled()) << action.toStdString();
            found->trigger();
            return;
        }
    }
    ADD_FAILURE() << action.toStdString();
}

void ViewerTest::read()
{
    click("read");
    EXPECT_TRUE(
        waitFor([this] { return headline() != viewer::MainWindow::tr("Reading…").toStdString(); }));
}

std::string ViewerTest::headline()
{
    return find<QLabel>("headline")->text().toStdString();
}

std::string ViewerTest::details()
{
    return find<QLabel>("details")->text().toStdString();
}

bool ViewerTest::waitForHeadline(const QString &text)
{
    return waitFor([&] { return headline() == text.toStdString(); });
}

void ViewerTest::expectMessage(Kind kind)
{
    const QStyle *const style = m_window->style();
    const QIcon icon = style->standardIcon(kind == Kind::NOTE ? QStyle::SP_MessageBoxInformation
                                           : kind == Kind::WARNING ? QStyle::SP_MessageBoxWarning
                                                                   : QStyle::SP_MessageBoxCritical);
    const int size = style->pixelMetric(QStyle::PM_SmallIconSize);
    EXPECT_EQ(find("icon")->property("pixmap").value<QPixmap>().toImage(),
              icon.pixmap(size).toImage());
    EXPECT_EQ(find("banner")->accessibleName().toStdString(), headline());
    EXPECT_EQ(find("details")->isVisible(), !details().empty());
}

void ViewerTest::expectMessage(Kind kind, const std::string &expected,
                               const std::string &partOfDetails)
{
    EXPECT_EQ(headline(), expected);
    EXPECT_NE(details().find(partOfDetails), std::string::npos) << details();
    expectMessage(kind);
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
