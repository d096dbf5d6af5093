#pragma once

#include <QImage>
#include <QString>

// Writes the image as a PNG in one piece; an empty string or what failed.
QString writePng(const QImage &image, const QString &path);
