// Head, face, clothes and glasses. Lengths are photo pixels; the face looks straight ahead.

#include "simulator/card/portrait_parts.h"

namespace simulator
{

namespace
{

constexpr Units MIDDLE = 51_px;
constexpr Units EYES_Y = 55_px;
constexpr Units BOTTOM = 126_px;
constexpr Units RIGHT_EDGE = 102_px;

Ellipse skull(const PortraitLook &look)
{
    return {{MIDDLE, 50_px}, look.faceHalfWidth, 25_px};
}

Ellipse jaw(const PortraitLook &look)
{
    constexpr Units HALF_HEIGHT = 25_px;
    return {{MIDDLE, look.chinY - HALF_HEIGHT}, look.jawHalfWidth + 1_px, HALF_HEIGHT};
}

// The same shape on both sides of the face: `side` is -1 or 1.
Point beside(int side, Units distance, Units y)
{
    return {MIDDLE + side * distance, y};
}

bool inShoulders(Point p)
{
    constexpr Ellipse SHOULDERS = {{MIDDLE, 130_px}, 46_px, 36_px};
    constexpr Ellipse COLLAR = {{MIDDLE, 108_px}, 24_px, 18_px};
    return SHOULDERS.contains(p) || COLLAR.contains(p);
}

constexpr Box CHEST = {0, 86_px, RIGHT_EDGE, BOTTOM};

Units neckHalfWidth(const PortraitLook &look)
{
    return look.jawHalfWidth - 7_px;
}

// A triangle that hangs from a line of twice `halfWidth`.
Quad triangle(Units halfWidth, Units top, Units tip)
{
    return {{{{MIDDLE - halfWidth, top}, {MIDDLE + halfWidth, top}, {MIDDLE, tip}, {MIDDLE, tip}}}};
}

void paintCrew(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Units neck = neckHalfWidth(look);
    canvas->paint(Ellipse{{MIDDLE, 93_px}, neck + 4_px, 9_px}, Ink::ClothesShade);
    canvas->paint(Ellipse{{MIDDLE, 91_px}, neck + 1.5_px, 8.5_px}, Ink::Skin);
}

void paintVNeck(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Units neck = neckHalfWidth(look);
    canvas->paint(triangle(neck + 4_px, 90_px, 118_px), Ink::ClothesShade);
    canvas->paint(triangle(neck + 1.5_px, 89_px, 113_px), Ink::Skin);
}

// The two points of a shirt collar and the bare neck between them.
void paintCollarPoints(PortraitCanvas *canvas, const PortraitLook &look, Ink ink)
{
    const Units neck = neckHalfWidth(look);
    canvas->paint(triangle(neck, 86_px, 100_px), Ink::Skin);
    for (const int side : {-1, 1}) {
        canvas->paint(Quad{{{beside(side, neck, 86_px), beside(side, neck + 4_px, 94_px),
                             beside(side, 8_px, 107_px), beside(side, 0, 101_px)}}},
                      ink);
    }
}

void paintShirtCollar(PortraitCanvas *canvas, const PortraitLook &look)
{
    canvas->paint(triangle(neckHalfWidth(look) + 3_px, 91_px, 106_px), Ink::Shirt);
    paintCollarPoints(canvas, look, Ink::Shirt);
}

void paintJacket(PortraitCanvas *canvas, const PortraitLook &look)
{
    canvas->paint(Quad{{{{37_px, 90_px}, {65_px, 90_px}, {54_px, BOTTOM}, {48_px, BOTTOM}}}},
                  Ink::Shirt);
    for (const int side : {-1, 1}) {
        canvas->paint(Quad{{{beside(side, 15_px, 90_px), beside(side, 22_px, 101_px),
                             beside(side, 18_px, 108_px), beside(side, 3_px, BOTTOM)}}},
                      Ink::ClothesShade);
    }
    paintCollarPoints(canvas, look, Ink::White);
}

void paintGarment(PortraitCanvas *canvas, const PortraitLook &look)
{
    switch (look.garment) {
    case Garment::Crew:
        paintCrew(canvas, look);
        break;
    case Garment::VNeck:
        paintVNeck(canvas, look);
        break;
    case Garment::Jacket:
        paintJacket(canvas, look);
        break;
    case Garment::Collar:
        paintShirtCollar(canvas, look);
        break;
    }
}

void paintEye(PortraitCanvas *canvas, const PortraitLook &look, int side)
{
    const Point eye = beside(side, look.eyeDistance, EYES_Y);
    canvas->paint(Ellipse{eye, 3.5_px, 2.25_px}, Ink::White);
    canvas->paint(Ellipse{eye, 2_px, 2.5_px}, Ink::Feature);
    canvas->paintWithout({{eye.x, eye.y}, 4.25_px, 3.25_px},
                         {{eye.x, eye.y + 1.5_px}, 4.75_px, 3.5_px}, Ink::Feature);
    canvas->paint(Ellipse{{eye.x + 0.75_px, eye.y - 0.75_px}, 0.75_px, 0.75_px}, Ink::White);
}

void paintBrow(PortraitCanvas *canvas, const PortraitLook &look, int side)
{
    const Point brow = beside(side, look.eyeDistance + 0.5_px, EYES_Y - look.browHeight + 3_px);
    canvas->paintWithout({brow, 5.5_px, 3.5_px}, {{brow.x, brow.y + 1.75_px}, 6.5_px, 3.5_px},
                         Ink::Hair);
}

void paintMouth(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Point mouth = {MIDDLE, look.chinY - 12.5_px};
    canvas->paintWithout({mouth, look.mouthHalfWidth, look.smile},
                         {{mouth.x, mouth.y - 1.75_px}, look.mouthHalfWidth + 1.5_px, look.smile},
                         Ink::Mouth);
}

void paintBeard(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Units mouthY = look.chinY - 12.5_px;
    if (look.beard == Beard::Full) {
        const Ellipse chin = jaw(look);
        const Ellipse shaved = {{MIDDLE, mouthY - 7_px}, look.jawHalfWidth - 3_px, 15_px};
        canvas->paint({0, EYES_Y + 6_px, RIGHT_EDGE, BOTTOM}, Ink::Hair,
                      [&](Point p) { return chin.contains(p) && !shaved.contains(p); });
    }
    if (look.beard != Beard::None) {
        canvas->paintWithout({{MIDDLE, mouthY - 1_px}, look.mouthHalfWidth + 1.5_px, 4_px},
                             {{MIDDLE, mouthY + 1.5_px}, look.mouthHalfWidth + 2_px, 3.75_px},
                             Ink::Hair);
    }
}

} // namespace

void paintNeckAndClothes(PortraitCanvas *canvas, const PortraitLook &look)
{
    canvas->paint(CHEST, Ink::Clothes, inShoulders);
    const Units neck = neckHalfWidth(look);
    canvas->paint({MIDDLE - neck, 70_px, MIDDLE + neck, 95_px}, Ink::Skin,
                  [](Point) { return true; });
    paintGarment(canvas, look);
    // The shade that the chin throws.
    const Ellipse shade = {{MIDDLE, look.chinY - 18_px}, look.jawHalfWidth, 23_px};
    canvas->paint({MIDDLE - neck, 70_px, MIDDLE + neck, 95_px}, Ink::SkinShade,
                  [&](Point p) { return shade.contains(p); });
}

void paintHead(PortraitCanvas *canvas, const PortraitLook &look)
{
    for (const int side : {-1, 1}) {
        canvas->paint(Ellipse{beside(side, look.faceHalfWidth, 57_px), 3.5_px, 6.5_px}, Ink::Skin);
        canvas->paint(Ellipse{beside(side, look.faceHalfWidth + 0.75_px, 57_px), 1.5_px, 3.75_px},
                      Ink::SkinShade);
    }
    canvas->paint(skull(look), Ink::Skin);
    canvas->paint(jaw(look), Ink::Skin);
}

void paintFace(PortraitCanvas *canvas, const PortraitLook &look)
{
    paintBeard(canvas, look);
    for (const int side : {-1, 1}) {
        canvas->paint(Ellipse{beside(side, look.eyeDistance + 2.5_px, 64.5_px), 4_px, 2.75_px},
                      Ink::Blush);
        paintEye(canvas, look, side);
        paintBrow(canvas, look, side);
    }
    canvas->paintWithout({{MIDDLE, 62_px}, 3.5_px, 2.75_px}, {{MIDDLE, 60.5_px}, 4.25_px, 2.75_px},
                         Ink::SkinShade);
    paintMouth(canvas, look);
}

void paintGlasses(PortraitCanvas *canvas, const PortraitLook &look)
{
    constexpr Units THICKNESS = 1.25_px;
    const Units corner = look.glasses == Glasses::Round ? 6_px : 2.5_px;
    for (const int side : {-1, 1}) {
        const Point eye = beside(side, look.eyeDistance + 0.25_px, EYES_Y + 0.5_px);
        const Units halfHeight = look.glasses == Glasses::Round ? 6.5_px : 5_px;
        const Box outer = {eye.x - 7.5_px, eye.y - halfHeight, eye.x + 7.5_px, eye.y + halfHeight};
        const RoundedBox rim = {outer, corner};
        const RoundedBox glass = {{outer.left + THICKNESS, outer.top + THICKNESS,
                                   outer.right - THICKNESS, outer.bottom - THICKNESS},
                                  corner - THICKNESS};
        canvas->paint(outer, Ink::Frame,
                      [&](Point p) { return rim.contains(p) && !glass.contains(p); });
        const Units hinge = look.eyeDistance + 7_px;
        canvas->paint(
            Quad{{{beside(side, hinge, EYES_Y - 2.25_px), beside(side, hinge, EYES_Y - 1_px),
                   beside(side, look.faceHalfWidth + 1_px, EYES_Y - 1.75_px),
                   beside(side, look.faceHalfWidth + 1_px, EYES_Y - 3_px)}}},
            Ink::Frame);
    }
    canvas->paintWithout({{MIDDLE, EYES_Y}, 3_px, 2.25_px},
                         {{MIDDLE, EYES_Y + 1.25_px}, 3_px, 2.25_px}, Ink::Frame);
}

} // namespace simulator
