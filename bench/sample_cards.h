#pragma once

// One record of every kind with values of common length and a photo as readers deliver it.

#include "common/card_records.h"

struct SampleCards {
    SampleCards();

    _tagIDCARD_INFO_ALL_CN cn{};
    _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017{};
    _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew{};
    _tagIDCARD_INFO_ALL_HMT hmt{};
};
