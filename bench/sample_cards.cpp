#include "bench/sample_cards.h"

#include <cstring>

#include "tests/render/sample_photo.h"

SampleCards::SampleCards()
{
    putSamplePhoto(cn.byPhoto);
    std::memcpy(f2017.byPhoto, cn.byPhoto, sizeof(cn.byPhoto));
    std::memcpy(fNew.byPhoto, cn.byPhoto, sizeof(cn.byPhoto));
    std::memcpy(hmt.byPhoto, cn.byPhoto, sizeof(cn.byPhoto));

    cn.szName = "林晓雨";
    cn.szSex = "女";
    cn.szNation = "汉";
    cn.szAddress = "江南省云溪市桃源区柳荫路12号3单元401室";
    cn.szID = "990000199003074284";
    cn.szDept = "云溪市公安局桃源分局";
    hmt.szName = "何嘉敏";
    hmt.szSex = "女";
    hmt.szAddress = "江南省云溪市桃源区柳荫路66号5楼502室";
    hmt.szID = "819999199003074287";
    hmt.szDept = "云溪市公安局";
    hmt.szPassNumber = "H09999901";
    f2017.szEnglishName = "BERGSTROM, INGRID MAJA";
    f2017.szChineseName = "白英格";
    f2017.szSex = "女";
    f2017.szID = "SWE990084060536";
    f2017.szNationality = "瑞典";
    fNew.szEnglishName = "MONTGOMERY, ANNE MARIE";
    fNew.szChineseName = "安娜";
    fNew.szSex = "女";
    fNew.szID = "999826199512311642";
    fNew.szNationality = "英国";

    const auto putDates = [](auto &record) {
        record.szBirthYear = "1990";
        record.szBirthMonth = "03";
        record.szBirthDay = "07";
        record.szValidStart = "20180516";
        record.szValidEnd = "20380516";
    };
    putDates(cn);
    putDates(hmt);
    putDates(f2017);
    putDates(fNew);
}
