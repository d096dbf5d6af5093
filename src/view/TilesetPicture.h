#pragma once

#include "view/Tileset.h"

#include <QWidget>

// picTileset: the hidden picture that holds the tileset image, the drawing source of the level
// view and of the palette. Its image shares the pixels of the one loaded tileset.
class TilesetPicture : public QWidget {
public:
    explicit TilesetPicture(QWidget *parent) : QWidget(parent), image_(Tileset::image()) { hide(); }

    const QImage &image() const { return image_; }

private:
    QImage image_;
};
