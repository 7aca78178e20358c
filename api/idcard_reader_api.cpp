#include "api/idcard_reader_api.h"

#include <cstring>
#include <memory>

#include "api/field_extraction.h"
#include "api/image_output.h"
#include "common/cancellation.h"
#include "common/card_info_struct.h"
#include "common/closed_functions.h"
#include "common/closed_library_door.h"
#include "common/country_code_list.h"
#include "common/debug_log.h"
#include "reader/tav_reader.h"

/** This file's own copy of the country table. Nothing reads it; it is kept with the others. */
[[gnu::used]] static const std::string STR_LIST[COUNTRY_CODE_COUNT][3] = {
#include "common/country_code_rows.inc"
};

namespace
{

/** The caller's seven arguments. */
struct Outputs {
    unsigned int *cardKind;
    _tagIDCARD_INFO_ALL_CN *cn;
    _tagIDCARD_INFO_ALL_FOREIGN_2017 *f2017;
    _tagIDCARD_INFO_ALL_FOREIGN_NEW *fNew;
    _tagIDCARD_INFO_ALL_HMT *hmt;
    std::string *frontImage;
    std::string *backImage;
};

/** What the reader delivers beside the record. */
struct RawData {
    unsigned char photo[IDCARD_PHOTO_SIZE];
    unsigned int photoLen;
    unsigned char fp[IDCARD_FINGERPRINT_AREA_SIZE];
    unsigned int fpLen;
};

/** The code of the first null argument, or `IDCARD_RESULT_OK`. */
int checkArguments(const Outputs &outputs)
{
    const struct {
        const void *argument;
        int code;
    } checks[] = {
        {outputs.cardKind, IDCARD_RESULT_NULL_CARD_KIND},
        {outputs.cn, IDCARD_RESULT_NULL_CN},
        {outputs.f2017, IDCARD_RESULT_NULL_FOREIGN_2017},
        {outputs.fNew, IDCARD_RESULT_NULL_FOREIGN_NEW},
        {outputs.hmt, IDCARD_RESULT_NULL_HMT},
        {outputs.frontImage, IDCARD_RESULT_NULL_FRONT_IMAGE},
        {outputs.backImage, IDCARD_RESULT_NULL_BACK_IMAGE},
    };
    for (const auto &check : checks)
        if (check.argument == nullptr)
            return check.code;
    return IDCARD_RESULT_OK;
}

/**
 * The result code of a fetch. Codes of the maker's that are not listed go on as a success does: the
 * record is then still zero and its kind unknown, so nothing is filled and the call returns 0.
 */
int fetchResultCode(int fetched)
{
    switch (fetched) {
    case CTavReader::PORT_NOT_OPEN:
        return IDCARD_RESULT_PORT_NOT_OPEN;
    case CTavReader::EARLIER_READ_FAILED:
        return IDCARD_RESULT_READ_FAILED;
    case CTavReader::NO_CARD:
        return IDCARD_RESULT_NO_CARD;
    default:
        return IDCARD_RESULT_OK;
    }
}

/**
 * Whether the photo may be handed on: compressed data must decode. The decoded picture is only
 * proof; callers receive the photo as the reader delivered it.
 */
bool photoDecodes(RawData &raw)
{
    unsigned char decoded[IDCARD_PHOTO_SIZE] = {};
    if (raw.photoLen == IDCARD_PHOTO_SIZE)
        std::memcpy(decoded, raw.photo, sizeof(decoded));
    else if (raw.photoLen == IDCARD_COMPRESSED_PHOTO_SIZE)
        return closed_library::unpackPhoto(raw.photo, decoded, WLT_MODE_BMP_FILE) == WLT_SUCCESS;
    return true;
}

void copyFingerprints(const RawData &raw, _tagIDCARD_INFO_ALL_CN &record)
{
    static constexpr struct {
        unsigned int length;
        FP_INFO_TYPE type;
    } LENGTHS[] = {
        {2 * IDCARD_FINGERPRINT_SIZE, FP_INFO_TWO},
        {IDCARD_FINGERPRINT_SIZE, FP_INFO_ONE},
        {0, FP_INFO_NONE},
    };
    std::memset(record.byFpData, 0, sizeof(record.byFpData));
    for (const auto &known : LENGTHS) {
        if (raw.fpLen == known.length) {
            record.fpInfoType = known.type;
            std::memcpy(record.byFpData, raw.fp, known.length);
        }
    }
}

/** Only the resident card carries fingerprints. */
template <typename Record>
void copyFingerprints(const RawData &, Record &)
{
}

template <typename Record>
void fillOutputs(IDCARD_KIND kind, CardInfoStruct &info, const RawData &raw, Record &record,
                 const Outputs &outputs)
{
    *outputs.cardKind = kind;
    extractFields(info, record);
    std::memcpy(record.byPhoto, raw.photo, sizeof(record.byPhoto));
    copyFingerprints(raw, record);
    makeImages(record, *outputs.frontImage, *outputs.backImage);
}

void dispatch(CardInfoStruct &info, const RawData &raw, const Outputs &outputs)
{
    switch (info.kind) {
    case CARD_INFO_KIND_CN:
        return fillOutputs(IDCARD_KIND_CN, info, raw, *outputs.cn, outputs);
    case CARD_INFO_KIND_HMT:
        return fillOutputs(IDCARD_KIND_HMT, info, raw, *outputs.hmt, outputs);
    case CARD_INFO_KIND_FOREIGN_2017:
        return fillOutputs(IDCARD_KIND_FOREIGN_2017, info, raw, *outputs.f2017, outputs);
    case CARD_INFO_KIND_FOREIGN_NEW:
        return fillOutputs(IDCARD_KIND_FOREIGN_NEW, info, raw, *outputs.fNew, outputs);
    default: // nothing is filled, and the call still returns 0
        return;
    }
}

int readCard(const Outputs &outputs)
{
    CTavReader reader;
    const auto info = std::make_shared<CardInfoStruct>();
    RawData raw{};
    const int fetched =
        reader.FetchCardData(info.get(), raw.photo, &raw.photoLen, raw.fp, &raw.fpLen);
    if (const int code = fetchResultCode(fetched); code != IDCARD_RESULT_OK)
        return code;
    if (!photoDecodes(raw)) {
        debugLine("解码头像数据失败!");
        return IDCARD_RESULT_PHOTO_NOT_DECODED;
    }
    // Qt may not be unwound while it paints, nor a record be left half written.
    const CancellationHold hold;
    dispatch(*info, raw, outputs);
    return IDCARD_RESULT_OK;
}

} // namespace

int readIDCard(unsigned int *cardKind, _tagIDCARD_INFO_ALL_CN *cn,
               _tagIDCARD_INFO_ALL_FOREIGN_2017 *f2017, _tagIDCARD_INFO_ALL_FOREIGN_NEW *fNew,
               _tagIDCARD_INFO_ALL_HMT *hmt, std::string *frontImage, std::string *backImage)
{
    const Outputs outputs{cardKind, cn, f2017, fNew, hmt, frontImage, backImage};
    if (const int code = checkArguments(outputs); code != IDCARD_RESULT_OK)
        return code;
    // What is thrown is that memory has run out; the reader's destructor has closed the port.
    return resultOf<int>([&outputs] { return readCard(outputs); }, IDCARD_RESULT_READ_FAILED);
}

std::string getSDKVersion()
{
    return "version:1.5.0";
}
