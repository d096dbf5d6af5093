#include "levels/LevelResize.h"

#include "levelset/LevelRecord.h"

// A size byte read from a file may lie outside the editor's range; each command then only tests
// its own limit, so a level narrower than 12 can still grow and never shrinks further.
namespace {

bool shrink(std::uint8_t &size, int smallest) {
    if (size <= smallest)
        return false;
    --size;
    return true;
}

bool grow(std::uint8_t &size) {
    if (size >= LevelRecord::GridSize)
        return false;
    ++size;
    return true;
}

} // namespace

bool decreaseWidth(LevelRecord &level) {
    return shrink(level.header[LevelRecord::Width], LevelRecord::MinWidth);
}

bool increaseWidth(LevelRecord &level) {
    return grow(level.header[LevelRecord::Width]);
}

bool decreaseHeight(LevelRecord &level) {
    return shrink(level.header[LevelRecord::Height], LevelRecord::MinHeight);
}

bool increaseHeight(LevelRecord &level) {
    return grow(level.header[LevelRecord::Height]);
}
