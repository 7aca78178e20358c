#include "apps/card_reader.h"

#include <memory>

#include "api/idcard_reader_api.h"
#include "apps/interruption.h"
#include "apps/text_layout.h"

namespace app
{

namespace
{

// No `IDCARD_KIND`: it stays when the call returns 0 without filling a record.
constexpr unsigned int NO_KIND = 99;

// A terminal is 80 columns wide, and the first line comes after the program's name.
constexpr int MESSAGE_WIDTH = 79;
constexpr int FIRST_LINE_WIDTH = 64;

QString paragraph(const char *heading, const char *text)
{
    constexpr int INDENT = 4;
    return QStringLiteral("  ") +
           wrapped(QLatin1String(heading) + QLatin1Char(' ') + QString::fromUtf8(text),
                   MESSAGE_WIDTH - INDENT, INDENT);
}

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
    return entry != nullptr ? entry->exitStatus : ExitStatus::ProgramFailed;
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

QString explain(const ReadOutcome &outcome)
{
    const ResultEntry *const entry = findResult(outcome.code, outcome.card.has_value());
    if (entry == nullptr) {
        return QStringLiteral("The library returned the code %1, which this program does not know. "
                              "Install the program and the library of the same version.")
            .arg(outcome.code);
    }
    const QString code =
        QStringLiteral("  Code: %1 (%2)").arg(entry->code).arg(QLatin1String(entry->constant));
    return QStringList{wrapped(QString::fromUtf8(entry->summary), FIRST_LINE_WIDTH, 2), code,
                       paragraph("Cause:", entry->cause), paragraph("What to do:", entry->remedy)}
        .join(QLatin1Char('\n'));
}

} // namespace app
