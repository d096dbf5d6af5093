#pragma once

struct LevelRecord;

// The resize commands move only the right or bottom edge of a level, one cell at a time, within
// 12..32 columns and 8..32 rows. Cells that fall outside keep their tiles and the positions are
// not clamped. Each returns true when the size changed and false at the limit.
bool decreaseWidth(LevelRecord &level);
bool increaseWidth(LevelRecord &level);
bool decreaseHeight(LevelRecord &level);
bool increaseHeight(LevelRecord &level);
