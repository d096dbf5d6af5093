#pragma once

#include "ImportResult.h"
#include "LevelsetDump.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// The levelset as Tiled maps: one orthogonal map of 16 x 16 tiles per level, as large as the
// level, with CSV layer data and an embedded tileset whose image is written beside the maps.
// Tile id t is gid t + 1. The header values are map properties, and so is the passcode of
// every level after the first; map 1 also carries the levelset-wide bytes (tag, reserved
// bytes, a level count the maps do not explain, passcodes of levels not exported and the
// bytes past the last level), so export and import give back the file byte for byte.

// The maps' names for an export to output "OUT.tmx": OUT-1.tmx, OUT-2.tmx, ...
QString tmxMapPath(const QString &output, int levelNumber);
QString tmxTilesetPath(const QString &output);

// Why the levelset cannot become maps (no complete level, or a tile id over 177 inside a
// level, which a map could not bring back), or an empty string.
QString tmxExportProblem(const LevelsetDump &dump);

// Writes the maps and the tileset image, and removes maps of an earlier export past the last
// level. Returns an empty string or what failed.
QString exportTmx(const LevelsetDump &dump, const QString &output);

// Reads maps into a levelset, one level per map. "OUT-1.tmx" (or "OUT.tmx" when no such file
// exists) names the series OUT-1.tmx, OUT-2.tmx, ... as far as it goes; any other existing map
// is a levelset of one level. A missing tag is defaultTag.
ImportResult importTmx(const QString &input, const QByteArray &defaultTag);
