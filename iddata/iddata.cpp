// The decoder's base: single fields, the kind of document, and what codes mean.

#include "iddata/iddata.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <QDebug>

#include "common/common.h"
#include "common/country_lookup.h"
#include "common/debug_log.h"
#include "common/ethnic_groups.h"
#include "common/sex_codes.h"
#include "iddata/card_layouts.h"

/** This file's own copy of the country table. */
static const std::string STR_LIST[COUNTRY_CODE_COUNT][3] = {
#include "common/country_code_rows.inc"
};

namespace
{

/** Bytes of the longest field that can be decoded. */
constexpr int MAX_FIELD_SIZE = 129;

/** Bytes of the zero character that follows a field and ends its text. */
constexpr int TERMINATOR_SIZE = 2;

/** Byte order named, so that no first character of a text is taken for a byte order mark. */
constexpr const char *CARD_TEXT = "utf-16le";

/** The letters of the kinds of document. */
constexpr struct {
    const char *letter;
    ID_TYPE type;
} KIND_LETTERS[] = {
    {"Y", ID_TYPE_FOREIGN_NEW},
    {"I", ID_TYPE_FOREIGN_2017},
    {"J", ID_TYPE_HMT},
};

} // namespace

CIdData::CIdData(QByteArray &record, FP_INFO_TYPE fpInfo) : m_data(record), m_fpInfoType(fpInfo) {}

CIdData::~CIdData() = default;

void CIdData::DecodeIDBase(unsigned char *byData, int offset, int len, char *out, int outLen)
{
    if (out == nullptr || byData == nullptr)
        return;
    if (len < 0 || len > MAX_FIELD_SIZE) {
        // not reached by fuzzing: ends the process; a test lets it end
        std::fprintf(stderr, "CIdData::DecodeIDBase: a field of %d bytes; 0 to %d are possible\n",
                     len, MAX_FIELD_SIZE);
        std::abort();
    }
    std::array<char, MAX_FIELD_SIZE + TERMINATOR_SIZE> text{};
    std::memcpy(text.data(), byData + offset, static_cast<std::size_t>(len));
    CCommon::iconv_ex(CARD_TEXT, text.data(), len + TERMINATOR_SIZE, "utf-8", out, outLen);
}

bool CIdData::parseIDType(unsigned char *byData, ID_TYPE *pIDType)
{
    if (pIDType == nullptr) {
        debugLine("pIDType parameter invalid!");
        return false;
    }
    if (byData == nullptr) {
        debugLine("byData parameter invalid!");
        return false;
    }
    std::array<char, 3> bytes{};
    DecodeIDBase(byData, card_layouts::KIND_LETTER_OFFSET, 2, bytes.data(),
                 static_cast<int>(bytes.size()));
    const std::string letter(bytes.data(), strnlen(bytes.data(), bytes.size()));
    ID_TYPE type = ID_TYPE_CN;
    for (const auto &row : KIND_LETTERS)
        if (letter == row.letter)
            type = row.type;
    *pIDType = type;
    return true;
}

std::string CIdData::GetNation(unsigned short code)
{
    const char *const name = ethnicGroupName(code);
    return name != nullptr ? name : "";
}

bool CIdData::parseGender(QString code, QString &name)
{
    const char *const label = sexLabel(code.toInt());
    if (label == nullptr)
        return false;
    name = QString::fromUtf8(label);
    return true;
}

bool CIdData::parseNationality(QString code, QString &name)
{
    const std::string *const found = findCountryName(STR_LIST, code.toUtf8().toStdString());
    if (found == nullptr)
        return false;
    name = QString::fromLocal8Bit(found->c_str());
    QString line;
    QDebug(&line) << "nationality=" << name; // with quotation marks and a blank at the end
    debugLine("%s", line.trimmed().toUtf8().constData());
    return true;
}
