#include "apps/service/service_errors.h"

#include <algorithm>

#include "apps/process/translation.h"
#include "apps/results/result_catalogue.h"
#include "apps/results/tool_faults.h"
#include "apps/results/usb_catalogue.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

const QString PREFIX = QStringLiteral(IDCARD_SERVICE_DOMAIN ".Error.");

std::optional<ErrorTexts> textsIn(const std::vector<ResultEntry> &catalogue, const QString &result)
{
    for (const ResultEntry &entry : catalogue) {
        if (entry.exitStatus != ExitStatus::DONE && result == QLatin1String(entry.constant))
            return ErrorTexts{resultText(entry.summary), resultText(entry.cause),
                              resultText(entry.remedy)};
    }
    return std::nullopt;
}

/** Without a cause, which depends on the case. */
std::optional<ErrorTexts> toolTexts(const QString &result)
{
    for (const ToolFaultEntry &entry : toolFaultCatalogue()) {
        if (result == QLatin1String(entry.name))
            return ErrorTexts{resultText(entry.headline), {}, resultText(entry.remedy)};
    }
    return std::nullopt;
}

std::optional<ErrorTexts> textsOfResult(const QString &result)
{
    std::optional<ErrorTexts> texts = textsIn(resultCatalogue(), result);
    if (!texts)
        texts = textsIn(usbCatalogue(), result);
    return texts ? texts : toolTexts(result);
}

const ErrorRow &rowOf(ServiceError error)
{
    return errorTable().at(static_cast<std::size_t>(error));
}

} // namespace

const std::vector<ErrorRow> &errorTable()
{
    static const std::vector<ErrorRow> rows = {
        {ServiceError::NO_CARD,
         "NoCard",
         {"IDCARD_RESULT_NO_CARD", "USB_READER_LOOKUP_MISMATCH", "USB_READER_NO_DATA"}},
        {ServiceError::UNKNOWN_CARD, "UnknownCard", {"IDCARD_RESULT_OK", "TOOL_TEXT_NOT_DECODED"}},
        {ServiceError::READER_NOT_FOUND, "ReaderNotFound", {"USB_READER_NOT_FOUND"}},
        {ServiceError::READER_NOT_OPENED,
         "ReaderNotOpened",
         {"IDCARD_RESULT_PORT_NOT_OPEN", "USB_READER_OPEN_FAILED", "USB_READER_RESET_FAILED",
          "USB_READER_INIT_FAILED", "USB_READER_NO_DEVICE_LIST", "USB_READER_NO_DESCRIPTOR"}},
        {ServiceError::SEVERAL_READERS,
         "SeveralReaders",
         {"TOOL_SEVERAL_READERS"},
         QT_TR_NOOP("Which of them is meant is not known."),
         nullptr,
         QT_TR_NOOP("Unplug the others, or name the ids of the reader in the configuration file of "
                    "the machine.")},
        {ServiceError::NO_PERMISSION, "NoPermission", {"USB_READER_NO_PERMISSION"}},
        {ServiceError::READER_BUSY, "ReaderBusy", {"USB_READER_CLAIM_FAILED"}},
        {ServiceError::READ_FAILED,
         "ReadFailed",
         {"IDCARD_RESULT_READ_FAILED", "USB_READER_LOOKUP_READ_FAILED",
          "USB_READER_LOOKUP_WRITE_FAILED", "USB_READER_SELECT_MISMATCH",
          "USB_READER_SELECT_READ_FAILED", "USB_READER_SELECT_WRITE_FAILED",
          "USB_READER_DATA_LENGTH_INVALID", "USB_READER_DATA_PREAMBLE_WRONG",
          "USB_READER_DATA_STATUS_WRONG", "USB_READER_DATA_LENGTH_MISMATCH",
          "USB_READER_DATA_PRINTS_INVALID", "USB_READER_DATA_READ_FAILED",
          "USB_READER_DATA_WRITE_FAILED"}},
        {ServiceError::PHOTO_NOT_DECODED, "PhotoNotDecoded", {"IDCARD_RESULT_PHOTO_NOT_DECODED"}},
        {ServiceError::TIMED_OUT,
         "TimedOut",
         {"TOOL_READ_TIMED_OUT"},
         QT_TR_NOOP("The reader asks again and again for another try, or does not answer.")},
        {ServiceError::CANCELLED,
         "Cancelled",
         {"TOOL_INTERRUPTED", "TOOL_READ_BROKEN_OFF"},
         QT_TR_NOOP("The program that asked for the card asked to stop, or the service was ended."),
         QT_TR_NOOP("The reading was cancelled."),
         QT_TR_NOOP("Read once more.")},
        {ServiceError::BUSY,
         "Busy",
         {},
         QT_TR_NOOP("A program is reading through the service, which serves one at a time."),
         QT_TR_NOOP("The reader is in use."),
         QT_TR_NOOP("Wait until the reader is free, or end the other program.")},
        {ServiceError::NOT_AUTHORIZED,
         "NotAuthorized",
         {},
         QT_TR_NOOP("The rules of this machine do not allow it to its user."),
         QT_TR_NOOP("This program may not read cards."),
         QT_TR_NOOP("Ask the administrator of this machine for a rule that allows it.")},
        {ServiceError::INVALID_ARGUMENT,
         "InvalidArgument",
         {},
         QT_TR_NOOP("An argument has a value that it may not have."),
         QT_TR_NOOP("The call to the service is wrong."),
         QT_TR_NOOP("Correct the program that calls; idcard-readerd(8) describes the arguments.")},
        {ServiceError::CONFIGURATION_WRONG,
         "ConfigurationWrong",
         {"TOOL_CONFIGURATION_WRONG"},
         QT_TR_NOOP("A key or a value in it is unknown, or a line is not one of both.")},
        {ServiceError::WORKER_FAILED,
         "WorkerFailed",
         {"TOOL_PROGRAM_BROKEN", "TOOL_UNKNOWN_CODE", "TOOL_WRONG_USAGE", "TOOL_OPTIONS_CONTRADICT",
          "TOOL_SIMULATOR_NOT_LOADED", "TOOL_SIMULATION_REFUSED", "TOOL_FILES_NOT_WRITTEN",
          "TOOL_RECORD_NOT_READ", "TOOL_NOT_A_RECORD", "IDCARD_RESULT_NULL_CARD_KIND",
          "IDCARD_RESULT_NULL_CN", "IDCARD_RESULT_NULL_FOREIGN_2017",
          "IDCARD_RESULT_NULL_FOREIGN_NEW", "IDCARD_RESULT_NULL_HMT",
          "IDCARD_RESULT_NULL_FRONT_IMAGE", "IDCARD_RESULT_NULL_BACK_IMAGE"},
         QT_TR_NOOP("idcard-reader, which the service starts, was not found, crashed, did not end, "
                    "or printed what is no result."),
         QT_TR_NOOP("The program that reads the card failed."),
         QT_TR_NOOP("Read once more. If it happens again, run \"idcard-reader doctor\" and install "
                    "the programs again.")},
    };
    return rows;
}

QString busName(ServiceError error)
{
    return PREFIX + QLatin1String(rowOf(error).name);
}

std::optional<ServiceError> errorOfResult(const QString &result)
{
    for (const ErrorRow &row : errorTable()) {
        if (std::any_of(row.results.begin(), row.results.end(),
                        [&](const char *name) { return result == QLatin1String(name); }))
            return row.error;
    }
    return std::nullopt;
}

ErrorTexts textsOf(ServiceError error)
{
    const ErrorRow &row = rowOf(error);
    const QString result = QLatin1String(row.results.empty() ? "" : row.results.front());
    ErrorTexts texts = textsOfResult(result).value_or(ErrorTexts());
    if (row.cause != nullptr)
        texts.cause = tr(row.cause);
    if (row.headline != nullptr)
        texts.headline = tr(row.headline);
    if (row.remedy != nullptr)
        texts.remedy = tr(row.remedy);
    return texts;
}

std::optional<ErrorTexts> textsOf(const QString &name)
{
    for (const ErrorRow &row : errorTable()) {
        if (name == busName(row.error))
            return textsOf(row.error);
    }
    std::optional<ErrorTexts> texts = textsOfResult(name);
    const std::optional<ServiceError> error = errorOfResult(name);
    if (texts && error && texts->cause.isEmpty())
        texts->cause = textsOf(*error).cause;
    return texts;
}

} // namespace app
