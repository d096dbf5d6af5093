#pragma once

#include "LevelsetChanges.h"

#include <QColor>
#include <QImage>

// Outlines changed cells in a colour that no marker of the editor uses.
inline const QColor ChangedCellColour(255, 0, 255);

// The first levels.size() levels of shown (shownLevels()), side by side as kstool render lays
// them out. Each changed cell is outlined, and under each level stand its number, whether it
// was added or removed, and the changes of its header and passcode. Every pixel is enlarged to
// scale x scale; text is drawn at that size. Needs a running QGuiApplication (TextPainting.h).
QImage changesPicture(const Levelset &shown, const QList<LevelChanges> &levels, int scale);
