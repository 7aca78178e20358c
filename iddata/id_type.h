#pragma once

/**
 * @file
 * The kinds of document in a raw card record.
 */

#include <cstdint>

/**
 * The kind of document that a raw card record holds. The letter in brackets is on the card; a
 * resident identity card has none. The numbers are those of `IDCARD_KIND`.
 */
enum ID_TYPE : std::int32_t {
    ID_TYPE_CN = 0,           ///< resident identity card
    ID_TYPE_FOREIGN_2017 = 1, ///< foreigner's permanent residence card, 2017 edition (I)
    ID_TYPE_FOREIGN_NEW = 2,  ///< foreigner's permanent residence card, new edition (Y)
    ID_TYPE_HMT = 3,          ///< residence permit for Hong Kong, Macao and Taiwan residents (J)
};
