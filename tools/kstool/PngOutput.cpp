#include "PngOutput.h"

#include "Files.h"

#include <QBuffer>

QString writePng(const QImage &image, const QString &path) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return QStringLiteral("cannot encode %1 as PNG").arg(path);
    return writeWholeFile(path, png);
}
