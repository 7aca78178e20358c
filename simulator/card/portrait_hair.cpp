// The haircuts: what falls behind the head, and what lies on it.

#include "simulator/card/portrait_parts.h"

namespace simulator
{

namespace
{

constexpr Units MIDDLE = 51_px;
constexpr Units RIGHT_EDGE = 102_px;
constexpr Units BOTTOM = 126_px;

// How far a haircut stands out from the head and what it leaves of the face: the part of the
// ellipse under the hairline that lies between the hair at both sides.
struct Cut {
    Haircut haircut;
    Units overTop;   ///< above the skull
    Units overSide;  ///< beside the skull
    Units sidesDown; ///< where it ends beside the face
    Units sideHair;  ///< how much of each side of the face it covers
    Ellipse hairline;
};

constexpr Cut CUTS[] = {
    {Haircut::Parted, 5_px, 1.75_px, 53_px, 1.5_px, {}}, // the hairline is two arcs
    {Haircut::Crop, 3.5_px, 1_px, 51_px, 1.5_px, {{MIDDLE, 61_px}, 23_px, 27.5_px}},
    {Haircut::Fringe, 5_px, 1.75_px, 54_px, 2_px, {{MIDDLE, 79_px}, 34_px, 37_px}},
    {Haircut::Receding, 1_px, 1.5_px, 54_px, 1.5_px, {{MIDDLE, 50_px}, 19.25_px, 27_px}},
    {Haircut::Bob, 5.5_px, 4_px, 76_px, 2.5_px, {{MIDDLE, 68_px}, 22.5_px, 31_px}},
    {Haircut::Long, 5.5_px, 3.5_px, 84_px, 2.5_px, {}}, // parted too
    {Haircut::TiedBack, 4_px, 1.25_px, 52_px, 1.5_px, {{MIDDLE, 60_px}, 19.5_px, 27.5_px}},
};

const Cut &cutOf(const PortraitLook &look)
{
    for (const Cut &cut : CUTS) {
        if (cut.haircut == look.haircut) {
            return cut;
        }
    }
    return CUTS[0];
}

// Everything the hair may cover: the skull and what stands out from it, straight down from there.
bool inOutline(const Cut &cut, const PortraitLook &look, Point p)
{
    const Ellipse top = {{MIDDLE, 50_px}, look.faceHalfWidth + cut.overSide, 25_px + cut.overTop};
    const Units halfWidth = top.xRadius;
    const bool below = p.y >= top.centre.y && p.y < cut.sidesDown && p.x >= MIDDLE - halfWidth &&
                       p.x < MIDDLE + halfWidth;
    return (p.y < top.centre.y && top.contains(p)) || below;
}

// The hairline of a parting: two arcs that meet above one eye.
bool underParting(const PortraitLook &look, Point p)
{
    const int side = look.partedLeft ? -1 : 1;
    const Ellipse wide = {{MIDDLE - side * 5_px, 62_px}, 26_px, 26.5_px};
    const Ellipse narrow = {{MIDDLE + side * 11_px, 60_px}, 11_px, 25_px};
    return wide.contains(p) || narrow.contains(p);
}

bool leavesFree(const Cut &cut, const PortraitLook &look, Point p)
{
    const Units halfWidth = look.faceHalfWidth - cut.sideHair;
    if (p.x < MIDDLE - halfWidth || p.x >= MIDDLE + halfWidth) {
        return false;
    }
    const bool parted = look.haircut == Haircut::Parted || look.haircut == Haircut::Long;
    return p.y >= cut.sidesDown || p.y >= 64_px ||
           (parted ? underParting(look, p) : cut.hairline.contains(p));
}

void paintShine(PortraitCanvas *canvas, const PortraitLook &look)
{
    const int side = look.partedLeft ? -1 : 1;
    const Point p = {MIDDLE - side * 8_px, 36_px};
    canvas->paintWithout({p, 10_px, 10_px}, {{p.x + side * 0.5_px, p.y + 2_px}, 10.5_px, 10_px},
                         Ink::HairShine);
}

} // namespace

void paintHairBehind(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Units halfWidth = look.faceHalfWidth + cutOf(look).overSide;
    switch (look.haircut) {
    case Haircut::Bob:
        canvas->paint(RoundedBox{{MIDDLE - halfWidth, 46_px, MIDDLE + halfWidth, 84_px}, 10_px},
                      Ink::Hair);
        break;
    case Haircut::Long:
        canvas->paint(RoundedBox{{MIDDLE - halfWidth, 46_px, MIDDLE + halfWidth, 112_px}, 12_px},
                      Ink::Hair);
        break;
    case Haircut::TiedBack:
        canvas->paint(Ellipse{{MIDDLE, 21_px}, 9_px, 8_px}, Ink::Hair);
        break;
    case Haircut::Parted:
    case Haircut::Crop:
    case Haircut::Fringe:
    case Haircut::Receding:
        break;
    }
}

void paintHair(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Cut &cut = cutOf(look);
    canvas->paint({0, 0, RIGHT_EDGE, BOTTOM}, Ink::Hair,
                  [&](Point p) { return inOutline(cut, look, p) && !leavesFree(cut, look, p); });
    if (look.haircut != Haircut::Receding) {
        paintShine(canvas, look);
    }
}

} // namespace simulator
