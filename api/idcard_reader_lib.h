#pragma once

#include "common/export.h"

/** The class of the library's own name, kept for hosts that look for it. It does nothing. */
class IDCARD_READER_EXPORT Idcard_reader_lib
{
public:
    Idcard_reader_lib();
};
