#include "apps/reading/card_reader.h"

#include <memory>

#include "api/idcard_reader_api.h"
#include "apps/process/interruption.h"

namespace app
{

namespace
{

// No `IDCARD_KIND`: it stays when the call returns 0 without filling a record.
constexpr unsigned int NO_KIND = 99;

/** The JPEG file in a base64 text of the library; null when the text is empty. */
QByteArray jpegFile(const std::string &base64)
{
    if (base64.empty())
        return {};
    return QByteArray::fromBase64(QByteArray::fromStdString(base64));
}

} // namespace

ExitStatus ReadOutcome::exitStatus() const
{
    const ResultEntry *const entry = findResult(code, card.has_value());
    return entry != nullptr ? entry->exitStatus : ExitStatus::PROGRAM_FAILED;
}

ReadOutcome readCard()
{
    auto records = std::make_unique<CardRecords>();
    unsigned int kind = NO_KIND;
    std::string front;
    std::string back;

    ReadOutcome outcome;
    const ReadInProgress reading;
    outcome.code = readIDCard(&kind, &records->cn, &records->foreign2017, &records->foreignNew,
                              &records->hmt, &front, &back);
    if (outcome.code == IDCARD_RESULT_OK && isCardKind(kind))
        outcome.card.emplace(kind, *records, CardPictures{jpegFile(front), jpegFile(back)});
    return outcome;
}

Message messageOf(const ReadOutcome &outcome)
{
    const ResultEntry *const entry = findResult(outcome.code, outcome.card.has_value());
    return entry == nullptr ? unknownCodeMessage(outcome.code) : messageOf(*entry);
}

QString explain(const ReadOutcome &outcome)
{
    return terminalText(messageOf(outcome));
}

} // namespace app
