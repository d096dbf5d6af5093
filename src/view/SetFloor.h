#pragma once

struct LevelRecord;

// Turns the floor of the other level type into the floor of this level's type, in all 1024
// cells, also those outside the width and height: on a Normal level (type 0) every 1 becomes 0,
// on a Hatchery level (type 1) every 0 becomes 1. Any other level type changes nothing.
// Returns the number of cells changed.
int setFloor(LevelRecord &level);
