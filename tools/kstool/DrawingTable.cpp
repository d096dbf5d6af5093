// The entry of the drawing module, kstool-draw.so (DrawingModule.h).
#include "ChangesPicture.h"
#include "Commands.h"
#include "DrawingModule.h"
#include "PngOutput.h"
#include "TextPainting.h"

#include "view/Tileset.h"

QString writeTilesetPng(const QString &path) {
    if (Tileset::image().isNull())
        return QStringLiteral("the tileset image is missing from this build");
    return writePng(Tileset::image(), path);
}

QString writeChangesPicture(const Levelset &shown, const QList<LevelChanges> &levels, int scale,
                            const QString &path) {
    if (Tileset::image().isNull())
        return QStringLiteral("the tileset image is missing from this build");
    const auto application = startTextPainting();
    return writePng(changesPicture(shown, levels, scale), path);
}

extern "C" Q_DECL_EXPORT const DrawingModule *kstoolDrawingModule() {
    static const DrawingModule table{runRender, runSheet, runThumbnail, writeTilesetPng,
                                     writeChangesPicture};
    return &table;
}
