// The photo block as a BMP file, and the fingerprint block as a file of its own.

#include "iddata/iddata.h"

#include <algorithm>
#include <vector>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "common/closed_library_door.h"
#include "common/common.h"
#include "common/debug_log.h"

namespace
{

constexpr int PHOTO_WIDTH = 102;
constexpr int PHOTO_HEIGHT = 126;

/** Bytes of the pixels that the photo decoder delivers, and what `Bgr2Bmp` reads beyond them. */
constexpr int PIXELS_SIZE = 3 * PHOTO_WIDTH * PHOTO_HEIGHT;
constexpr int SPARE_PIXELS_SIZE = 3;

/**
 * The head of the photo's BMP file, little-endian. The height is positive although the rows are
 * stored as the decoder delivers them.
 */
constexpr unsigned char BMP_HEAD[] = {
    'B',  'M',              // signature
    0xce, 0x97, 0x00, 0x00, // file size: 38862
    0,    0,    0,    0,    // reserved
    54,   0,    0,    0,    // offset of the pixels
    40,   0,    0,    0,    // size of what follows
    102,  0,    0,    0,    // width
    126,  0,    0,    0,    // height
    1,    0,                // planes
    24,   0,                // bits of a pixel
    0,    0,    0,    0,    // no compression
    0,    0,    0,    0,    // image size, not given
    0,    0,    0,    0,    // horizontal resolution, not given
    0,    0,    0,    0,    // vertical resolution, not given
    0,    0,    0,    0,    // colours used: all
    0,    0,    0,    0,    // important colours: all
};
constexpr int BMP_HEAD_SIZE = sizeof(BMP_HEAD);
constexpr int BMP_SIZE = IDCARD_PHOTO_SIZE;
constexpr int SPARE_BMP_SIZE = 1; // which `Bgr2Bmp` writes beyond the rows

constexpr const char *FINGERPRINT_FILE = "fp_raw_data.dat";

/** What is written of a card's fingerprints, and what is said about it. */
constexpr struct {
    FP_INFO_TYPE info;
    const char *line;
    int size; ///< bytes; nothing is written when there are none
} FINGERPRINTS[] = {
    {FP_INFO_ONE, "source id card has one fp data", IDCARD_FINGERPRINT_SIZE},
    {FP_INFO_NONE, "source id card has no fp data", 0},
    {FP_INFO_TWO, "source id card has two fp data", IDCARD_FINGERPRINT_AREA_SIZE},
};

} // namespace

void CIdData::parseIDHeadImage(unsigned char *byWlt, unsigned char *byBmp)
{
    std::vector<unsigned char> pixels(PIXELS_SIZE + SPARE_PIXELS_SIZE);
    std::vector<unsigned char> bmp(BMP_SIZE + SPARE_BMP_SIZE);
    std::copy(std::begin(BMP_HEAD), std::end(BMP_HEAD), bmp.begin());
    if (byWlt == nullptr || byBmp == nullptr ||
        closed_library::unpackPhoto(byWlt, pixels.data(), WLT_MODE_PIXELS) != WLT_SUCCESS) {
        debugLine("解码头像数据失败!");
        return;
    }
    int rowsSize = BMP_SIZE - BMP_HEAD_SIZE;
    if (CCommon::Bgr2Bmp(bmp.data() + BMP_HEAD_SIZE, rowsSize, pixels.data(), PIXELS_SIZE,
                         PHOTO_WIDTH, PHOTO_HEIGHT) != 0) {
        // not reached by fuzzing: the sizes are constants that fit
        debugLine("解析头像数据失败!");
        return;
    }
    std::copy_n(bmp.begin(), BMP_SIZE, byBmp);
}

void CIdData::saveFpRawDataToFile(FP_INFO_TYPE fpInfo, unsigned char *byFp)
{
    for (const auto &row : FINGERPRINTS) {
        if (row.info != fpInfo)
            continue;
        debugLine("%s", row.line);
        if (row.size > 0)
            // not reached by fuzzing: a file is too slow to write by the million
            CCommon::saveByteDataToFile(byFp, row.size, FINGERPRINT_FILE);
    }
}
