#pragma once

/**
 * @file
 * `CardInfoStruct`, the record that the maker's `KVO_ReadIDCard` fills. It crosses into a closed
 * library, so its layout is a wire format: 1080 bytes, packed, in the order below.
 *
 * The caller zero-fills it. Text is UCS-2, little-endian, two bytes a character, padded with zero
 * characters or with spaces; sizes are in bytes. Only the block of the card's kind is meaningful,
 * the others stay zero.
 */

#include <cstddef>
#include <cstdint>

/** Values of `CardInfoStruct::kind`. They are the maker's own, not the codes of `readIDCard`. */
enum CardInfoKind : std::int32_t {
    CARD_INFO_KIND_CN = 1,
    CARD_INFO_KIND_HMT = 2,
    CARD_INFO_KIND_FOREIGN_2017 = 3,
    CARD_INFO_KIND_FOREIGN_NEW = 4,
};

#pragma pack(push, 1)
/** What the card says, as the maker's library returns it: one block for each kind of document. */
struct CardInfoStruct {
    std::int32_t kind; ///< a `CardInfoKind`, or anything else that the reader does not know

    struct {
        unsigned char name[30];
        unsigned char sex[6];
        unsigned char nation[8];
        unsigned char birthDate[16];
        unsigned char address[70];
        unsigned char id[36];
        unsigned char dept[30];
        unsigned char validStart[16];
        unsigned char validEnd[16];
        unsigned char unused[36];
    } cn; ///< resident identity card

    struct {
        unsigned char name[30];
        unsigned char sex[6];
        unsigned char unusedAfterSex[4];
        unsigned char birthDate[16];
        unsigned char address[70];
        unsigned char id[36];
        unsigned char dept[30];
        unsigned char validStart[16];
        unsigned char validEnd[16];
        unsigned char passNumber[18];
        unsigned char unused[18];
    } hmt; ///< residence permit for Hong Kong, Macao and Taiwan residents

    struct {
        unsigned char englishName[120];
        unsigned char sex[6];
        unsigned char id[30];
        unsigned char unusedAfterId[6];
        unsigned char chineseName[30];
        unsigned char validStart[16];
        unsigned char validEnd[16];
        unsigned char birthDate[16];
        unsigned char unused[20];
    } foreign2017; ///< foreigner's permanent residence card, 2017 edition

    struct {
        unsigned char chineseName[30];
        unsigned char sex[6];
        unsigned char extra[4]; ///< two-character item following the sex
        unsigned char birthDate[16];
        unsigned char englishName[70];
        unsigned char id[36];
        unsigned char unusedAfterId[30];
        unsigned char validStart[16];
        unsigned char validEnd[16];
        unsigned char unused[22];
    } foreignNew; ///< foreigner's permanent residence card, new edition

    unsigned char nationality[6]; ///< both foreign kinds: three-letter country code
    unsigned char unused[40];
};
#pragma pack(pop)

static_assert(sizeof(CardInfoStruct) == 1080);

static_assert(offsetof(CardInfoStruct, kind) == 0);
static_assert(offsetof(CardInfoStruct, cn.name) == 4);
static_assert(offsetof(CardInfoStruct, cn.sex) == 34);
static_assert(offsetof(CardInfoStruct, cn.nation) == 40);
static_assert(offsetof(CardInfoStruct, cn.birthDate) == 48);
static_assert(offsetof(CardInfoStruct, cn.address) == 64);
static_assert(offsetof(CardInfoStruct, cn.id) == 134);
static_assert(offsetof(CardInfoStruct, cn.dept) == 170);
static_assert(offsetof(CardInfoStruct, cn.validStart) == 200);
static_assert(offsetof(CardInfoStruct, cn.validEnd) == 216);
static_assert(offsetof(CardInfoStruct, cn.unused) == 232);

static_assert(offsetof(CardInfoStruct, hmt.name) == 268);
static_assert(offsetof(CardInfoStruct, hmt.sex) == 298);
static_assert(offsetof(CardInfoStruct, hmt.unusedAfterSex) == 304);
static_assert(offsetof(CardInfoStruct, hmt.birthDate) == 308);
static_assert(offsetof(CardInfoStruct, hmt.address) == 324);
static_assert(offsetof(CardInfoStruct, hmt.id) == 394);
static_assert(offsetof(CardInfoStruct, hmt.dept) == 430);
static_assert(offsetof(CardInfoStruct, hmt.validStart) == 460);
static_assert(offsetof(CardInfoStruct, hmt.validEnd) == 476);
static_assert(offsetof(CardInfoStruct, hmt.passNumber) == 492);
static_assert(offsetof(CardInfoStruct, hmt.unused) == 510);

static_assert(offsetof(CardInfoStruct, foreign2017.englishName) == 528);
static_assert(offsetof(CardInfoStruct, foreign2017.sex) == 648);
static_assert(offsetof(CardInfoStruct, foreign2017.id) == 654);
static_assert(offsetof(CardInfoStruct, foreign2017.unusedAfterId) == 684);
static_assert(offsetof(CardInfoStruct, foreign2017.chineseName) == 690);
static_assert(offsetof(CardInfoStruct, foreign2017.validStart) == 720);
static_assert(offsetof(CardInfoStruct, foreign2017.validEnd) == 736);
static_assert(offsetof(CardInfoStruct, foreign2017.birthDate) == 752);
static_assert(offsetof(CardInfoStruct, foreign2017.unused) == 768);

static_assert(offsetof(CardInfoStruct, foreignNew.chineseName) == 788);
static_assert(offsetof(CardInfoStruct, foreignNew.sex) == 818);
static_assert(offsetof(CardInfoStruct, foreignNew.extra) == 824);
static_assert(offsetof(CardInfoStruct, foreignNew.birthDate) == 828);
static_assert(offsetof(CardInfoStruct, foreignNew.englishName) == 844);
static_assert(offsetof(CardInfoStruct, foreignNew.id) == 914);
static_assert(offsetof(CardInfoStruct, foreignNew.unusedAfterId) == 950);
static_assert(offsetof(CardInfoStruct, foreignNew.validStart) == 980);
static_assert(offsetof(CardInfoStruct, foreignNew.validEnd) == 996);
static_assert(offsetof(CardInfoStruct, foreignNew.unused) == 1012);

static_assert(offsetof(CardInfoStruct, nationality) == 1034);
static_assert(offsetof(CardInfoStruct, unused) == 1040);
