#pragma once

#include <string>

#include <QByteArray>
#include <QString>

#include "common/export.h"
#include "common/fp_info_type.h"
#include "iddata/id_text_records.h"
#include "iddata/id_type.h"

/**
 * Decodes the raw card record, the reader's answer frame that `CUsbIdReader::fetch_data` gives:
 *
 * | Offset | Bytes           | Block                                        |
 * |--------|-----------------|----------------------------------------------|
 * | 16     | 256             | text, UCS-2 little-endian                    |
 * | 272    | 1024            | photo, compressed                            |
 * | 1296   | 0, 512 or 1024  | fingerprint templates of 512 bytes           |
 *
 * Construct it, ask `parseIDType` for the kind, call the one text decoder of that kind, then photo
 * and fingerprints in any order. Every operation is given a pointer to the first byte of the block
 * that it works on, and reads nothing outside that block; the object itself only keeps the record
 * alive.
 *
 * The text decoders report nothing: a malformed field gives what the rules make of it. They trim
 * nothing. Null pointers make them throw `std::bad_alloc` before anything is written. When memory
 * runs out, any operation may throw it; fields that were assigned before then stay assigned.
 *
 * Diagnostics go to Qt's debug log. Two decoders write personal data there: `parseHMTIDText`
 * (permit number, issuing authority) and `parseForeignNewIDText` (sex, date of birth, English name,
 * nationality). A host silences them with the logging rule "default.debug=false".
 *
 * Objects share nothing but the file that `saveFpRawDataToFile` writes; one object may be used by
 * several threads, as its operations do not change it.
 */
class IDCARD_READER_EXPORT CIdData
{
public:
    /** Takes a shared reference to `record`, which is not validated. */
    CIdData(QByteArray &record, FP_INFO_TYPE fpInfo);
    ~CIdData();

    /**
     * Converts the text of `len` bytes at `byData` + `offset` to UTF-8, into `out`, which has room
     * for `outLen` bytes (0 or less: nothing is written). The text is read low byte first whatever
     * it begins with, and ends before a surrogate that has no partner. Text that is too long is cut
     * after the last whole character that fits. A terminating zero follows where there is room for
     * it, so hand in a buffer filled with zeros. Null pointers: nothing is done.
     *
     * A `len` below 0 or above 129 is an error of the calling program and aborts the process.
     */
    void DecodeIDBase(unsigned char *byData, int offset, int len, char *out, int outLen);

    /**
     * Detects the kind of document by the letter in the text block at `byData`; without a letter of
     * another kind it is a resident identity card. Returns false and logs when a pointer is null.
     */
    bool parseIDType(unsigned char *byData, ID_TYPE *pIDType);

    /** Decodes the text block of a resident identity card. All fields are assigned. */
    void parseChinaIdText(unsigned char *byData, _tagID_TEXT_INFO_CN *pInfo);

    /** Decodes the text block of a residence permit. All fields are assigned. */
    void parseHMTIDText(unsigned char *byData, _tagID_TEXT_INFO_HMT *pInfo);

    /**
     * Decodes the text block of a foreigner's card of 2017. A sex code that `parseGender` does not
     * know is logged and ends it: then only `szEnglishName` has been assigned.
     */
    void parseForeign2017IDText(unsigned char *byData, _tagID_TEXT_INFO_FOREIGN_2017 *pInfo);

    /**
     * Decodes the text block of a foreigner's card of the new edition. A sex code that
     * `parseGender` does not know is logged and ends it: then only `szChineseName` has been
     * assigned.
     */
    void parseForeignNewIDText(unsigned char *byData, _tagID_TEXT_INFO_FOREIGN_NEW *pInfo);

    /** The Chinese name of an ethnic group by its code of GB 3304; empty if it is not assigned. */
    std::string GetNation(unsigned short code);

    /**
     * The label of a sex code of GB/T 2261.1: 0, 1, 2 and 9; text that is no number counts as 0.
     * Returns false and leaves `name` alone for other numbers.
     */
    bool parseGender(QString code, QString &name);

    /**
     * Looks a country up by its alpha-3 code, exactly as written. On success sets `name` to the
     * Chinese name, logs it and returns true; otherwise returns false and leaves `name` alone.
     */
    bool parseNationality(QString code, QString &name);

    /**
     * Decodes the photo block of 1024 bytes at `byWlt` into `byBmp`, a BMP file of 38862 bytes
     * (102 x 126 pixels of 24 bits; the padding of the rows as `CCommon::Bgr2Bmp` makes it). A
     * photo that cannot be decoded, a missing photo decoder or a null pointer is logged and leaves
     * `byBmp` alone.
     */
    void parseIDHeadImage(unsigned char *byWlt, unsigned char *byBmp);

    /**
     * Writes the fingerprint block at `byFp`, 512 or 1024 bytes by `fpInfo`, to the file
     * "fp_raw_data.dat" in the current directory, replacing an earlier one; without fingerprints
     * nothing is written. Failures are only logged. A new file is readable for its owner only.
     */
    void saveFpRawDataToFile(FP_INFO_TYPE fpInfo, unsigned char *byFp);

private:
    QByteArray m_data;
    FP_INFO_TYPE m_fpInfoType;
};
