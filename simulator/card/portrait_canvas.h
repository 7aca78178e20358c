#pragma once

// A canvas for portraits: shapes are painted in plain colours on a grid finer than the photo and
// brought down to it with softened edges. Integers only, so that every machine paints the same.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/card/photo_image.h"

namespace simulator
{

/** Coordinates are eighths of a photo pixel. */
using Units = int;
constexpr Units UNITS_PER_PIXEL = 8;

constexpr Units operator""_px(long double pixels)
{
    return static_cast<Units>(pixels * UNITS_PER_PIXEL);
}
constexpr Units operator""_px(unsigned long long pixels)
{
    return static_cast<Units>(pixels) * UNITS_PER_PIXEL;
}

struct Point {
    Units x;
    Units y;
};

struct Ellipse {
    Point centre;
    Units xRadius;
    Units yRadius;

    [[nodiscard]] constexpr bool contains(Point p) const
    {
        const std::int64_t dx = std::int64_t{p.x - centre.x} * yRadius;
        const std::int64_t dy = std::int64_t{p.y - centre.y} * xRadius;
        const std::int64_t r = std::int64_t{xRadius} * yRadius;
        return dx * dx + dy * dy <= r * r;
    }
};

struct Box {
    Units left;
    Units top;
    Units right;
    Units bottom;

    [[nodiscard]] constexpr bool contains(Point p) const
    {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
};

/** A box with its corners rounded. */
struct RoundedBox {
    Box box;
    Units radius;

    [[nodiscard]] bool contains(Point p) const;
};

/** Four corners, in order around the shape, which must be convex. */
struct Quad {
    std::array<Point, 4> corners;

    [[nodiscard]] bool contains(Point p) const;
};

/** The colours of a portrait; the canvas starts out as `Background`. */
enum class Ink : std::uint8_t {
    Background,
    Skin,
    SkinShade,
    Blush,
    Hair,
    HairShine,
    Feature, ///< brows, lashes, eyes
    Mouth,
    Clothes,
    ClothesShade,
    Shirt,
    Frame, ///< glasses
    White, ///< eyes, collars: not the white of the background, which card pictures see through
};
constexpr std::size_t INK_COUNT = 13;

using Palette = std::array<Rgb, INK_COUNT>;

class PortraitCanvas
{
public:
    PortraitCanvas();

    /** Paints every point inside `box` for which `shape(Point)` is true. */
    template <typename Shape>
    void paint(const Box &box, Ink ink, Shape shape)
    {
        for (int row = firstRow(box.top); row < firstRow(box.bottom); ++row) {
            for (int column = firstColumn(box.left); column < firstColumn(box.right); ++column) {
                if (shape(centreOf(column, row))) {
                    m_inks[sampleIndex(column, row)] = ink;
                }
            }
        }
    }

    void paint(const Ellipse &ellipse, Ink ink);
    void paint(const RoundedBox &box, Ink ink);
    void paint(const Quad &quad, Ink ink);

    /** The part of `shape` outside `hole`: arcs and rings. */
    void paintWithout(const Ellipse &shape, const Ellipse &hole, Ink ink);

    [[nodiscard]] PhotoImage photo(const Palette &palette) const;

private:
    static constexpr int SCALE = 4; ///< samples along each side of a pixel
    static constexpr int COLUMNS = PHOTO_WIDTH * SCALE;
    static constexpr int ROWS = PHOTO_HEIGHT * SCALE;
    static constexpr Units STEP = UNITS_PER_PIXEL / SCALE;

    static int firstColumn(Units x);
    static int firstRow(Units y);
    static constexpr Point centreOf(int column, int row)
    {
        return {column * STEP + STEP / 2, row * STEP + STEP / 2};
    }
    static constexpr std::size_t sampleIndex(int column, int row)
    {
        return static_cast<std::size_t>(row) * COLUMNS + static_cast<std::size_t>(column);
    }
    [[nodiscard]] Rgb pixelAt(int x, int y, const Palette &palette) const;

    std::vector<Ink> m_inks;
};

} // namespace simulator
