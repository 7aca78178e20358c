#pragma once

// A card of any kind, from any road: its fields with their names, the photo, the
// fingerprints and the pictures of its sides. What differs between the kinds is a table in
// `card.cpp`.

#include <memory>
#include <optional>

#include <QByteArray>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

#include "apps/card/card_texts.h"
#include "common/card_records.h"
#include "iddata/id_type.h"

namespace app
{

/** How a card came to this program. */
enum class Road {
    READER_LIBRARY, ///< `readIDCard`, through the reader maker's library
    USB,            ///< the reader's USB protocol
    FILE,           ///< a raw record that was kept in a file
};

/** The four records that one `readIDCard` needs. Too large for the stack. */
struct CardRecords {
    _tagIDCARD_INFO_ALL_CN cn{};
    _tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017{};
    _tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNew{};
    _tagIDCARD_INFO_ALL_HMT hmt{};

    CardRecords();
};

enum class FieldForm {
    TEXT,
    DATE,       ///< one text, eight digits or words
    SPLIT_DATE, ///< three texts: year, month, day
};

/** How a field is called, and how it is written. */
struct FieldTerm {
    const char *key;   ///< name for programs
    const char *label; ///< name for people
    FieldForm form = FieldForm::TEXT;
};

/** One field of a card with its content, as the record holds it. */
struct CardField : FieldTerm {
    /** One text; three of a `SplitDate`; none when the card's road does not deliver the field. */
    QStringList content;
};

enum class PhotoFormat {
    NONE,       ///< the reader delivered no photo
    BMP,        ///< a BMP file of 102 x 126 pixels
    COMPRESSED, ///< the 1024 bytes that the card stores, not a picture
    UNKNOWN,
};

/** How many fingerprints `type` means; nothing when it is none of the three values. */
std::optional<int> printCount(FP_INFO_TYPE type);

/** What the first bytes of a photo area of `IDCARD_PHOTO_SIZE` bytes say about it. */
PhotoFormat photoFormatOf(const unsigned char *photoArea);

/** The pictures of a card's sides, JPEG files; null when there is none. */
struct CardPictures {
    QByteArray front;
    QByteArray back;
};

enum class CardSide { FRONT, BACK };

/** What a card holds beside its texts. */
struct CardMedia {
    QByteArray photoArea; ///< `IDCARD_PHOTO_SIZE` bytes; see `PhotoFormat`
    /** How many fingerprints; nothing when the reader delivered an unusual amount of data. */
    std::optional<int> fingerprintCount;
    QByteArray fingerprints; ///< `IDCARD_FINGERPRINT_SIZE` bytes for each
    CardPictures pictures;
};

/** What fields say, by their keys; no text for a field that the card's road does not deliver. */
using FieldContents = QMap<QString, QStringList>;

struct CardKind;

/** A card that was read. */
class Card
{
public:
    /** What `readIDCard` delivered; `cardKind` is an `IDCARD_KIND`. */
    Card(unsigned int cardKind, const CardRecords &records, CardPictures pictures = {});

    /** What was decoded from a raw record. */
    Card(Road road, ID_TYPE kind, const CardTexts &texts, CardMedia media);

    /**
     * What another program read: the kind's fields, then what the decoder there had cut. The photo
     * area is that of a BMP file; a photo in another form has none.
     */
    Card(Road road, unsigned int cardKind, const FieldContents &fields, const FieldContents &whole,
         PhotoFormat photoFormat, CardMedia media);

    Road road() const { return m_road; }
    unsigned int kindCode() const;
    const char *kindKey() const;   ///< for programs: "resident", "hmt", "foreign-2017" ...
    const char *kindLabel() const; ///< for people
    QVector<CardField> fields() const { return m_fields; }

    /** Takes note of the texts before the decoder cut them. */
    void setWholeTexts(const CardTexts &texts);
    /** The fields that say less than the raw record does, with what it says. */
    QVector<CardField> cutFields() const { return m_cutFields; }

    /** Takes note that `checkRawRecord` warns of the raw record. */
    void setOddRecord(bool isOdd) { m_hasOddRecord = isOdd; }
    bool hasOddRecord() const { return m_hasOddRecord; }

    PhotoFormat photoFormat() const { return m_photoFormat; }
    /** The BMP file, or null when the photo is not one. */
    QByteArray photo() const;

    /** The photo as the card stores it, 1024 bytes, or null when it is in another form. */
    QByteArray compressedPhoto() const;
    /** Puts a BMP file in the place of a photo that is in another form. */
    void setPhoto(const QByteArray &bmpFile);

    /** Whether this kind of card stores fingerprints at all, or this card does nevertheless. */
    bool mayHaveFingerprints() const;
    /** How many; nothing when the reader delivered an unusual amount of data. */
    std::optional<int> fingerprintCount() const { return m_media.fingerprintCount; }
    /** 512 bytes for each print, or null when there is none. */
    QByteArray fingerprints() const { return m_media.fingerprints; }

    /** Whether the card's road has its sides painted. */
    bool mayHavePictures() const { return m_road == Road::READER_LIBRARY; }
    /** The picture of this side, a JPEG file, or null when none was painted. */
    QByteArray picture(CardSide side) const;

    /** A number over everything that the card holds, to compare two readings. */
    QByteArray digest() const;

private:
    Road m_road;
    const CardKind *m_kind;
    QVector<CardField> m_fields;
    QVector<CardField> m_cutFields;
    bool m_hasOddRecord = false;
    CardMedia m_media;
    PhotoFormat m_photoFormat;
};

using CardPointer = std::shared_ptr<const Card>;

/** Whether `cardKind` is one of the four kinds. */
bool isCardKind(unsigned int cardKind);

/** The kind of this key; nothing when no kind has it. */
std::optional<unsigned int> kindCodeOf(const QString &key);

/** The fields that a card of a kind can have, without content. */
QVector<CardField> fieldsOfKind(unsigned int cardKind);

} // namespace app

Q_DECLARE_METATYPE(app::CardPointer)
