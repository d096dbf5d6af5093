#pragma once

#include <QString>

struct Levelset;

// The level list commands. Each returns true when it changed the levelset and false at its
// limit, where it leaves everything as it was. None of them touches a record or a passcode:
// a level dropped by removeLevel comes back unchanged with the next addLevel.

// One more level, up to 8.
bool addLevel(Levelset &levelset);
// Drops the last level, unless it is the current one (which also covers a set of one).
bool removeLevel(Levelset &levelset);
// Moves to the level before the current one, if there is one.
bool previousLevel(Levelset &levelset);
// Moves to the level after the current one, if it belongs to the set.
bool nextLevel(Levelset &levelset);

// "Level: 3 / 5": the current level counted from 1, and the level count.
QString levelLabel(const Levelset &levelset);
