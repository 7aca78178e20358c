// How much of a text each field of the four kinds keeps, to the byte.

#include "tests/iddata/decoder.h"
#include "tests/iddata/text_block.h"

#include <gtest/gtest.h>

#include <QString>

namespace
{

template <typename Record>
struct TextField {
    std::size_t offset;
    std::size_t characters;
    std::size_t capacity; ///< bytes of UTF-8
    std::string Record::*member;
};

/** Characters that take `bytes` in UTF-8: as many of three bytes as there is room for, and one. */
std::u16string textOf(std::size_t bytes)
{
    static const std::u16string LAST[] = {u"", u"A", u"é"};
    return std::u16string(bytes / 3, u'中') + LAST[bytes % 3];
}

std::string utf8(const std::u16string &text)
{
    return QString::fromStdU16String(text).toStdString();
}

template <typename Record>
void expectCapacities(void (CIdData::*decode)(unsigned char *, Record *),
                      std::initializer_list<TextField<Record>> fields)
{
    Decoder decoder;
    const auto kept = [&](const TextField<Record> &field, std::u16string text) {
        text.resize(field.characters, u'中');
        TextBlock block;
        block.put(30, u"1").put(120, u"1").put(field.offset, text);
        Record record;
        (decoder.operator->()->*decode)(block.data(), &record);
        return record.*field.member;
    };
    for (const TextField<Record> &field : fields) {
        const std::u16string full = textOf(field.capacity);
        if (full.size() > field.characters) { // no text is longer than its field's capacity
            const std::u16string longest(field.characters, u'中');
            EXPECT_EQ(kept(field, longest), utf8(longest)) << "field at " << field.offset;
            continue;
        }
        EXPECT_EQ(kept(field, full), utf8(full)) << "field at " << field.offset;

        const std::u16string tooLong = textOf(field.capacity + 1);
        EXPECT_EQ(kept(field, tooLong), utf8(tooLong.substr(0, tooLong.size() - 1)))
            << "field at " << field.offset;
    }
}

} // namespace

TEST(Capacity, ResidentCard_KeepsWholeCharactersUpToTheLastByte)
{
    using R = _tagID_TEXT_INFO_CN;
    expectCapacities<R>(&CIdData::parseChinaIdText, {{0, 15, 31, &R::szName},
                                                     {52, 35, 101, &R::szAddress},
                                                     {122, 18, 37, &R::szID},
                                                     {158, 15, 31, &R::szDept}});
}

TEST(Capacity, Permit_KeepsWholeCharactersUpToTheLastByte)
{
    using R = _tagID_TEXT_INFO_HMT;
    expectCapacities<R>(&CIdData::parseHMTIDText, {{0, 15, 31, &R::szName},
                                                   {52, 35, 101, &R::szAddress},
                                                   {122, 18, 37, &R::szID},
                                                   {158, 15, 31, &R::szDept},
                                                   {220, 9, 19, &R::szPassNumber},
                                                   {238, 2, 5, &R::szIssueCount}});
}

TEST(Capacity, ForeignersCardOf2017_KeepsWholeCharactersUpToTheLastByte)
{
    using R = _tagID_TEXT_INFO_FOREIGN_2017;
    expectCapacities<R>(&CIdData::parseForeign2017IDText, {{0, 60, 31, &R::szEnglishName},
                                                           {122, 15, 31, &R::szID},
                                                           {152, 3, 7, &R::szNationalityCode},
                                                           {158, 15, 31, &R::szChineseName}});
}

TEST(Capacity, ForeignersCardOfTheNewEdition_KeepsWholeCharactersUpToTheLastByte)
{
    using R = _tagID_TEXT_INFO_FOREIGN_NEW;
    expectCapacities<R>(&CIdData::parseForeignNewIDText, {{0, 15, 31, &R::szChineseName},
                                                          {32, 2, 5, &R::szCardExtra},
                                                          {52, 35, 31, &R::szEnglishName},
                                                          {122, 18, 37, &R::szID}});
}
