// The makers' record of every built-in card against its description file, byte by byte.

#include <cstring>
#include <map>

#include <gmock/gmock.h>

#include "common/closed_functions.h"
#include "simulator/card/vendor_record.h"
#include "tests/simulator/built_in_card.h"
#include "tests/simulator/card_files.h"
#include "tests/simulator/text_place.h"
#include "tests/support/test_name.h"

using namespace simulator;

namespace
{

// The lengths are those of the record's fields.
const std::map<std::string, std::vector<TextPlace>> &places()
{
    static const std::map<std::string, std::vector<TextPlace>> table = {
        {"resident",
         {{"name", 4, 30},
          {"sex", 34, 6},
          {"ethnicGroup", 40, 8},
          {"birthDate", 48, 16},
          {"address", 64, 70},
          {"idNumber", 134, 36},
          {"issuingAuthority", 170, 30},
          {"validFrom", 200, 16},
          {"validTo", 216, 16}}},
        {"hmt",
         {{"name", 268, 30},
          {"sex", 298, 6},
          {"birthDate", 308, 16},
          {"address", 324, 70},
          {"idNumber", 394, 36},
          {"issuingAuthority", 430, 30},
          {"validFrom", 460, 16},
          {"validTo", 476, 16},
          {"travelPermitNumber", 492, 18}}},
        {"foreign-2017",
         {{"englishName", 528, 120},
          {"sex", 648, 6},
          {"idNumber", 654, 30},
          {"chineseName", 690, 30},
          {"validFrom", 720, 16},
          {"validTo", 736, 16},
          {"birthDate", 752, 16},
          {"nationality", 1034, 6}}},
        {"foreign-new",
         {{"chineseName", 788, 30},
          {"sex", 818, 6},
          {"cardExtra", 824, 4},
          {"birthDate", 828, 16},
          {"englishName", 844, 70},
          {"idNumber", 914, 36},
          {"validFrom", 980, 16},
          {"validTo", 996, 16},
          {"nationality", 1034, 6}}},
    };
    return table;
}

const std::map<std::string, int> KIND_WORDS = {
    {"resident", 1}, {"hmt", 2}, {"foreign-2017", 3}, {"foreign-new", 4}};

const std::map<std::string, const char *> SEX_TEXTS = {
    {"0", "未知"}, {"1", "男"}, {"2", "女"}, {"9", "未说明"}};

const std::map<std::string, const char *> ETHNIC_TEXTS = {
    {"01", "汉"}, {"03", "回"},   {"05", "维吾尔"},   {"08", "壮"},       {"10", "朝鲜"},
    {"11", "满"}, {"15", "土家"}, {"29", "柯尔克孜"}, {"43", "乌孜别克"}, {"98", "外国血统"},
};

QString expectedText(const QJsonObject &card, const std::string &key)
{
    QString value = card.value(QLatin1String(key.c_str())).toString();
    if (key == "sex")
        return QString::fromUtf8(SEX_TEXTS.at(value.toStdString()));
    if (key == "ethnicGroup")
        return QString::fromUtf8(ETHNIC_TEXTS.at(value.toStdString()));
    return value;
}

// The whole record as the description asks for it.
QByteArray expectedRecord(const QJsonObject &card)
{
    QByteArray record(1080, '\0');
    const std::string kind = card.value(QStringLiteral("kind")).toString().toStdString();
    record[0] = static_cast<char>(KIND_WORDS.at(kind));
    const bool spaces = card.value(QStringLiteral("padding")).toString() == QLatin1String("spaces");
    for (const TextPlace &place : places().at(kind)) {
        const QString text = expectedText(card, place.key);
        putText(record, place, text.leftJustified(place.size / 2, QChar(spaces ? ' ' : '\0')));
    }
    return record;
}

class VendorRecord : public testing::TestWithParam<std::string>
{
};

} // namespace

TEST_P(VendorRecord, BuiltInCard_IsTheDescriptionFieldByField)
{
    const CardInfoStruct info = vendorRecord(builtInCard(QString::fromStdString(GetParam())));
    const QByteArray record(reinterpret_cast<const char *>(&info), int(sizeof info));
    const QByteArray expected = expectedRecord(sourceCard(QString::fromStdString(GetParam())));
    for (int i = 0; i < record.size(); ++i)
        ASSERT_EQ(record.at(i), expected.at(i)) << "at offset " << i;
}

INSTANTIATE_TEST_SUITE_P(Cards, VendorRecord, testing::ValuesIn(sourceCardParameters()),
                         testNameOf);
