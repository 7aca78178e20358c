#pragma once

// Cards of every kind with known content, made without a reader.

#include <memory>

#include "apps/card/card.h"

namespace samples
{

/** Makes the photo area a BMP file of the right form. */
void putPhotoBmp(unsigned char *photoArea);

/** Records with content in all fields of all four kinds; no photos, no fingerprints. */
std::unique_ptr<app::CardRecords> filledRecords();

app::Card residentCard();
app::Card residentCardWithEverything(); ///< with a BMP photo, two prints, and pictures
app::Card cardOf(unsigned int kind);
/** From a raw record whose texts the decoder cuts: those of "resident-longest-texts". */
app::Card cardWithCutTexts();

} // namespace samples
