#pragma once

// A decoder for tests of operations that take everything that they work on as arguments.

#include "iddata/iddata.h"

class Decoder
{
public:
    CIdData *operator->() { return &m_decoder; }

private:
    QByteArray m_record;
    CIdData m_decoder{m_record, FP_INFO_NONE};
};
