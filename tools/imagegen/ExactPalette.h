#pragma once

#include <QImage>
#include <optional>

// The image as 8-bit indexed colour with a table of exactly the colours it uses, in order of
// first appearance, so no colour is approximated or dithered. Empty when it uses more than 256.
std::optional<QImage> toExactPalette(const QImage &image);
