#include "tests/endurance/operations.h"

#include <array>
#include <string>
#include <vector>

#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QStringList>

#include "api/idcard_reader_api.h"
#include "apps/card/card.h"
#include "apps/card/record_decoder.h"
#include "apps/reading/simulator_library.h"
#include "iddata/iddata.h"
#include "reader/reader_frames.h"
#include "reader/usbidreader.h"
#include "simulator/card/card_library.h"
#include "simulator/card/raw_record.h"

namespace endurance
{

namespace
{

/** The built-in cards but for the one that makes every read wait. */
QStringList quickCards()
{
    QStringList names = simulator::builtInCardNames();
    names.removeAll(QStringLiteral("resident-transient-failures"));
    return names;
}

simulator::CardDescription describedCard(const QString &name)
{
    simulator::DescriptionError error;
    return simulator::loadCard(name, &error).value();
}

/** What a fault makes of a read. */
struct ExpectedFailure {
    const char *fault;
    int code;
};

constexpr std::array<ExpectedFailure, 4> FAILURES = {{
    {"no-card", IDCARD_RESULT_NO_CARD},
    {"open-fails=7", IDCARD_RESULT_PORT_NOT_OPEN},
    {"photo-undecodable", IDCARD_RESULT_PHOTO_NOT_DECODED},
    {"unknown-kind", IDCARD_RESULT_OK},
}};

class ReadCards : public Operation
{
public:
    QString prepare() { return m_simulator.load().message; }

    QString run(std::uint64_t number) override
    {
        constexpr std::uint64_t FAULT_EVERY = 8;
        const auto index = static_cast<int>(number % static_cast<std::uint64_t>(m_cards.size()));
        const ExpectedFailure *const failure =
            number % FAULT_EVERY == FAULT_EVERY - 1
                ? &FAILURES[number / FAULT_EVERY % FAILURES.size()]
                : nullptr;
        m_simulator.putCard(m_cards.at(index));
        m_simulator.setFaults(failure != nullptr ? QLatin1String(failure->fault) : QLatin1String());
        return failure != nullptr ? fail(*failure) : succeed(m_cards.at(index));
    }

private:
    int read()
    {
        m_kind = NO_KIND;
        return readIDCard(&m_kind, &m_records->cn, &m_records->foreign2017, &m_records->foreignNew,
                          &m_records->hmt, &m_front, &m_back);
    }

    QString fail(const ExpectedFailure &failure)
    {
        countFailure();
        const int code = read();
        if (code == failure.code && m_kind == NO_KIND)
            return {};
        return QStringLiteral("%1: readIDCard returned %2").arg(failure.fault).arg(code);
    }

    QString succeed(const QString &card)
    {
        const int code = read();
        if (code == IDCARD_RESULT_OK && app::isCardKind(m_kind) && !m_front.empty())
            return {};
        return QStringLiteral("%1: readIDCard returned %2, kind %3")
            .arg(card)
            .arg(code)
            .arg(m_kind);
    }

    static constexpr unsigned int NO_KIND = 99;

    app::SimulatorLibrary m_simulator;
    const QStringList m_cards = quickCards();
    const std::unique_ptr<app::CardRecords> m_records = std::make_unique<app::CardRecords>();
    unsigned int m_kind = NO_KIND;
    std::string m_front;
    std::string m_back;
};

/** Has the test do something with the reader while no reading is under way. */
void askFor(const QByteArray &what)
{
    QFile output;
    output.open(STDOUT_FILENO, QIODevice::WriteOnly);
    output.write(what + '\n');
    output.close();
    QFile input;
    input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered);
    input.readLine();
}

class ReadOverUsb : public Operation
{
public:
    QString run(std::uint64_t number) override
    {
        constexpr std::uint64_t UNPLUGGED_EVERY = 100;
        if (number % UNPLUGGED_EVERY != UNPLUGGED_EVERY - 1)
            return read(true);
        askFor("unplug");
        countFailure();
        QString problem = read(false);
        askFor("plug");
        return problem;
    }

private:
    QString read(bool isPluggedIn)
    {
        constexpr unsigned short VENDOR = 0x1209;
        constexpr unsigned short PRODUCT = 0x0001;
        CUsbIdReader reader(VENDOR, PRODUCT);
        QByteArray record;
        FP_INFO_TYPE prints = FP_INFO_NONE;
        reader.fetch_data(record, prints);
        const int code = isPluggedIn ? USB_READER_OK : USB_READER_NOT_FOUND;
        if (reader.lastError() == code && record == (isPluggedIn ? m_expected : QByteArray()))
            return {};
        return QStringLiteral("a read ended with code %1 and %2 bytes")
            .arg(reader.lastError())
            .arg(record.size());
    }

    const QByteArray m_expected =
        simulator::readAnswer(describedCard(QStringLiteral("resident")), {});
};

class DecodeRecords : public Operation
{
public:
    DecodeRecords()
    {
        for (const QString &name : simulator::builtInCardNames()) {
            const auto card = describedCard(name);
            m_records.push_back({simulator::readAnswer(card, {}), printsOf(card), name});
        }
    }

    QString prepare() { return m_simulator.load().message; }

    QString run(std::uint64_t number) override
    {
        const Record &record = m_records[number % m_records.size()];
        const auto card = app::decodeRawRecord(record.bytes, record.prints, app::Road::FILE);
        if (card && card->photoFormat() == app::PhotoFormat::BMP)
            return {};
        return QStringLiteral("the record of %1 was not decoded").arg(record.name);
    }

private:
    struct Record {
        QByteArray bytes;
        FP_INFO_TYPE prints;
        QString name;
    };

    static FP_INFO_TYPE printsOf(const simulator::CardDescription &card)
    {
        constexpr std::array<FP_INFO_TYPE, 3> TYPES = {FP_INFO_NONE, FP_INFO_ONE, FP_INFO_TWO};
        return TYPES.at(static_cast<std::size_t>(card.fingerprints));
    }

    app::SimulatorLibrary m_simulator; // whose photo decoder is used
    std::vector<Record> m_records;
};

template <typename Kind>
std::unique_ptr<Operation> prepared(QString *problem)
{
    auto operation = std::make_unique<Kind>();
    *problem = operation->prepare();
    if (!problem->isEmpty())
        return nullptr;
    return operation;
}

} // namespace

std::unique_ptr<Operation> readingCards(QString *problem)
{
    return prepared<ReadCards>(problem);
}

std::unique_ptr<Operation> readingOverUsb()
{
    return std::make_unique<ReadOverUsb>();
}

std::unique_ptr<Operation> decodingRecords(QString *problem)
{
    return prepared<DecodeRecords>(problem);
}

} // namespace endurance
