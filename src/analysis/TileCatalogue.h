#pragma once

#include <QString>
#include <array>
#include <cstdint>

// The tile ids the editor gives a meaning to. Every other id is a plain picture: it is placed,
// shown, saved and loaded like any other and no tool treats it specially.

enum class TileGroup { None, Floor, OutsideSet, InsideSet, WallSet, PickUp, Enemy, Door };

struct TileKind {
    int first; // ids first..last share one kind
    int last;
    const char *name;
    TileGroup group;
    const char *shortName = nullptr; // a word or two for a line of text; the name when null
};

namespace Tile {
inline constexpr std::uint8_t NormalFloor = 0;
inline constexpr std::uint8_t HatcheryFloor = 1;
inline constexpr std::uint8_t KeyPass = 54;
inline constexpr std::uint8_t WhiteKey = 55;
inline constexpr std::uint8_t CheckeredKey = 56;
inline constexpr std::uint8_t BlackKey = 57;
inline constexpr std::uint8_t Ammo = 58;         // worth 20 rounds
inline constexpr std::uint8_t SmallCredits = 59; // worth 10
inline constexpr std::uint8_t LargeCredits = 60; // worth 100
inline constexpr std::uint8_t FirstAid = 61;
inline constexpr std::uint8_t Invincibility = 62;
inline constexpr std::uint8_t ExtraLife = 63;
inline constexpr std::uint8_t AlienHole = 69; // the hole has two pictures, 69 and 70
inline constexpr std::uint8_t AlienHoleOther = 70;
inline constexpr std::uint8_t Worm = 71;
inline constexpr std::uint8_t FaceHugger = 72;
inline constexpr std::uint8_t NormalAlien = 73;
inline constexpr std::uint8_t StrongAlien = 74;
inline constexpr std::uint8_t SecurityGuard = 75;
inline constexpr std::uint8_t SolidWall = 89;
// Doors come in pairs: the even id is the upright bar, the odd id the lying one.
inline constexpr std::uint8_t NormalDoor = 168;
inline constexpr std::uint8_t SecurityDoor = 170;
inline constexpr std::uint8_t WhiteDoor = 172;
inline constexpr std::uint8_t CheckeredDoor = 174;
inline constexpr std::uint8_t BlackDoor = 176;
inline constexpr std::uint8_t OutsideLevel = 255; // painted for cells outside the level

inline constexpr int PlaceableCount = 178; // the palette offers ids 0..177
} // namespace Tile

inline constexpr auto TileCatalogue = std::to_array<TileKind>({
    {0, 0, "floor of a Normal level", TileGroup::Floor, "floor"},
    {1, 1, "floor of a Hatchery level", TileGroup::Floor, "hatchery floor"},
    {7, 9, "outside tile", TileGroup::OutsideSet},
    {10, 13, "inside tile", TileGroup::InsideSet},
    {54, 54, "key pass", TileGroup::PickUp},
    {55, 55, "white key", TileGroup::PickUp},
    {56, 56, "checkered key", TileGroup::PickUp},
    {57, 57, "black key", TileGroup::PickUp},
    {58, 58, "ammo, worth 20", TileGroup::PickUp, "ammo"},
    {59, 59, "credits, worth 10", TileGroup::PickUp, "small credits"},
    {60, 60, "credits, worth 100", TileGroup::PickUp, "large credits"},
    {61, 61, "first aid", TileGroup::PickUp},
    {62, 62, "invincibility", TileGroup::PickUp},
    {63, 63, "extra life", TileGroup::PickUp},
    {69, 70, "alien hole", TileGroup::Enemy},
    {71, 71, "worm", TileGroup::Enemy},
    {72, 72, "face hugger", TileGroup::Enemy},
    {73, 73, "normal alien", TileGroup::Enemy},
    {74, 74, "strong alien", TileGroup::Enemy},
    {75, 75, "security guard", TileGroup::Enemy},
    {89, 89, "solid wall", TileGroup::WallSet},
    {90, 97, "wall with white details", TileGroup::WallSet, "detailed wall"},
    {168, 169, "normal door", TileGroup::Door},
    {170, 171, "security door", TileGroup::Door},
    {172, 173, "white door", TileGroup::Door},
    {174, 175, "checkered door", TileGroup::Door},
    {176, 177, "black door", TileGroup::Door},
    {178, 254, "no tile", TileGroup::None},
    {255, 255, "no tile", TileGroup::None},
});

// The families the right-button modes scatter.
inline constexpr std::array<std::uint8_t, 9> WallSet{89, 90, 91, 92, 93, 94, 95, 96, 97};
inline constexpr std::array<std::uint8_t, 4> InsideSet{10, 11, 12, 13};
inline constexpr std::array<std::uint8_t, 3> OutsideSet{7, 8, 9};

// The catalogue's entry for id, or nullptr for an id it does not list.
const TileKind *tileKind(int id);
// The kind's name ("white key"), or an empty string for an id the catalogue does not list.
QString tileName(int id);
// The name in a word or two ("floor" for "floor of a Normal level"), or an empty string.
QString tileShortName(int id);
TileGroup tileGroup(int id);

constexpr bool isPlaceableTile(int id) {
    return id >= 0 && id < Tile::PlaceableCount;
}
constexpr bool isAlienHole(int id) {
    return id == Tile::AlienHole || id == Tile::AlienHoleOther;
}
