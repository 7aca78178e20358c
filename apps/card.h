#pragma once

// A card as `readIDCard` delivers it, whatever its kind: its fields with their names, the photo,
// the fingerprints and the pictures of its sides. What differs between the kinds is a table in
// `card.cpp`.

#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include "common/card_records.h"

namespace app
{

/** The four records that one read needs. Too large for the stack. */
struct CardRecords {
    _tagIDCARD_INFO_ALL_CN cn{};
    _tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017{};
    _tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNew{};
    _tagIDCARD_INFO_ALL_HMT hmt{};

    CardRecords();
};

enum class FieldForm {
    Text,
    Date,      ///< one text, eight digits or words
    SplitDate, ///< three texts: year, month, day
};

/** One field of a card with its content, as the record holds it. */
struct CardField {
    const char *key;   ///< name for programs
    const char *label; ///< name for people
    FieldForm form;
    QStringList content; ///< one text; three of a `SplitDate`
};

enum class PhotoFormat {
    None,       ///< the reader delivered no photo
    Bmp,        ///< a BMP file of 102 x 126 pixels
    Compressed, ///< the 1024 bytes that the card stores, not a picture
    Unknown,
};

/** What the first bytes of a photo area of `IDCARD_PHOTO_SIZE` bytes say about it. */
PhotoFormat photoFormatOf(const unsigned char *photoArea);

/** The pictures of a card's sides, JPEG files; null when there is none. */
struct CardPictures {
    QByteArray front;
    QByteArray back;
};

enum class CardSide { Front, Back };

struct CardKind;

/** A card that was read. */
class Card
{
public:
    /** Takes the records over; `cardKind` is an `IDCARD_KIND`. */
    Card(unsigned int cardKind, std::unique_ptr<CardRecords> records, CardPictures pictures = {});

    unsigned int kindCode() const;
    const char *kindKey() const;   ///< for programs: "resident", "hmt", "foreign-2017" ...
    const char *kindLabel() const; ///< for people
    QVector<CardField> fields() const;

    PhotoFormat photoFormat() const;
    /** The BMP file, or null when the photo is none. */
    QByteArray photo() const;

    /** Whether this kind of card stores fingerprints at all. */
    bool mayHaveFingerprints() const;
    /** How many; nothing when the reader delivered an unusual amount of data. */
    std::optional<int> fingerprintCount() const;
    /** 512 bytes for each print, or null when there is none. */
    QByteArray fingerprints() const;

    /** The picture of this side, a JPEG file, or null when none was painted. */
    QByteArray picture(CardSide side) const;

    /** A number over everything that the card holds, to tell two readings apart. */
    QByteArray digest() const;

private:
    const CardKind *m_kind;
    std::unique_ptr<CardRecords> m_records;
    CardPictures m_pictures;
};

/** Whether `cardKind` is one of the four kinds. */
bool isCardKind(unsigned int cardKind);

} // namespace app
