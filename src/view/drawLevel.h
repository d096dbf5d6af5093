#pragma once

class QImage;
struct LevelRecord;

// Paints all 32 x 32 cells of a level into a 512 x 512 image in the tileset's pixel format,
// each cell a plain copy of its tile's 16 x 16 block; cells outside the level use the
// catalogue's outside-level tile.
void drawLevel(const LevelRecord &level, QImage &target);

// The same from a given 128 x 512 tileset. A target of another size or format is replaced by a
// 512 x 512 RGB32 image first; a tileset of another geometry paints every cell grey.
void drawLevel(const LevelRecord &level, QImage &target, const QImage &tileset);
