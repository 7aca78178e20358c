#include "api/image_output.h"

#include <QString>

#include "render/makecardimg.h"

namespace
{

template <typename Record>
using Maker = QString (*)(Record *);

template <typename Record>
void make(Maker<Record> frontMaker, Maker<Record> backMaker, Record &record, std::string &front,
          std::string &back)
{
    front = frontMaker(&record).toStdString();
    back = backMaker(&record).toStdString();
}

} // namespace

void makeImages(_tagIDCARD_INFO_ALL_CN &record, std::string &front, std::string &back)
{
    make(MakeCardImg::makeIDCardCNFrontBase64, MakeCardImg::makeIDCardCNBackBase64, record, front,
         back);
}

void makeImages(_tagIDCARD_INFO_ALL_HMT &record, std::string &front, std::string &back)
{
    make(MakeCardImg::makeIDCardHmtFrontBase64, MakeCardImg::makeIDCardHmtBackBase64, record, front,
         back);
}

void makeImages(_tagIDCARD_INFO_ALL_FOREIGN_2017 &record, std::string &front, std::string &back)
{
    make(MakeCardImg::makeIDCardF2017FrontBase64, MakeCardImg::makeIDCardF2017BackBase64, record,
         front, back);
}

void makeImages(_tagIDCARD_INFO_ALL_FOREIGN_NEW &record, std::string &front, std::string &back)
{
    make(MakeCardImg::makeIDCardFNewFrontBase64, MakeCardImg::makeIDCardFNewBackBase64, record,
         front, back);
}
