#pragma once

// What becomes of a card on the reader, as a picture that differs in form as well as in colour.

#include <QColor>
#include <QPixmap>

namespace viewer
{

enum class StateKind { WAITING, READING, READ, ATTENTION, FAILED };

/** The colour that stands for it, on grounds of any lightness. */
QColor stateColour(StateKind kind);

/** A square of so many device-independent pixels. */
QPixmap stateIcon(StateKind kind, int size, qreal devicePixelRatio);

} // namespace viewer
