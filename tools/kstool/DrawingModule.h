#pragma once

#include "LevelsetChanges.h"

#include "levelset/Levelset.h"

#include <QList>
#include <QString>
#include <QStringList>

// What kstool draws needs Qt Gui, and a program linked with Qt Gui starts about twice as
// slowly, while git runs kstool's diff, merge and export once for every file. So the drawing
// is built into a module of its own, kstool-draw.so, that kstool loads only when a command
// draws. kstool's definitions of the functions below (and of runRender, runSheet and
// runThumbnail) load the module and call the module's own definitions.

// Writes the tileset image as a PNG; an empty string or what failed.
QString writeTilesetPng(const QString &path);

// Writes changesPicture() (ChangesPicture.h) as a PNG; an empty string or what failed.
QString writeChangesPicture(const Levelset &shown, const QList<LevelChanges> &levels, int scale,
                            const QString &path);

// The module's table of its definitions.
struct DrawingModule {
    int (*render)(const QStringList &arguments);
    int (*sheet)(const QStringList &arguments);
    int (*thumbnail)(const QStringList &arguments);
    QString (*writeTilesetPng)(const QString &path);
    QString (*writeChangesPicture)(const Levelset &shown, const QList<LevelChanges> &levels,
                                   int scale, const QString &path);
};

// The module exports one C function of this name that returns its table.
inline constexpr char DrawingModuleEntry[] = "kstoolDrawingModule";
using DrawingModuleEntryFunction = const DrawingModule *(*)();
