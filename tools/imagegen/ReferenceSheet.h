#pragma once

#include "PixelFont.h"

#include <QImage>

// A picture of every tileset cell enlarged four times, each captioned with its id, for checking
// the sprites by eye.
QImage referenceSheet(const QImage &tileset, const PixelFont &font);
