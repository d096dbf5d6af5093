#include "ChangesPicture.h"

#include "LevelStrip.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int FontSize = 13;
constexpr int LineHeight = 18;
constexpr int Margin = 8;

QStringList caption(int level, const LevelChanges &changes) {
    QString title = QStringLiteral("Level %1").arg(level + 1);
    if (changes.status == LevelChanges::Status::Added)
        title += QStringLiteral(": added");
    else if (changes.status == LevelChanges::Status::Removed)
        title += QStringLiteral(": removed");
    else if (changes.notes.isEmpty() && changes.cells.isEmpty())
        title += QStringLiteral(": no change");
    QStringList lines{title};
    lines << changes.notes;
    if (!changes.cells.isEmpty())
        lines << QStringLiteral("%1 %2 changed")
                     .arg(changes.cells.size())
                     .arg(changes.cells.size() == 1 ? "cell" : "cells");
    return lines;
}

} // namespace

QImage changesPicture(const Levelset &shown, const QList<LevelChanges> &levels, int scale) {
    QList<int> indexes;
    QList<QStringList> captions;
    qsizetype textLines = 0;
    for (int level = 0; level < levels.size(); ++level) {
        indexes << level;
        captions << caption(level, levels[level]);
        textLines = std::max(textLines, captions.last().size());
    }

    const QImage strip = LevelStrip::paint(shown, indexes, false);
    const QSize size(strip.width(), strip.height() + 2 * Margin + int(textLines) * LineHeight);
    QImage picture(size * scale, QImage::Format_RGB32);
    picture.fill(LevelStrip::GapColour);
    QPainter painter(&picture);
    painter.scale(scale, scale);
    painter.drawImage(0, 0, strip);

    QFont font = painter.font();
    font.setPixelSize(FontSize);
    painter.setFont(font);
    painter.setPen(Qt::white);
    const QFontMetrics metrics(font);
    for (int place = 0; place < indexes.size(); ++place) {
        for (const QPoint &cell : levels[place].cells)
            LevelStrip::outlineCell(painter, LevelStrip::cellOrigin(place, cell.x(), cell.y()),
                                    ChangedCellColour);
        QPoint line = LevelStrip::levelOrigin(place) +
                      QPoint(Margin, LevelStrip::ViewSide + Margin + metrics.ascent());
        for (const QString &text : captions[place]) {
            painter.drawText(
                line, metrics.elidedText(text, Qt::ElideRight, LevelStrip::ViewSide - 2 * Margin));
            line.ry() += LineHeight;
        }
    }
    return picture;
}
