#pragma once

#include "levelset/LevelRecord.h"

#include <array>

// The names the exported formats give the 16 header bytes, in file order.
inline constexpr std::array<const char *, LevelRecord::HeaderSize> HeaderFieldNames{
    "height",  "width",    "objectives", "time",      "putX",    "putY",    "takeX",  "takeY",
    "putType", "takeType", "levelType",  "alienType", "finishX", "finishY", "startX", "startY"};
