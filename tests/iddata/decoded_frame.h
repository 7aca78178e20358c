#pragma once

// A raw card record through the decoders, as a host does it.

#include <QByteArray>

#include "reader/reader_frames.h"
#include "tests/iddata/decoder.h"
#include "tests/iddata/record_fields.h"

struct DecodedFrame {
    ID_TYPE type = ID_TYPE_CN;
    FieldTexts fields;
    QByteArray photo = QByteArray(IDCARD_PHOTO_SIZE, '\0');
    QByteArray prints;
};

/** The fields of the kind that the frame has. */
inline DecodedFrame decodedFrame(QByteArray frame)
{
    DecodedFrame decoded;
    Decoder decoder;
    auto *const bytes = reinterpret_cast<unsigned char *>(frame.data());
    unsigned char *const text = bytes + reader_frames::TEXT_OFFSET;
    decoder->parseIDType(text, &decoded.type);
    const auto read = [&](auto record, auto parse) {
        ((*decoder.operator->()).*parse)(text, &record);
        decoded.fields = textsOf(record);
    };
    switch (decoded.type) {
    case ID_TYPE_CN:
        read(_tagID_TEXT_INFO_CN(), &CIdData::parseChinaIdText);
        break;
    case ID_TYPE_HMT:
        read(_tagID_TEXT_INFO_HMT(), &CIdData::parseHMTIDText);
        break;
    case ID_TYPE_FOREIGN_2017:
        read(_tagID_TEXT_INFO_FOREIGN_2017(), &CIdData::parseForeign2017IDText);
        break;
    case ID_TYPE_FOREIGN_NEW:
        read(_tagID_TEXT_INFO_FOREIGN_NEW(), &CIdData::parseForeignNewIDText);
        break;
    }
    decoder->parseIDHeadImage(bytes + reader_frames::PHOTO_OFFSET,
                              reinterpret_cast<unsigned char *>(decoded.photo.data()));
    decoded.prints = frame.mid(reader_frames::PRINTS_OFFSET);
    decoded.prints.chop(reader_frames::CHECKSUM_SIZE);
    return decoded;
}
