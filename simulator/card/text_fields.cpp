// Writes a text into its field.

#include "simulator/card/text_fields.h"

namespace simulator
{

void putText(unsigned char *field, std::size_t size, const QString &text, QChar rest)
{
    const QString filled = text.leftJustified(static_cast<int>(size / 2), rest, true);
    for (const QChar character : filled) {
        *field++ = character.cell();
        *field++ = character.row();
    }
}

} // namespace simulator
