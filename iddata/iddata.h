#pragma once

#include <QByteArray>
#include <QString>

#include "common/export.h"
#include "common/fp_info_type.h"

/**
 * Decodes the raw card record, the reader's answer frame as it comes over USB. Keeps a shared
 * reference to the record; no operation reads it, each is given what it works on.
 */
class IDCARD_READER_EXPORT CIdData
{
public:
    /** Takes a shared reference to `record`, which is not validated. */
    CIdData(QByteArray &record, FP_INFO_TYPE fpInfo);
    ~CIdData();

    /**
     * Looks a country up by its alpha-3 code, exactly as written. On success sets `name` to the
     * Chinese name, logs it and returns true; otherwise returns false and leaves `name` alone.
     */
    bool parseNationality(QString code, QString &name);

private:
    QByteArray m_data;
    FP_INFO_TYPE m_fpInfoType;
};
