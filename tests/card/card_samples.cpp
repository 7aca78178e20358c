#include "tests/card/card_samples.h"

#include <algorithm>

#include <QtEndian>

#include "apps/card/record_decoder.h"
#include "simulator/card/card_library.h"
#include "simulator/card/raw_record.h"

namespace samples
{

void putPhotoBmp(unsigned char *photoArea)
{
    std::fill_n(photoArea, IDCARD_PHOTO_SIZE, static_cast<unsigned char>(0x55));
    photoArea[0] = 'B';
    photoArea[1] = 'M';
    qToLittleEndian<quint32>(IDCARD_PHOTO_SIZE, photoArea + 2);
    qToLittleEndian<qint32>(102, photoArea + 18);
    qToLittleEndian<qint32>(126, photoArea + 22);
    qToLittleEndian<quint16>(24, photoArea + 28);
}

std::unique_ptr<app::CardRecords> filledRecords()
{
    auto records = std::make_unique<app::CardRecords>();
    auto &cn = records->cn;
    cn.szName = "王小明";
    cn.szSex = "男  ";
    cn.szNation = "汉";
    cn.szBirthYear = "1990";
    cn.szBirthMonth = "01";
    cn.szBirthDay = "02";
    cn.szAddress = "示例省示例市示例路1号";
    cn.szID = "000000199001020017";
    cn.szDept = "示例市公安局";
    cn.szValidStart = "20150203";
    cn.szValidEnd = "长期";
    cn.fpInfoType = FP_INFO_NONE;

    auto &hmt = records->hmt;
    hmt.szName = "陳大文";
    hmt.szSex = "女";
    hmt.szBirthYear = "1985";
    hmt.szBirthMonth = "11";
    hmt.szBirthDay = "30";
    hmt.szAddress = "示例市港澳路2号";
    hmt.szID = "810000198511300026";
    hmt.szDept = "示例市公安局";
    hmt.szValidStart = "20190101";
    hmt.szValidEnd = "20240101";
    hmt.szPassNumber = "H00000000";

    auto &old = records->foreign2017;
    old.szEnglishName = "DOE, JANE";
    old.szChineseName = "简多";
    old.szSex = "女";
    old.szID = "CAN000000000000";
    old.szNationality = "加拿大";
    old.szBirthYear = "1979";
    old.szBirthMonth = "05";
    old.szBirthDay = "06";
    old.szValidStart = "20180607";
    old.szValidEnd = "20280607";

    auto &edition = records->foreignNew;
    edition.szEnglishName = "ROE, RICHARD";
    edition.szChineseName = "";
    edition.szSex = "男";
    edition.szCardExtra = "01";
    edition.szID = "900000197001010031";
    edition.szNationality = "";
    edition.szBirthYear = "1970";
    edition.szBirthMonth = "01";
    edition.szBirthDay = "01";
    edition.szValidStart = "20230101";
    edition.szValidEnd = "20330101";
    return records;
}

app::Card cardOf(unsigned int kind)
{
    return {kind, *filledRecords()};
}

app::Card residentCard()
{
    return cardOf(IDCARD_KIND_CN);
}

app::Card cardWithCutTexts()
{
    simulator::DescriptionError error;
    const auto longest = simulator::loadCard(QStringLiteral("resident-longest-texts"), &error);
    const QByteArray record = simulator::readAnswer(longest.value(), {});
    return *app::decodeRawRecord(record, FP_INFO_NONE, app::Road::FILE);
}

app::Card residentCardWithEverything()
{
    auto records = filledRecords();
    putPhotoBmp(records->cn.byPhoto);
    records->cn.fpInfoType = FP_INFO_TWO;
    std::fill(std::begin(records->cn.byFpData), std::end(records->cn.byFpData),
              static_cast<unsigned char>(0x77));
    return {IDCARD_KIND_CN, *records, {"front of a card", "back of a card"}};
}

} // namespace samples
