#include "iddata/iddata.h"

#include <string>

#include <QtDebug>

#include "common/country_code_list.h"

/** This file's own copy of the country table. */
static const std::string STR_LIST[COUNTRY_CODE_COUNT][3] = {
#include "common/country_code_rows.inc"
};

CIdData::CIdData(QByteArray &record, FP_INFO_TYPE fpInfo) : m_data(record), m_fpInfoType(fpInfo) {}

CIdData::~CIdData() = default;

bool CIdData::parseNationality(QString code, QString &name)
{
    const std::string wanted = code.toUtf8().toStdString();
    for (const auto &[numeric, alpha3, chineseName] : STR_LIST) {
        if (alpha3 == wanted) {
            name = QString::fromLocal8Bit(chineseName.c_str());
            qDebug() << "nationality=" << name;
            return true;
        }
    }
    return false;
}
