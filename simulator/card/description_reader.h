#pragma once

// Reads the JSON text of a card description and checks every key of it.

#include <optional>

#include <QByteArray>
#include <QString>

#include "simulator/card/card_description.h"

namespace simulator
{

/** Most bytes of a description. */
constexpr int LARGEST_DESCRIPTION = 64 * 1024;

/** Why a description cannot be used. */
struct DescriptionError {
    QString file;   ///< as the caller named it
    QString key;    ///< empty when the file as a whole is the matter
    QString reason; ///< with the value it is about

    /** `my.json: "birthDate": "1990013" is not eight digits YYYYMMDD` */
    [[nodiscard]] QString message() const;
};

/**
 * The card that `json` describes, without the content of its photo's own file; nothing, and `error`
 * set, when it is not a card's description.
 */
std::optional<CardDescription> readDescription(const QByteArray &json, const QString &file,
                                               DescriptionError *error);

} // namespace simulator
