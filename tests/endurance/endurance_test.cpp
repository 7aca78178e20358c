// Reading and decoding again and again: what a process holds at the end is what it held at the
// beginning. IDCARD_ENDURANCE_COUNTS, "reads,usb reads,decodes", makes it as long as one likes;
// the figures are printed.

#include <cstdio>

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "tests/support/process.h"
#include "tests/usb/reader_on_bus.h"

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr bool KEEPS_WHAT_WAS_FREED = true; ///< the sanitizer, to report who uses it
#else
constexpr bool KEEPS_WHAT_WAS_FREED = false;
#endif

enum CountPosition { READS, USB_READS, DECODES };

/** How often; enough to see a leak of a few bytes a time is what the variable is for. */
QString countOf(CountPosition position)
{
    const QStringList counts =
        qEnvironmentVariable("IDCARD_ENDURANCE_COUNTS", QStringLiteral("120,120,400")).split(',');
    return counts.value(position);
}

constexpr int LONGEST_MS = 24 * 60 * 60 * 1000;

QJsonObject figuresOf(const QString &operation, CountPosition position)
{
    ProcessInput input;
    input.timeoutMs = LONGEST_MS;
    const ProcessResult result =
        runProcess("endurance_worker", {operation, countOf(position)}, input);
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    // The library's own lines about ports that did not open go before.
    const QByteArray line = result.standardOutput.trimmed().split('\n').last();
    std::printf("%s\n", line.constData());
    return QJsonDocument::fromJson(line).object();
}

void expectNoMoreThanAtTheBeginning(const QJsonObject &figures)
{
    const QJsonObject beginning = figures["beginning"].toObject();
    const QJsonObject end = figures["end"].toObject();
    ASSERT_GT(beginning["residentKiB"].toDouble(), 0);
    const double growth = end["residentKiB"].toDouble() / beginning["residentKiB"].toDouble();
    const double slowdown = end["microseconds"].toDouble() / beginning["microseconds"].toDouble();
    std::printf("at the end / at the beginning: memory %.3f, open files %d / %d, time %.2f\n",
                growth, end["openFiles"].toInt(), beginning["openFiles"].toInt(), slowdown);
    EXPECT_EQ(end["openFiles"].toInt(), beginning["openFiles"].toInt());
    // The emulator keeps what it has translated, and counts as the process.
    if (KEEPS_WHAT_WAS_FREED || !qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        return;
    EXPECT_LT(growth, 1.05) << "of " << beginning["residentKiB"].toDouble() << " KiB";
}

/** What a worker prints; asked for it on the way, unplugs the reader and plugs it in again. */
QJsonObject usbFigures(usb_test::ReaderOnBus &usb)
{
    ProcessInput input{usb.bus().childEnvironment()};
    input.timeoutMs = LONGEST_MS;
    RunningProcess worker("endurance_worker", {"usb", countOf(USB_READS)}, input);
    QByteArray line = worker.nextLine();
    while (line == "unplug" || line == "plug") {
        usb.bus().change([&] { line == "plug" ? usb.reader().plugIn() : usb.reader().unplug(); });
        worker.write("done\n");
        line = worker.nextLine();
    }
    const ProcessResult result = worker.result();
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    std::printf("%s\n", line.constData());
    return QJsonDocument::fromJson(line).object();
}

} // namespace

TEST(Endurance, ReadsOfAllKindsAndFailures_HoldNoMoreThanAtTheBeginning)
{
    const QJsonObject figures = figuresOf("read", READS);
    expectNoMoreThanAtTheBeginning(figures);
    EXPECT_GT(figures["failures"].toDouble(), figures["count"].toDouble() / 10);
}

TEST(Endurance, UsbReadsWithUnplugging_HoldNoMoreThanAtTheBeginning)
{
    usb_test::ReaderOnBus usb;
    usb.plugIn("resident");
    const QJsonObject figures = usbFigures(usb);
    expectNoMoreThanAtTheBeginning(figures);
    EXPECT_GT(figures["failures"].toDouble(), 0);
    usb.expectAllGivenBack();
}

TEST(Endurance, Decodes_HoldNoMoreThanAtTheBeginning)
{
    expectNoMoreThanAtTheBeginning(figuresOf("decode", DECODES));
}
