// A whole card read with every fault that a reader on USB can have, and its results in
// docs/usb-faults.md.

#include <chrono>
#include <map>
#include <set>
#include <thread>

#include <unistd.h>

#include <QDataStream>
#include <QFile>

#include <gmock/gmock.h>

#include "simulator/reader/virtual_reader.h"
#include "tests/support/forked_work.h"
#include "tests/support/generated_text.h"
#include "tests/usb/exposed_reader.h"
#include "tests/usb/fault_cases.h"

namespace
{

using namespace usb_test;
using Clock = std::chrono::steady_clock;

constexpr auto UNTOUCHED = static_cast<FP_INFO_TYPE>(77);
constexpr int READ_LIMIT_MS = 5000;
/** What a busy machine, an emulator or a sanitizer may add. */
constexpr int SLACK_MS = 4000;
/** Seconds after which a read counts as hung. */
constexpr unsigned int HUNG_S = 150;
constexpr int BATCHES = 4;

/** One read: a case with one of its arguments. */
struct Read {
    std::size_t row;
    int argument;
};

/** What became of it. */
struct Outcome {
    int code = 1;
    QStringList log;
    int tookMs = 0;
    QStringList complaints;
};

QString faultText(const FaultCase &row, int argument)
{
    const QString &value = row.arguments.at(argument);
    return value.isEmpty() ? row.fault : row.fault + QLatin1Char('=') + value;
}

/** The state that the object must have with this code. */
int stateOf(int code)
{
    if (code == USB_READER_CLAIM_FAILED || code == USB_READER_RESET_FAILED)
        return 1;
    return code == USB_READER_OK || code <= USB_READER_LOOKUP_MISMATCH ? 2 : 0;
}

/** The reader with its card, its record as `out` and `fp` have it, and every later call. */
void readCard(const FaultCase &row, EmulatedBus &bus, const simulator::VirtualReader &device,
              Outcome &outcome)
{
    std::unique_ptr<OrdinaryUser> user;
    if (row.fault == QLatin1String("permission-denied"))
        user = std::make_unique<OrdinaryUser>();
    IdReader reader;
    QByteArray out("before");
    FP_INFO_TYPE fp = UNTOUCHED;
    const bool isRead = reader.fetch_data(out, fp);
    outcome.code = reader.lastError();
    if (isRead != (outcome.code == 0))
        outcome.complaints << QStringLiteral("fetch_data and the code disagree");
    if (isRead && (fp == UNTOUCHED || out.size() < 1297))
        outcome.complaints << QStringLiteral("no record in spite of success");
    if (!isRead && (out != "before" || fp != UNTOUCHED))
        outcome.complaints << QStringLiteral("a failure has changed the results");
    if (reader.state() != stateOf(outcome.code))
        outcome.complaints << QStringLiteral("the state is %1").arg(reader.state());
    if (reader.state() != 2 && reader.handle() != nullptr)
        outcome.complaints << QStringLiteral("a reader that was not opened has a handle");
    if (reader.state() != 2) // before the destructor
        outcome.complaints << bus.leftOvers();
    if (isRead)
        return;
    const auto calls = bus.calls(device);
    unsigned short length = 0;
    if (reader.lookup() || reader.select() || reader.fetch_data(out, fp) ||
        reader.write_pipe2(0, 0) || reader.write_pipe6(6, 0, 0, nullptr, 0) ||
        reader.read_pipe81(length) || reader.read_pipe85(6))
        outcome.complaints << QStringLiteral("an operation succeeds after a failure");
    if (bus.calls(device) != calls)
        outcome.complaints << QStringLiteral("an operation touches the bus after a failure");
}

Outcome run(const FaultCase &row, int argument)
{
    Outcome outcome;
    QString problem;
    simulator::VirtualReader device;
    if (!device.slot().putCard(QStringLiteral("resident"), simulator::PutAs::DESCRIBED, &problem) ||
        !device.slot().setFaults(faultText(row, argument), &problem)) {
        outcome.complaints << problem;
        return outcome;
    }
    EmulatedBus bus;
    bus.add(device);
    ProcessAccount account;
    const MessageLog log;
    std::thread hand;
    if (row.end == End::UNPLUGGED)
        hand = std::thread([&bus, &device] {
            std::this_thread::sleep_for(std::chrono::milliseconds(LONG_DELAY_MS));
            bus.change([&device] { device.unplug(); });
        });
    const auto start = Clock::now();
    readCard(row, bus, device, outcome);
    outcome.tookMs = static_cast<int>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
    if (hand.joinable())
        hand.join();
    for (const std::string &line : log.texts())
        outcome.log << QString::fromStdString(line);
    // At each failed open of a node umockdev's preload library, not ours, leaves its connection to
    // the bus open, which has two ends in one process.
    account.allow(2 * row.failedOpens);
    outcome.complaints << bus.leftOvers() << account.additions();
    return outcome;
}

/** Reads in a process of their own, one after the other. */
class Batch
{
public:
    explicit Batch(std::vector<Read> reads) : m_reads(std::move(reads)) {}

    void start(const std::vector<FaultCase> &rows)
    {
        m_work = std::make_unique<ForkedWork>(
            [this, &rows](int report) { exit(runAll(rows, report)); }); // leaks are looked for
    }

    /** Hands over what became of each read, in order. */
    std::vector<Outcome> finish()
    {
        const ForkedWork::End end = m_work->wait();
        EXPECT_EQ(end.status, 0) << "how a child ended";
        std::vector<Outcome> outcomes(m_reads.size());
        QDataStream results(end.report);
        for (Outcome &outcome : outcomes) {
            Outcome read;
            results >> read.code >> read.log >> read.tookMs >> read.complaints;
            if (results.status() == QDataStream::Ok)
                outcome = read;
        }
        return outcomes;
    }

    const std::vector<Read> &reads() const { return m_reads; }

private:
    int runAll(const std::vector<FaultCase> &rows, int report) const
    {
        alarm(HUNG_S); // ends this process, which the parent hears of
        QFile file;
        if (!warmUp() || !file.open(report, QIODevice::WriteOnly | QIODevice::Unbuffered))
            return 1;
        QDataStream results(&file);
        for (const Read &read : m_reads) {
            const Outcome outcome = run(rows[read.row], read.argument);
            results << outcome.code << outcome.log << outcome.tookMs << outcome.complaints;
        }
        return 0;
    }

    std::vector<Read> m_reads;
    std::unique_ptr<ForkedWork> m_work;
};

/** Every slow read alone, the others in a few batches. */
std::vector<Batch> batchesOf(const std::vector<FaultCase> &rows)
{
    std::vector<Batch> batches;
    std::vector<std::vector<Read>> fast(BATCHES);
    std::size_t next = 0;
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (int argument = 0; argument < rows[row].arguments.size(); ++argument) {
            if (rows[row].end == End::AT_ONCE)
                fast[next++ % BATCHES].push_back({row, argument});
            else
                batches.emplace_back(std::vector<Read>{{row, argument}});
        }
    for (std::vector<Read> &reads : fast)
        batches.emplace_back(std::move(reads));
    return batches;
}

QStringList expectedLog(const FaultCase &row, int argument)
{
    QStringList expected;
    for (const std::string &line : row.log)
        expected << QString::fromStdString(line).replace(QStringLiteral("{N}"),
                                                         row.arguments.at(argument));
    return expected;
}

/** When a read comes to its end: milliseconds at least and at most, and in words. */
struct Ending {
    int shortestMs;
    int longestMs;
    const char *text;
};

Ending endingOf(End end)
{
    switch (end) {
    case End::AT_ONCE:
        break;
    case End::GIVES_UP:
        return {READ_LIMIT_MS - 100, READ_LIMIT_MS + SLACK_MS, "after 5 s"};
    case End::LATE:
        return {LONG_DELAY_MS - 100, LONG_DELAY_MS + SLACK_MS, "when the command is taken"};
    case End::UNPLUGGED:
        return {LONG_DELAY_MS - 100, LONG_DELAY_MS + SLACK_MS, "when the reader is unplugged"};
    }
    return {0, SLACK_MS, "at once"};
}

/** What the log says after the last step that succeeded. */
QString endOfLog(const Lines &log)
{
    QStringList end;
    for (const std::string &line : log) {
        const QString text = QString::fromStdString(line).replace(QStringLiteral("{N}"), "N");
        if (text.endsWith(QLatin1String("success!")))
            end.clear();
        else
            end << QStringLiteral("`%1`").arg(text);
    }
    return end.join(QStringLiteral("; "));
}

/** The row of the document. */
QString documentRow(const FaultCase &row, int code, const QString &log)
{
    const QString fault = row.argumentText.isEmpty()
                              ? QStringLiteral("`%1`").arg(row.fault)
                              : QStringLiteral("`%1`: %2").arg(row.fault, row.argumentText);
    return QStringLiteral("| %1 | %2 | %3 | %4 |\n")
        .arg(fault, QString::number(code), log, endingOf(row.end).text);
}

/** Checks one read; the row of the document that it stands for. */
QString check(const FaultCase &row, int argument, const Outcome &outcome)
{
    SCOPED_TRACE(faultText(row, argument).left(80).toStdString());
    EXPECT_EQ(outcome.code, row.code);
    EXPECT_EQ(outcome.log.join('\n').toStdString(),
              expectedLog(row, argument).join('\n').toStdString());
    for (const QString &complaint : outcome.complaints)
        ADD_FAILURE() << complaint.toStdString();
    EXPECT_GE(outcome.tookMs, endingOf(row.end).shortestMs);
    EXPECT_LE(outcome.tookMs, endingOf(row.end).longestMs);
    const bool isAsExpected = outcome.log == expectedLog(row, argument);
    return documentRow(row, outcome.code,
                       isAsExpected ? endOfLog(row.log) : QStringLiteral("(differs)"));
}

TEST(FaultSweep, EveryFault_GivesItsCodeAndReleasesEverything)
{
    const std::vector<FaultCase> rows = faultCases();
    std::vector<Batch> batches = batchesOf(rows);
    for (Batch &batch : batches)
        batch.start(rows);

    std::vector<QString> table(rows.size());
    std::size_t reads = 0;
    for (Batch &batch : batches) {
        const std::vector<Outcome> outcomes = batch.finish();
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            const Read &read = batch.reads()[i];
            const QString row = check(rows[read.row], read.argument, outcomes[i]);
            EXPECT_TRUE(table[read.row].isEmpty() || table[read.row] == row);
            table[read.row] = row;
            ++reads;
        }
    }
    RecordProperty("reads", static_cast<int>(reads));
    printf("%zu card reads with %zu faults\n", reads, rows.size());

    QString text = QStringLiteral("| Fault | Code | End of the log | Ends |\n"
                                  "| --- | --- | --- | --- |\n");
    for (const QString &row : table)
        text += row;
    expectGeneratedPart(QStringLiteral("docs/usb-faults.md"), QStringLiteral("faults"), text);
}

TEST(FaultSweep, Failures_HaveTheirCodesAndThoseOfAllFaults)
{
    std::map<QString, int> codes;
    std::set<int> expected;
    for (const FaultCase &row : faultCases()) {
        for (int argument = 0; argument < row.arguments.size(); ++argument)
            codes[faultText(row, argument)] = row.code;
        if (row.code != 0)
            expected.insert(row.code);
    }
    std::set<int> found;
    for (const usb_test::Failure &failure : failures()) {
        EXPECT_EQ(codes[QLatin1String(failure.fault)], failure.code) << failure.fault;
        found.insert(failure.code);
    }
    EXPECT_EQ(found, expected);
}

TEST(FaultSweep, Table_HasEveryFaultOfTheVocabulary)
{
    std::set<QString> swept;
    for (const FaultCase &row : faultCases())
        swept.insert(row.fault);
    for (const simulator::FaultRule &rule : simulator::faultRules(simulator::Road::USB)) {
        const QString name = QLatin1String(rule.name);
        if (!rule.isOfExchange()) {
            EXPECT_EQ(swept.count(name), 1U) << name.toStdString();
            continue;
        }
        for (int i = 0; i < simulator::USB_EXCHANGE_COUNT; ++i) {
            const QString of = simulator::exchangeName(static_cast<simulator::UsbExchange>(i)) +
                               QLatin1Char('-') + name;
            EXPECT_EQ(swept.count(of), 1U) << of.toStdString();
        }
    }
}

} // namespace
