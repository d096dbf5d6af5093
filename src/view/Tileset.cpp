#include "view/Tileset.h"

const QImage &Tileset::image() {
    static const QImage tileset =
        QImage(QStringLiteral(":/images/tileset.bmp")).convertToFormat(QImage::Format_RGB32);
    return tileset;
}
