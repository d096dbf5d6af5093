#pragma once

#include <QGuiApplication>
#include <memory>

// Text needs a QGuiApplication for its fonts. kstool never shows a window, so it takes the
// offscreen platform unless QT_QPA_PLATFORM names another, and needs no display. Keep the
// result alive while painting.
std::unique_ptr<QGuiApplication> startTextPainting();
