#pragma once

#include "ImportResult.h"
#include "LevelsetDump.h"

#include <QByteArray>
#include <QByteArrayView>

// The levelset as readable, diffable JSON: named header fields, one text line of ids per row,
// and every byte the levelset's structure leaves over kept as hex lines.
QByteArray levelsetToJson(const LevelsetDump &dump);

// Reads JSON written by levelsetToJson (or edited by hand). A missing "tag" is taken from
// defaultTag; a missing "levelCount" is the number of levels.
ImportResult levelsetFromJson(QByteArrayView json, const QByteArray &defaultTag);
