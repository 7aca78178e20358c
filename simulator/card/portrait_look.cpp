// The choices of a portrait and its colours, as tables.

#include "simulator/card/portrait_look.h"

#include <random>

namespace simulator
{

namespace
{

struct Skin {
    Rgb plain;
    Rgb shade;
    Rgb blush;
    Rgb mouth;
};

constexpr Skin SKINS[] = {
    {{247, 216, 190}, {228, 188, 160}, {242, 196, 172}, {190, 92, 84}},
    {{240, 203, 170}, {218, 174, 140}, {234, 184, 152}, {178, 84, 74}},
    {{231, 188, 150}, {206, 158, 120}, {224, 168, 134}, {166, 78, 68}},
    {{214, 166, 126}, {186, 136, 98}, {206, 148, 112}, {150, 70, 62}},
    {{250, 224, 204}, {234, 198, 176}, {246, 204, 188}, {200, 104, 98}},
};

struct Hair {
    Rgb plain;
    Rgb shine;
};

constexpr Hair HAIRS[] = {
    {{34, 30, 32}, {70, 64, 68}},       {{46, 36, 32}, {86, 70, 62}},
    {{70, 48, 36}, {112, 82, 64}},      {{28, 28, 36}, {62, 62, 76}},
    {{132, 130, 132}, {170, 168, 170}}, {{98, 68, 44}, {142, 106, 74}},
};

struct Clothes {
    Rgb plain;
    Rgb shade;
    Rgb shirt;
};

constexpr Clothes CLOTHES[] = {
    {{52, 70, 104}, {36, 50, 78}, {236, 240, 246}},
    {{92, 54, 66}, {68, 38, 48}, {246, 238, 234}},
    {{62, 92, 84}, {44, 68, 62}, {238, 244, 240}},
    {{74, 74, 80}, {52, 52, 58}, {228, 236, 248}},
    {{128, 104, 82}, {98, 78, 60}, {250, 246, 238}},
    {{72, 110, 148}, {52, 84, 118}, {244, 244, 244}},
    {{150, 84, 74}, {118, 62, 54}, {248, 242, 232}},
    {{96, 84, 126}, {70, 60, 96}, {242, 240, 248}},
};

constexpr Rgb BACKGROUND = {255, 255, 255};
constexpr Rgb WHITE = {250, 250, 250};
constexpr Rgb FEATURE = {44, 34, 32};
constexpr Rgb FRAME = {58, 52, 56};

constexpr Haircut WOMENS_HAIRCUTS[] = {Haircut::Bob,  Haircut::Long, Haircut::TiedBack,
                                       Haircut::Long, Haircut::Bob,  Haircut::Fringe};
constexpr Haircut MENS_HAIRCUTS[] = {Haircut::Parted, Haircut::Crop, Haircut::Fringe,
                                     Haircut::Parted, Haircut::Crop, Haircut::Receding};
constexpr Garment WOMENS_GARMENTS[] = {Garment::Crew, Garment::VNeck, Garment::Jacket,
                                       Garment::Collar};
constexpr Garment MENS_GARMENTS[] = {Garment::Crew, Garment::Collar, Garment::Jacket,
                                     Garment::Collar};
constexpr Glasses GLASSES[] = {Glasses::None, Glasses::None, Glasses::Round, Glasses::None,
                               Glasses::Angular};
constexpr Beard BEARDS[] = {Beard::None, Beard::None,      Beard::None, Beard::None,
                            Beard::None, Beard::Moustache, Beard::Full};

// Draws lots. The engine's numbers are the same everywhere; the standard distributions' are not.
class Lots
{
public:
    explicit Lots(std::uint32_t seed) : m_engine(seed) {}

    std::size_t below(std::size_t count) { return m_engine() % count; }

    Units between(Units low, Units high)
    {
        return low + static_cast<Units>(below(static_cast<std::size_t>(high - low) + 1));
    }

    template <typename Value, std::size_t count>
    Value oneOf(const Value (&values)[count])
    {
        return values[below(count)];
    }

private:
    std::mt19937 m_engine;
};

} // namespace

PortraitLook chooseLook(std::uint32_t seed, Hairdresser hairdresser)
{
    const bool men = hairdresser == Hairdresser::Men;
    Lots lots(seed);
    PortraitLook look = {};
    look.skin = lots.below(std::size(SKINS));
    look.hair = lots.below(std::size(HAIRS));
    look.clothes = lots.below(std::size(CLOTHES));
    look.haircut = men ? lots.oneOf(MENS_HAIRCUTS) : lots.oneOf(WOMENS_HAIRCUTS);
    look.garment = men ? lots.oneOf(MENS_GARMENTS) : lots.oneOf(WOMENS_GARMENTS);
    look.glasses = lots.oneOf(GLASSES);
    look.beard = men ? lots.oneOf(BEARDS) : Beard::None;
    look.faceHalfWidth = lots.between(20.5_px, 22.5_px);
    look.jawHalfWidth = men ? lots.between(17.5_px, 20_px) : lots.between(15.5_px, 18_px);
    look.chinY = lots.between(80_px, 83_px);
    look.eyeDistance = lots.between(8.5_px, 9.75_px);
    look.browHeight = lots.between(6.5_px, 8_px);
    look.mouthHalfWidth = lots.between(5.5_px, 7.5_px);
    look.smile = lots.between(2_px, 3.5_px);
    look.partedLeft = lots.below(2) == 0;
    return look;
}

Palette paletteOf(const PortraitLook &look)
{
    const Skin &skin = SKINS[look.skin];
    const Hair &hair = HAIRS[look.hair];
    const Clothes &clothes = CLOTHES[look.clothes];
    // In the order of `Ink`.
    return {BACKGROUND,    skin.plain, skin.shade, skin.blush,    hair.plain,
            hair.shine,    FEATURE,    skin.mouth, clothes.plain, clothes.shade,
            clothes.shirt, FRAME,      WHITE};
}

} // namespace simulator
