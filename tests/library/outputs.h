#pragma once

// One call of readIDCard with all its outputs.

#include <string>

#include "api/idcard_reader_api.h"

/** A kind that no card has; still there after a call that filled nothing. */
constexpr unsigned int NO_KIND = 99;

struct Reading {
    unsigned int cardKind = NO_KIND;
    _tagIDCARD_INFO_ALL_CN cn{};
    _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017{};
    _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew{};
    _tagIDCARD_INFO_ALL_HMT hmt{};
    std::string front = "front before";
    std::string back = "back before";

    int read() { return readIDCard(&cardKind, &cn, &f2017, &fNew, &hmt, &front, &back); }
};
