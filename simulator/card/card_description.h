#pragma once

// A described card: everything the stand-ins need to answer as if the card lay on the reader. All
// texts are those of the card's chip; what the makers' library derives from them (the label of the
// sex, the name of the ethnic group) is derived here too, from the same codes.

#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QString>

#include "simulator/card/faults.h"

namespace simulator
{

enum class CardKind { RESIDENT, HMT, FOREIGN2017, FOREIGN_NEW };
constexpr int CARD_KIND_COUNT = 4;

/** How the makers' library delivers the photo. */
enum class PhotoDelivery { BMP_FILE, COMPRESSED, OWN_FILE };

/** What the makers' library fills the rest of a text field with. */
enum class Padding { ZEROS, SPACES };

struct CardDescription {
    CardKind kind = CardKind::RESIDENT;
    QString title; ///< one English line: what the card is for
    QString name;
    QString englishName;
    QString chineseName;
    QString sex;         ///< code of GB/T 2261.1, one digit
    QString ethnicGroup; ///< code of GB 3304, two digits
    QString birthDate;   ///< YYYYMMDD, as are the next dates
    QString address;
    QString idNumber;
    QString issuingAuthority;
    QString validFrom;
    QString validTo; ///< YYYYMMDD or 长期
    QString travelPermitNumber;
    QString issueCount;
    QString nationality; ///< three-letter country code
    QString cardVersion;
    QString authorityCode;
    QString cardExtra; ///< the two characters that follow the sex on a new foreign card
    int fingerprints = 0;
    PhotoDelivery photoDelivery = PhotoDelivery::BMP_FILE;
    QString photoFile;                      ///< name of the own file
    QByteArray photoFileData;               ///< its content; empty until the file is loaded
    std::optional<std::uint32_t> photoSeed; ///< what the portrait looks like; else from `idNumber`
    Padding padding = Padding::ZEROS;
    Faults faults;
};

/** The label of the card's sex code. */
QString sexText(const CardDescription &card);

/** The name of the card's ethnic-group code; empty when the code is not assigned. */
QString ethnicGroupText(const CardDescription &card);

/** The card's kind as descriptions write it: "resident", "hmt", "foreign-2017", "foreign-new". */
QString cardKindName(CardKind kind);

} // namespace simulator
