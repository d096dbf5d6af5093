#pragma once

#include "WholeLevelset.h"

#include <QList>
#include <QPoint>
#include <QStringList>

// What changed from one levelset to another, compared as the editor reads both: only what a
// file holds counts, so cells outside a level's size and levels past the count never show.
struct LevelChanges {
    enum class Status { Kept, Added, Removed };
    Status status = Status::Kept;
    QStringList notes;   // header and passcode changes without the level's name: "time 99 -> 120"
    QList<QPoint> cells; // the changed cells, row by row
};

struct LevelsetChanges {
    // One line per change in file order, in a designer's words.
    QStringList lines;
    // Every level either levelset has, first to last.
    QList<LevelChanges> levels;
};

// A level's cells are those inside the newer size, each compared with what the older level
// holds there as read (a cell it did not hold reads as floor 0, as the editor shows it after
// widening). Past MaxListedCells changed cells in a level, the rest are summed up in one line
// with their count and the box they lie in.
inline constexpr int MaxListedCells = 20;
LevelsetChanges compareLevelsets(const WholeLevelset &older, const WholeLevelset &newer);

// The levels a picture of the changes shows: the newer levelset's, and the older one's where
// the newer levelset removed a level.
Levelset shownLevels(const WholeLevelset &older, const WholeLevelset &newer,
                     const LevelsetChanges &changes);
