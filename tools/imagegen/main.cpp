// imagegen: turns the text sources of the editor's pictures into image files.
//
//   imagegen tileset <tiles.txt> <out.bmp>
//   imagegen picture <legend.txt> <picture.txt> <W>x<H> <out.png>
//   imagegen splash <tiles.txt> <font.txt> <scene.txt> <out.png>
//   imagegen sheet <tiles.txt> <font.txt> <out.png>      (reference sheet of all 256 cells)
//
// A faulty source stops it with "<file>:<line>: <what is wrong>" and exit status 1; no output
// file is left behind.

#include "PixelArt.h"
#include "PixelFont.h"
#include "ReferenceSheet.h"
#include "SplashImage.h"
#include "TileSprites.h"
#include "TilesetImage.h"

#include "ExactPalette.h"
#include "levelset/ReplaceFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QStringList>
#include <cstdio>
#include <functional>
#include <optional>

namespace {

struct Failure {
    QString message;
};

void fail(const QString &message) {
    throw Failure{message};
}

template <typename T>
T load(const QString &path,
       const std::function<std::optional<T>(const QByteArray &, SourceError &)> &parse) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("%1: cannot read: %2").arg(path, file.errorString()));
    SourceError error;
    std::optional<T> value = parse(file.readAll(), error);
    if (!value)
        fail(error.describe(path));
    return std::move(*value);
}

TileSprites loadTiles(const QString &path) {
    return load<TileSprites>(path, parseTileSprites);
}
PixelFont loadFont(const QString &path) {
    return load<PixelFont>(path, PixelFont::parse);
}

void save(const QImage &image, const QString &path, const char *format) {
    QByteArray encoded;
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        fail(QStringLiteral("%1: cannot encode as %2").arg(path, QLatin1String(format)));
    if (const ReplaceResult result = replaceFile(path, encoded); !result.ok())
        fail(QStringLiteral("%1: cannot write: %2").arg(path, result.failure));
}

QSize parseSize(const QString &text) {
    const QStringList parts = text.split(QLatin1Char('x'));
    bool okW = false;
    bool okH = false;
    const QSize size =
        parts.size() == 2 ? QSize(parts[0].toInt(&okW), parts[1].toInt(&okH)) : QSize();
    // Pictures drawn as text are small; the bound keeps a mistyped size from asking for gigabytes.
    constexpr int Largest = 1024;
    if (!okW || !okH || size.isEmpty() || size.width() > Largest || size.height() > Largest)
        fail(QStringLiteral("\"%1\" is not a size like 16x16 (at most %2x%2)")
                 .arg(text)
                 .arg(Largest));
    return size;
}

void run(const QStringList &args) {
    const QString mode = args.value(0);
    if (mode == QLatin1String("tileset") && args.size() == 3) {
        save(tilesetImage(loadTiles(args[1])), args[2], "BMP");
    } else if (mode == QLatin1String("picture") && args.size() == 5) {
        const ColourLegend legend = load<ColourLegend>(args[1], parseColourLegend);
        const QSize size = parseSize(args[3]);
        const QImage picture =
            load<QImage>(args[2], [&](const QByteArray &text, SourceError &error) {
                return parsePixelArt(text, legend, size, error);
            });
        save(*toExactPalette(picture), args[4], "PNG");
    } else if (mode == QLatin1String("splash") && args.size() == 5) {
        const SplashScene scene = load<SplashScene>(args[3], parseSplashScene);
        save(splashImage(loadTiles(args[1]), loadFont(args[2]), scene), args[4], "PNG");
    } else if (mode == QLatin1String("sheet") && args.size() == 4) {
        save(referenceSheet(tilesetImage(loadTiles(args[1])), loadFont(args[2])), args[3], "PNG");
    } else {
        fail(QStringLiteral("usage:\n"
                            "  imagegen tileset <tiles.txt> <out.bmp>\n"
                            "  imagegen picture <legend.txt> <picture.txt> <W>x<H> <out.png>\n"
                            "  imagegen splash <tiles.txt> <font.txt> <scene.txt> <out.png>\n"
                            "  imagegen sheet <tiles.txt> <font.txt> <out.png>"));
    }
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    try {
        run(app.arguments().mid(1));
    } catch (const Failure &failure) {
        std::fprintf(stderr, "%s\n", qPrintable(failure.message));
        return 1;
    }
    return 0;
}
