#pragma once

#include <QString>

struct LevelRecord;

// What the counting tools show for one level: a message-box title and its lines, joined by one
// carriage return. Only cells inside the level's width and height are counted.
struct CountReport {
    QString title;
    QString text;
};

CountReport countDoors(const LevelRecord &level);
CountReport countEnemies(const LevelRecord &level);
CountReport countPickups(const LevelRecord &level);
