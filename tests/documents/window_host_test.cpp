// The program with a window of docs/integrate.md, as it stands there: what it shows of a card and
// of a failure, and that a read can be cancelled.

#include <csignal>
#include <functional>
#include <utility>
#include <vector>

#include <unistd.h>

#include <gmock/gmock.h>

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTest>
#include <QTimer>

#include "tests/support/process.h"

using testing::HasSubstr;
using testing::StartsWith;

/** The program's main(). */
int runWindowHost(int argc, char **argv);

namespace
{

constexpr int TIME_TO_READ_MS = 20000;

const std::string RESIDENT = "林晓雨\n990000199003074284";

std::function<void()> useWindow;

/** Begins when the program has made its application, and runs within its loop of events. */
void beginUse()
{
    QTimer::singleShot(0, [] {
        useWindow();
        QApplication::closeAllWindows();
    });
}
Q_COREAPP_STARTUP_FUNCTION(beginUse)

template <typename Widget>
QList<Widget *> widgets()
{
    return QApplication::topLevelWidgets().value(0)->findChildren<Widget *>();
}

QPushButton *button()
{
    return widgets<QPushButton>().value(0);
}

std::string caption()
{
    return button()->text().toStdString();
}

std::string holder()
{
    return widgets<QLabel>().value(0)->text().toStdString();
}

/** What is on the screen where the picture of the front has its place. */
QImage shownFront()
{
    QLabel *const label = widgets<QLabel>().value(1);
    const QSize size = label->property("pixmap").value<QPixmap>().size();
    const QRect place =
        QStyle::alignedRect(Qt::LeftToRight, label->alignment(), size, label->contentsRect());
    return size.isEmpty() ? QImage()
                          : label->grab(place).toImage().convertToFormat(QImage::Format_RGB32);
}

void click()
{
    QTest::mouseClick(button(), Qt::LeftButton);
}

/** Presses Read and waits until the child has ended. */
void read()
{
    click();
    EXPECT_TRUE(QTest::qWaitFor([] { return caption() == "Read"; }, TIME_TO_READ_MS));
}

void runHost(const QStringList &arguments, std::function<void()> use)
{
    useWindow = std::move(use);
    std::vector<QByteArray> words = {QByteArrayLiteral("host")};
    for (const QString &argument : arguments)
        words.push_back(argument.toUtf8());
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    EXPECT_EQ(runWindowHost(static_cast<int>(words.size()), argv.data()), 0);
}

/** The picture that the tool itself gives of this card. */
QImage frontByTool(const QString &card)
{
    const ProcessResult run =
        runProcess(IDCARD_BUILD_BIN_DIR "/idcard-reader",
                   {"read", "--json", "--inline", "pictures", "--simulate", card});
    const QJsonObject picture =
        QJsonDocument::fromJson(run.standardOutput).object()["frontPicture"].toObject();
    return QImage::fromData(QByteArray::fromBase64(picture["data"].toString().toLatin1()))
        .convertToFormat(QImage::Format_RGB32);
}

TEST(WindowHost, CardThatIsRead_IsShownWithNameNumberAndFront)
{
    const QImage expected = frontByTool("resident");
    ASSERT_FALSE(expected.isNull());
    runHost({"--simulate", "resident"}, [&] {
        read();
        EXPECT_EQ(holder(), RESIDENT);
        EXPECT_TRUE(QTest::qWaitFor([&] { return shownFront() == expected; }));
    });
}

TEST(WindowHost, CardOfAForeigner_IsShownWithTheEnglishName)
{
    runHost({"--simulate", "foreign-2017"}, [] {
        read();
        EXPECT_THAT(holder(), HasSubstr(", "));
        EXPECT_FALSE(shownFront().isNull());
    });
}

TEST(WindowHost, NextRead_ShowsNothingOfTheCardBefore)
{
    runHost({"--simulate", "resident"}, [] {
        read();
        click();
        EXPECT_EQ(holder(), "");
        EXPECT_TRUE(shownFront().isNull());
        EXPECT_TRUE(QTest::qWaitFor([] { return holder() == RESIDENT; }, TIME_TO_READ_MS));
    });
}

TEST(WindowHost, ReadThatFails_SaysWhatHappenedAndWhatToDo)
{
    runHost({"--simulate", "resident", "--fault", "open-fails=1"}, [] {
        read();
        EXPECT_THAT(holder(), HasSubstr("could not be opened.\n"));
        EXPECT_TRUE(shownFront().isNull());
    });
}

TEST(WindowHost, ReadThatIsCancelled_EndsAndTheNextOneBegins)
{
    runHost({"--simulate", "resident", "--fault", "transient-failures=1000000"}, [] {
        click();
        EXPECT_EQ(caption(), "Cancel");
        QTest::qWait(500);
        EXPECT_EQ(caption(), "Cancel") << "the reading goes on";
        click();
        EXPECT_TRUE(QTest::qWaitFor([] { return caption() == "Read"; }, TIME_TO_READ_MS));
        EXPECT_NE(holder(), RESIDENT);
        click();
        EXPECT_EQ(caption(), "Cancel");
    });
}

TEST(WindowHost, ToolThatIsNotInstalled_IsReported)
{
    const QByteArray folders = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    runHost({}, [] {
        read();
        EXPECT_NE(holder(), "");
    });
    qputenv("PATH", folders);
}

TEST(WindowHost, ToolThatIsKilled_IsReported)
{
    runHost({"--simulate", "resident", "--fault", "transient-failures=1000000"}, [] {
        click();
        const auto children = [] {
            QFile file(QStringLiteral("/proc/self/task/%1/children").arg(getpid()));
            return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QList<QByteArray>();
        };
        EXPECT_TRUE(QTest::qWaitFor([&] { return children().value(0).toInt() > 0; }));
        kill(children().value(0).toInt(), SIGKILL);
        EXPECT_TRUE(QTest::qWaitFor([] { return caption() == "Read"; }, TIME_TO_READ_MS));
        EXPECT_THAT(holder(), StartsWith("Process crashed"));
    });
}

} // namespace
