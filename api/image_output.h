#pragma once

// The last step of a read: the two pictures of the card, as the caller's strings.

#include <string>

#include "common/card_records.h"

/**
 * Replaces `front` and then `back` by the base64 text of a JPEG picture of that side of the card in
 * `record`. A picture that cannot be made gives an empty text.
 */
void makeImages(_tagIDCARD_INFO_ALL_CN &record, std::string &front, std::string &back);
void makeImages(_tagIDCARD_INFO_ALL_HMT &record, std::string &front, std::string &back);
void makeImages(_tagIDCARD_INFO_ALL_FOREIGN_2017 &record, std::string &front, std::string &back);
void makeImages(_tagIDCARD_INFO_ALL_FOREIGN_NEW &record, std::string &front, std::string &back);
