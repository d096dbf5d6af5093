#include "SplashImage.h"

#include "ExactPalette.h"
#include "TextLines.h"

namespace {

constexpr int Width = 200;
constexpr int Height = 134;
// The scene is larger than the picture; the picture shows its middle.
constexpr int SceneLeft = (SplashScene::Columns * 16 - Width) / 2;
constexpr int SceneTop = (SplashScene::Rows * 16 - Height) / 2;

constexpr int TitleScale = 4;
constexpr int TitleTop = 34;
constexpr int SubtitleScale = 2;
constexpr int SubtitleTop = 78;
// The scene is darkened behind the words so they stay readable.
constexpr int BandTop = 26;
constexpr int BandBottom = 100;

QRgb mix(QRgb a, QRgb b, int step, int steps) {
    auto channel = [&](int x, int y) { return x + (y - x) * step / steps; };
    return qRgb(channel(qRed(a), qRed(b)), channel(qGreen(a), qGreen(b)),
                channel(qBlue(a), qBlue(b)));
}

QRgb darker(QRgb c) {
    return qRgb(qRed(c) / 2, qGreen(c) / 2, qBlue(c) / 2);
}

void paintScene(QImage &image, const TileSprites &tiles, const SplashScene &scene) {
    constexpr int Steps = 8;
    for (int y = 0; y < Height; ++y) {
        const int step = y * Steps / Height;
        const QRgb paper = mix(qRgb(36, 60, 112), qRgb(24, 104, 120), step, Steps - 1);
        const QRgb ink = mix(qRgb(8, 14, 36), qRgb(6, 30, 40), step, Steps - 1);
        const bool band = y >= BandTop && y < BandBottom;
        for (int x = 0; x < Width; ++x) {
            const int sx = x + SceneLeft;
            const int sy = y + SceneTop;
            const int id = scene.id(sx / 16, sy / 16);
            const QRgb colour = tiles.black(id, sx % 16 / 2, sy % 16 / 2) ? ink : paper;
            image.setPixel(x, y, band ? darker(colour) : colour);
        }
    }
}

// The editor's cell cursor: a 2-pixel orange outline inside the cell.
void paintCursor(QImage &image, QPoint cell) {
    if (cell.x() < 0)
        return;
    const int left = cell.x() * 16 - SceneLeft;
    const int top = cell.y() * 16 - SceneTop;
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            const bool edge = x < 2 || y < 2 || x > 13 || y > 13;
            if (edge && QRect(0, 0, Width, Height).contains(left + x, top + y))
                image.setPixel(left + x, top + y, qRgb(255, 128, 0));
        }
}

// Draws text centred across the picture: a dark outline one pixel around every stroke, then the
// strokes, coloured row by row from top to bottom so the letters carry a gradient.
void paintCaption(QImage &image, const PixelFont &font, const QByteArray &text, int top, int scale,
                  QRgb topColour, QRgb bottomColour) {
    const int left = (Width - font.width(text, scale)) / 2;
    const QRgb outline = qRgb(0, 0, 0);
    auto fill = [&image](int x0, int y0, int w, int h, QRgb colour) {
        for (int y = std::max(0, y0); y < std::min(Height, y0 + h); ++y)
            for (int x = std::max(0, x0); x < std::min(Width, x0 + w); ++x)
                image.setPixel(x, y, colour);
    };
    font.draw(text, left + 1, top + 1, scale,
              [&](int x, int y) { fill(x - 1, y - 1, scale + 2, scale + 2, outline); });
    font.draw(text, left, top, scale,
              [&](int x, int y) { fill(x - 1, y - 1, scale + 2, scale + 2, outline); });
    font.draw(text, left, top, scale, [&](int x, int y) {
        const int row = (y - top) / scale;
        fill(x, y, scale, scale, mix(topColour, bottomColour, row, PixelFont::Height - 1));
    });
}

} // namespace

std::optional<SplashScene> parseSplashScene(const QByteArray &text, SourceError &error) {
    SplashScene scene;
    int rows = 0;
    int lastRowLine = 0;
    const QList<QByteArray> lines = textLines(text);
    for (int n = 0; n < lines.size(); ++n) {
        const QByteArray line = lines[n].simplified();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (rows == SplashScene::Rows) {
            error = {n + 1, QStringLiteral("more than %1 rows").arg(SplashScene::Rows)};
            return std::nullopt;
        }
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() != SplashScene::Columns) {
            error = {n + 1, QStringLiteral("%1 tile ids, expected %2")
                                .arg(fields.size())
                                .arg(SplashScene::Columns)};
            return std::nullopt;
        }
        for (QByteArray field : fields) {
            if (field.endsWith('*')) {
                if (scene.cursor.x() >= 0) {
                    error = {n + 1,
                             QStringLiteral("a second cursor; only one cell may carry \"*\"")};
                    return std::nullopt;
                }
                scene.cursor = {int(scene.ids.size() % SplashScene::Columns), rows};
                field.chop(1);
            }
            bool ok = false;
            const int id = field.toInt(&ok);
            if (!ok || id < 0 || id >= TileSprites::Count) {
                error = {n + 1, QStringLiteral("\"%1\" is not a tile id 0..%2")
                                    .arg(QString::fromLatin1(field))
                                    .arg(TileSprites::Count - 1)};
                return std::nullopt;
            }
            scene.ids.append(id);
        }
        ++rows;
        lastRowLine = n + 1;
    }
    if (rows < SplashScene::Rows) {
        error = {lastRowLine,
                 QStringLiteral("%1 rows, expected %2").arg(rows).arg(SplashScene::Rows)};
        return std::nullopt;
    }
    return scene;
}

QImage splashImage(const TileSprites &tiles, const PixelFont &font, const SplashScene &scene) {
    QImage image(Width, Height, QImage::Format_RGB32);
    paintScene(image, tiles, scene);
    paintCursor(image, scene.cursor);
    paintCaption(image, font, "KESTRIX", TitleTop, TitleScale, qRgb(255, 244, 140),
                 qRgb(255, 140, 0));
    paintCaption(image, font, "LEVELSET EDITOR", SubtitleTop, SubtitleScale, qRgb(255, 255, 255),
                 qRgb(170, 210, 255));
    // A few dozen colours at most, so the exact table always fits.
    return *toExactPalette(image);
}
