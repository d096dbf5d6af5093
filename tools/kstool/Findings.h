#pragma once

#include "levelset/LevelsetFile.h"

#include <QByteArray>
#include <QStringList>

// What the reader met in a file, with the numbers the file holds rather than the repaired
// ones ("level count 9 is over 8; levels 1..8 read"). Empty for a clean read.
QStringList readerFindings(const ReadReport &report, const QByteArray &bytes,
                           const Levelset &levelset);

// Every level in use over the alien-hole or security-guard limit, with its counts.
QStringList limitFindings(const Levelset &levelset);
