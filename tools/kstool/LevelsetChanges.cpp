#include "LevelsetChanges.h"

#include <QRect>

namespace {

QString change(const LevelsetField &field, const QString &from, const QString &to) {
    return QStringLiteral("%1 %2 -> %3").arg(field.name, from, to);
}

QString levelName(int level) {
    return QStringLiteral("level %1: ").arg(level + 1);
}

// Lists each changed cell of a level up to the limit and sums up the rest.
void compareCells(const WholeLevelset &older, const WholeLevelset &newer, int level,
                  LevelChanges &changes, QStringList &lines) {
    QRect rest;
    for (int y = 0; y < newer.height(level); ++y)
        for (int x = 0; x < newer.width(level); ++x) {
            const int offset = WholeLevelset::cellOffset(level, x, y);
            if (older.at(offset) == newer.at(offset))
                continue;
            if (changes.cells.size() < MaxListedCells) {
                const LevelsetField cell = cellField(level, x, y);
                lines << levelName(level) + change(cell, cell.value(older), cell.value(newer));
            } else {
                rest |= QRect(x, y, 1, 1);
            }
            changes.cells << QPoint(x, y);
        }
    const qsizetype more = changes.cells.size() - MaxListedCells;
    if (more > 0)
        lines << levelName(level) +
                     QStringLiteral("%1 more %2 changed, within (%3, %4) to (%5, %6)")
                         .arg(more)
                         .arg(more == 1 ? "cell" : "cells")
                         .arg(rest.left())
                         .arg(rest.top())
                         .arg(rest.right())
                         .arg(rest.bottom());
}

} // namespace

LevelsetChanges compareLevelsets(const WholeLevelset &older, const WholeLevelset &newer) {
    LevelsetChanges changes;
    changes.levels.resize(std::max(older.count(), newer.count()));
    for (int level = 0; level < changes.levels.size(); ++level) {
        if (level >= older.count())
            changes.levels[level].status = LevelChanges::Status::Added;
        else if (level >= newer.count())
            changes.levels[level].status = LevelChanges::Status::Removed;
    }

    const auto compare = [&](const LevelsetField &field) {
        if (!field.differs(older, newer))
            return;
        const QString text = change(field, field.value(older), field.value(newer));
        changes.lines << (field.level < 0 ? text : levelName(field.level) + text);
        if (field.level >= 0 && field.level < changes.levels.size())
            changes.levels[field.level].notes << text;
    };
    for (const LevelsetField &field : levelsetWideFields())
        compare(field);

    for (int level = 0; level < changes.levels.size(); ++level) {
        LevelChanges &levelChanges = changes.levels[level];
        if (levelChanges.status == LevelChanges::Status::Added) {
            changes.lines << levelName(level) + QStringLiteral("added, %1 x %2")
                                                    .arg(newer.width(level))
                                                    .arg(newer.height(level));
        } else if (levelChanges.status == LevelChanges::Status::Removed) {
            changes.lines << levelName(level) + QStringLiteral("removed");
        } else {
            for (const LevelsetField &field : headerFields(level))
                compare(field);
            compareCells(older, newer, level, levelChanges, changes.lines);
        }
    }
    return changes;
}

Levelset shownLevels(const WholeLevelset &older, const WholeLevelset &newer,
                     const LevelsetChanges &changes) {
    Levelset shown = newer.levelset();
    const Levelset removed = older.levelset();
    for (int level = 0; level < changes.levels.size(); ++level)
        if (changes.levels[level].status == LevelChanges::Status::Removed)
            shown.levels[level] = removed.levels[level];
    return shown;
}
