// The model of a drawn picture: areas of one colour with smooth edges. A pixel is coded as "like
// this neighbour" for one neighbour after the other, and as a colour of its own when it is like
// none. How probable each answer is depends on which neighbours are alike among themselves.

#include "simulator/card/palette_coder.h"

#include <algorithm>
#include <array>

#include "simulator/card/photo_image.h"
#include "simulator/card/range_coder.h"

namespace simulator
{

namespace
{

constexpr int INDEX_BITS = 7;
static_assert(1 << INDEX_BITS == MOST_COLOURS);

constexpr std::size_t CANDIDATES = 4;
constexpr std::size_t PATTERNS = 256;

using Index = std::uint8_t;

// The neighbours already coded; what lies outside the photo counts as index 0, the colour of its
// first pixel and so its background.
struct Neighbours {
    Index west;
    Index north;
    Index northEast;
    Index northWest;
    Index farWest;
    Index farNorth;
};

Neighbours neighboursAt(const std::vector<Index> &indices, int x, int y)
{
    const auto at = [&](int column, int row) {
        return column < 0 || column >= PHOTO_WIDTH || row < 0 ? Index{0}
                                                              : indices[photoIndex(column, row)];
    };
    return {at(x - 1, y),     at(x, y - 1), at(x + 1, y - 1),
            at(x - 1, y - 1), at(x - 2, y), at(x, y - 2)};
}

std::size_t patternOf(const Neighbours &n)
{
    const bool alike[] = {n.west == n.north,          n.north == n.northEast, n.west == n.northWest,
                          n.north == n.northWest,     n.west == n.farWest,    n.north == n.farNorth,
                          n.northEast == n.northWest, n.west == n.northEast};
    std::size_t pattern = 0;
    for (const bool same : alike) {
        pattern = pattern * 2 + (same ? 1 : 0);
    }
    return pattern;
}

// One pixel after the other, the same way for coding and decoding: `Coder` gives
// `bool decide(Probability *, bool)`, which takes the decision or ignores it and reads one.
template <typename Coder>
class PixelModel
{
public:
    explicit PixelModel(Coder *coder) : m_coder(coder), m_literals(1U << (2 * INDEX_BITS)) {}

    Index code(const Neighbours &near, Index wanted)
    {
        const std::array<Index, CANDIDATES> candidates = {near.west, near.north, near.northEast,
                                                          near.northWest};
        auto &probabilities = m_like[patternOf(near)];
        for (std::size_t i = 0; i < CANDIDATES; ++i) {
            const auto *const end = candidates.begin() + i;
            if (std::find(candidates.begin(), end, candidates[i]) != end) {
                continue; // ruled out already
            }
            if (m_coder->decide(&probabilities[i], wanted == candidates[i])) {
                return candidates[i];
            }
        }
        return codeLiteral(near.west, wanted);
    }

private:
    // A colour of its own, bit by bit; what it is depends most on the colour it borders on.
    Index codeLiteral(Index west, Index wanted)
    {
        std::size_t node = 1;
        for (int bit = INDEX_BITS - 1; bit >= 0; --bit) {
            auto &probability = m_literals[(std::size_t{west} << INDEX_BITS) + node];
            const bool one = m_coder->decide(&probability, ((wanted >> bit) & 1) != 0);
            node = node * 2 + (one ? 1 : 0);
        }
        return static_cast<Index>(node - MOST_COLOURS);
    }

    Coder *m_coder;
    std::array<std::array<Probability, CANDIDATES>, PATTERNS> m_like;
    std::vector<Probability> m_literals;
};

struct Writer {
    RangeEncoder encoder;
    bool decide(Probability *probability, bool decision)
    {
        encoder.encode(probability, decision);
        return decision;
    }
};

struct Reader {
    RangeDecoder decoder;
    bool decide(Probability *probability, bool /*decision*/) { return decoder.decode(probability); }
};

template <typename Coder>
void codeAll(Coder *coder, std::vector<Index> *indices)
{
    PixelModel<Coder> model(coder);
    for (int y = 0; y < PHOTO_HEIGHT; ++y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            Index &index = (*indices)[photoIndex(x, y)];
            index = model.code(neighboursAt(*indices, x, y), index);
        }
    }
}

} // namespace

QByteArray encodeIndices(const std::vector<std::uint8_t> &indices)
{
    Writer writer;
    std::vector<Index> pixels = indices;
    codeAll(&writer, &pixels);
    return writer.encoder.finish();
}

std::vector<std::uint8_t> decodeIndices(const QByteArray &bytes)
{
    Reader reader{RangeDecoder(bytes)};
    std::vector<Index> pixels(PHOTO_PIXELS);
    codeAll(&reader, &pixels);
    return pixels;
}

} // namespace simulator
