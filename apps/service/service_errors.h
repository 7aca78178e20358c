#pragma once

// The errors of the service: their names on the bus, and what each means to the user. Every result
// of the catalogues is one of them.

#include <optional>
#include <vector>

#include <QString>

namespace app
{

enum class ServiceError {
    NO_CARD,
    UNKNOWN_CARD,
    READER_NOT_FOUND,
    READER_NOT_OPENED,
    SEVERAL_READERS,
    NO_PERMISSION,
    READER_BUSY,
    READ_FAILED,
    PHOTO_NOT_DECODED,
    TIMED_OUT,
    CANCELLED,
    BUSY,
    NOT_AUTHORIZED,
    INVALID_ARGUMENT,
    CONFIGURATION_WRONG,
    WORKER_FAILED,
};

struct ErrorTexts {
    QString headline;
    QString cause;
    QString remedy;
};

struct ErrorRow {
    ServiceError error;
    const char *name;                  ///< behind "org.idcardreader.Error."
    std::vector<const char *> results; ///< names in the catalogues
    /** The service's own words; null where those of the first result are used. */
    const char *cause = nullptr;
    const char *headline = nullptr;
    const char *remedy = nullptr;
};

/** All of them, in the order of the enumeration. */
const std::vector<ErrorRow> &errorTable();

/** The name as it goes over the bus. */
QString busName(ServiceError error);

/** The error that a result of the catalogues is; nothing for a name that none has. */
std::optional<ServiceError> errorOfResult(const QString &result);

/** In the language of the program. */
ErrorTexts textsOf(ServiceError error);

/** As above for an error's name on the bus or a result's name; nothing when it is neither. */
std::optional<ErrorTexts> textsOf(const QString &name);

} // namespace app
