#pragma once

// The text fields of the maker's record, as each kind of output record needs them: which field
// comes from where and how it is converted is in one table per kind.

#include "common/card_info_struct.h"
#include "common/card_records.h"

/**
 * Fills every text field of `record` from the block of its kind in `info`, in the order of the
 * kind's table. No content is an error: an unknown country gives an empty name, a short date short
 * parts. Throws only when memory runs out; the fields written so far then stay written.
 */
void extractFields(CardInfoStruct &info, _tagIDCARD_INFO_ALL_CN &record);
void extractFields(CardInfoStruct &info, _tagIDCARD_INFO_ALL_HMT &record);
void extractFields(CardInfoStruct &info, _tagIDCARD_INFO_ALL_FOREIGN_2017 &record);
void extractFields(CardInfoStruct &info, _tagIDCARD_INFO_ALL_FOREIGN_NEW &record);
