#pragma once

class QImage;
struct LevelRecord;

// Paints all 32 x 32 cells of a level into a 512 x 512 image in the tileset's pixel format,
// each cell a plain copy of its tile's 16 x 16 block; cells outside the level use tile 255.
void drawLevel(const LevelRecord &level, QImage &target);
