#pragma once

#include "LevelsetDump.h"

#include <QString>
#include <optional>

// What reading an exported levelset gives: the levelset's bytes, or why there are none.
struct ImportResult {
    std::optional<LevelsetDump> dump;
    QString error; // names the level and the field or cell at fault

    static ImportResult failure(const QString &error) { return {std::nullopt, error}; }
};
