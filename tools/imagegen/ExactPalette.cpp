#include "ExactPalette.h"

#include <QHash>

std::optional<QImage> toExactPalette(const QImage &image) {
    const QImage source = image.convertToFormat(QImage::Format_ARGB32);
    QImage indexed(source.size(), QImage::Format_Indexed8);
    QList<QRgb> table;
    QHash<QRgb, int> index;
    for (int y = 0; y < source.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(source.constScanLine(y));
        uchar *out = indexed.scanLine(y);
        for (int x = 0; x < source.width(); ++x) {
            // Every fully transparent pixel is one colour, whatever its hidden RGB.
            const QRgb colour = qAlpha(line[x]) == 0 ? qRgba(0, 0, 0, 0) : line[x];
            auto found = index.constFind(colour);
            if (found == index.constEnd()) {
                if (table.size() == 256)
                    return std::nullopt;
                found = index.insert(colour, int(table.size()));
                table.append(colour);
            }
            out[x] = uchar(*found);
        }
    }
    indexed.setColorTable(table);
    return indexed;
}
