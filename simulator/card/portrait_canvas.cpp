// Shapes, and the way from the fine grid to the photo.

#include "simulator/card/portrait_canvas.h"

#include <algorithm>

namespace simulator
{

namespace
{

// A pixel is mixed of its two most frequent inks in thirds: smooth to the eye, and few enough
// colours for a compressed photo.
constexpr int MIX_STEPS = 3;

Box boundsOf(const Ellipse &e)
{
    return {e.centre.x - e.xRadius, e.centre.y - e.yRadius, e.centre.x + e.xRadius,
            e.centre.y + e.yRadius};
}

// Which side of the line from `a` to `b` the point is on: negative, zero or positive.
std::int64_t sideOf(Point a, Point b, Point p)
{
    return std::int64_t{b.x - a.x} * (p.y - a.y) - std::int64_t{b.y - a.y} * (p.x - a.x);
}

Rgb mixed(const Rgb &first, const Rgb &second, int stepsOfSecond)
{
    const auto mix = [&](std::uint8_t a, std::uint8_t b) {
        return static_cast<std::uint8_t>((a * (MIX_STEPS - stepsOfSecond) + b * stepsOfSecond) /
                                         MIX_STEPS);
    };
    return {mix(first.red, second.red), mix(first.green, second.green),
            mix(first.blue, second.blue)};
}

} // namespace

bool RoundedBox::contains(Point p) const
{
    const Point nearest = {std::clamp(p.x, box.left + radius, box.right - radius),
                           std::clamp(p.y, box.top + radius, box.bottom - radius)};
    return Ellipse{nearest, radius, radius}.contains(p);
}

bool Quad::contains(Point p) const
{
    bool anyLeft = false;
    bool anyRight = false;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::int64_t side = sideOf(corners[i], corners[(i + 1) % corners.size()], p);
        anyLeft = anyLeft || side < 0;
        anyRight = anyRight || side > 0;
    }
    return !(anyLeft && anyRight);
}

PortraitCanvas::PortraitCanvas() : m_inks(std::size_t{COLUMNS} * ROWS, Ink::Background) {}

int PortraitCanvas::firstColumn(Units x)
{
    return std::clamp(x / STEP, 0, COLUMNS);
}

int PortraitCanvas::firstRow(Units y)
{
    return std::clamp(y / STEP, 0, ROWS);
}

void PortraitCanvas::paint(const Ellipse &ellipse, Ink ink)
{
    paint(boundsOf(ellipse), ink, [&](Point p) { return ellipse.contains(p); });
}

void PortraitCanvas::paint(const RoundedBox &box, Ink ink)
{
    paint(box.box, ink, [&](Point p) { return box.contains(p); });
}

void PortraitCanvas::paint(const Quad &quad, Ink ink)
{
    const auto &c = quad.corners;
    const auto [left, right] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    const auto [top, bottom] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    paint(Box{left, top, right, bottom}, ink, [&](Point p) { return quad.contains(p); });
}

void PortraitCanvas::paintWithout(const Ellipse &shape, const Ellipse &hole, Ink ink)
{
    paint(boundsOf(shape), ink, [&](Point p) { return shape.contains(p) && !hole.contains(p); });
}

PhotoImage PortraitCanvas::photo(const Palette &palette) const
{
    PhotoImage image;
    for (int y = 0; y < PHOTO_HEIGHT; ++y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            image.at(x, y) = pixelAt(x, y, palette);
        }
    }
    return image;
}

Rgb PortraitCanvas::pixelAt(int x, int y, const Palette &palette) const
{
    std::array<int, INK_COUNT> counts = {};
    for (int row = y * SCALE; row < (y + 1) * SCALE; ++row) {
        for (int column = x * SCALE; column < (x + 1) * SCALE; ++column) {
            ++counts[static_cast<std::size_t>(m_inks[sampleIndex(column, row)])];
        }
    }
    auto *const first = std::max_element(counts.begin(), counts.end());
    const int most = *first;
    *first = 0;
    auto *const second = std::max_element(counts.begin(), counts.end());
    const int both = most + *second;
    // The ink that stands first in the palette is mixed first, whichever of the two is more
    // frequent: otherwise rounding would make two colours of one mixture.
    const auto low = static_cast<std::size_t>(std::min(first, second) - counts.begin());
    const auto high = static_cast<std::size_t>(std::max(first, second) - counts.begin());
    const int ofHigh = first < second ? *second : most;
    const int steps = (2 * ofHigh * MIX_STEPS + both) / (2 * both);
    return mixed(palette[low], palette[high], steps);
}

} // namespace simulator
