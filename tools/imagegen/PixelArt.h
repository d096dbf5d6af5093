#pragma once

#include "SourceError.h"

#include <QByteArray>
#include <QImage>
#include <QRgb>
#include <map>
#include <optional>

// Which colour each character of a picture source stands for. A colour written "none" is a
// fully transparent pixel.
using ColourLegend = std::map<char, QRgb>;

// Reads legend lines "<character> <RRGGBB or none> <name...>"; "#" lines are comments.
std::optional<ColourLegend> parseColourLegend(const QByteArray &text, SourceError &error);

// Reads a picture drawn one character a pixel: "#" lines are comments, every other line is a row
// of exactly `size.width()` characters from the legend, and there are exactly `size.height()`
// rows.
std::optional<QImage> parsePixelArt(const QByteArray &text, const ColourLegend &legend, QSize size,
                                    SourceError &error);
