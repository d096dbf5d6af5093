#include "PixelArt.h"

#include "TextLines.h"

std::optional<ColourLegend> parseColourLegend(const QByteArray &text, SourceError &error) {
    ColourLegend legend;
    const QList<QByteArray> lines = textLines(text);
    for (int n = 0; n < lines.size(); ++n) {
        const QByteArray &line = lines[n];
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (line[0] == ' ' || line[0] == '\t' || fields.size() < 2 || fields[0].size() != 1) {
            error = {n + 1, QStringLiteral("expected \"<character> <RRGGBB or none> <name>\"")};
            return std::nullopt;
        }
        const char key = fields[0][0];
        if (legend.contains(key)) {
            error = {n + 1,
                     QStringLiteral("character '%1' is defined twice").arg(QChar::fromLatin1(key))};
            return std::nullopt;
        }
        if (fields[1] == "none") {
            legend[key] = qRgba(0, 0, 0, 0);
            continue;
        }
        bool ok = false;
        const uint rgb = fields[1].toUInt(&ok, 16);
        if (!ok || fields[1].size() != 6) {
            error = {n + 1, QStringLiteral("colour \"%1\" is not six hexadecimal digits")
                                .arg(QString::fromLatin1(fields[1]))};
            return std::nullopt;
        }
        legend[key] = qRgb(int(rgb >> 16) & 0xff, int(rgb >> 8) & 0xff, int(rgb) & 0xff);
    }
    if (legend.empty()) {
        error = {0, QStringLiteral("the legend defines no colour")};
        return std::nullopt;
    }
    return legend;
}

std::optional<QImage> parsePixelArt(const QByteArray &text, const ColourLegend &legend, QSize size,
                                    SourceError &error) {
    QImage image(size, QImage::Format_ARGB32);
    int y = 0;
    int lastRowLine = 0;
    const QList<QByteArray> lines = textLines(text);
    for (int n = 0; n < lines.size(); ++n) {
        const QByteArray &line = lines[n];
        if (line.startsWith('#') || line.isEmpty())
            continue;
        if (y == size.height()) {
            error = {n + 1, QStringLiteral("more than %1 rows").arg(size.height())};
            return std::nullopt;
        }
        if (line.size() != size.width()) {
            error = {n + 1, QStringLiteral("row of %1 characters, expected %2")
                                .arg(line.size())
                                .arg(size.width())};
            return std::nullopt;
        }
        for (int x = 0; x < size.width(); ++x) {
            const auto colour = legend.find(line[x]);
            if (colour == legend.end()) {
                error = {n + 1, QStringLiteral("character '%1' in column %2 is not in the legend")
                                    .arg(QChar::fromLatin1(line[x]))
                                    .arg(x + 1)};
                return std::nullopt;
            }
            image.setPixel(x, y, colour->second);
        }
        ++y;
        lastRowLine = n + 1;
    }
    if (y < size.height()) {
        error = {lastRowLine, QStringLiteral("%1 rows, expected %2").arg(y).arg(size.height())};
        return std::nullopt;
    }
    return image;
}
