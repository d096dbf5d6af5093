#include "WindowInvariants.h"

#include "levels/PropertiesPanel.h"
#include "shell/frmMain.h"
#include "view/Marker.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>

namespace {

constexpr int Cell = 16;
constexpr int PlaceableTiles = 178;

QString where(QPoint p) {
    return QStringLiteral("(%1, %2)").arg(p.x()).arg(p.y());
}

QString levelRules(const Levelset &levelset) {
    if (levelset.levelCount < 1 || levelset.levelCount > Levelset::MaxLevels)
        return QStringLiteral("levelCount %1").arg(levelset.levelCount);
    if (levelset.currentLevel < 0 || levelset.currentLevel >= levelset.levelCount)
        return QStringLiteral("currentLevel %1 of %2")
            .arg(levelset.currentLevel)
            .arg(levelset.levelCount);
    for (int i = 0; i < Levelset::MaxLevels; ++i) {
        const LevelRecord &level = levelset.levels[i];
        if (level.width() > LevelRecord::GridSize || level.height() > LevelRecord::GridSize)
            return QStringLiteral("level %1 is %2 x %3")
                .arg(i)
                .arg(level.width())
                .arg(level.height());
    }
    return {};
}

QString markerRules(const frmMain &w) {
    const LevelRecord &level = w.levelset.current();
    const auto at = [&](LevelRecord::HeaderByte x) {
        return QPoint(Cell * level.header[x], Cell * level.header[x + 1]);
    };
    const auto paletteCell = [](int id) { return QPoint(Cell * (id % 8), Cell * (id / 8)); };
    const struct {
        const char *name;
        const Marker *marker;
        QPoint expected;
        const QAction *viewItem;
    } markers[] = {
        {"shpStart", w.shpStart, at(LevelRecord::StartX), w.mnuViewStart},
        {"shpFinish", w.shpFinish, at(LevelRecord::FinishX), w.mnuViewFinish},
        {"shpPut", w.shpPut, at(LevelRecord::PutX), w.mnuViewBlockPut},
        {"shpTake", w.shpTake, at(LevelRecord::TakeX), w.mnuViewBlockTake},
        {"shpPutType", w.shpPutType, paletteCell(level.header[LevelRecord::PutType]),
         w.mnuViewBlockPut},
        {"shpTakeType", w.shpTakeType, paletteCell(level.header[LevelRecord::TakeType]),
         w.mnuViewBlockTake},
        {"tileCursor", w.tileCursor, paletteCell(w.selectedTile), nullptr},
    };
    for (const auto &m : markers) {
        if (m.marker->pos() != m.expected)
            return QStringLiteral("%1 at %2, header says %3")
                .arg(QLatin1StringView(m.name), where(m.marker->pos()), where(m.expected));
        const bool shown = m.viewItem ? m.viewItem->isChecked() : true;
        if (m.marker->isHidden() == shown)
            return QStringLiteral("%1 %2 while its View item is %3")
                .arg(QLatin1StringView(m.name),
                     m.marker->isHidden() ? QStringLiteral("hidden") : QStringLiteral("shown"),
                     shown ? QStringLiteral("checked") : QStringLiteral("unchecked"));
    }
    if (w.selectedTile >= PlaceableTiles)
        return QStringLiteral("selectedTile %1 is a grey cell").arg(w.selectedTile);
    const QPoint cursor = w.levelCursor->pos();
    if (cursor.x() % Cell || cursor.y() % Cell || cursor.x() < 0 || cursor.y() < 0 ||
        cursor.x() >= Cell * LevelRecord::GridSize || cursor.y() >= Cell * LevelRecord::GridSize)
        return QStringLiteral("levelCursor at %1, not on a cell of the view").arg(where(cursor));
    if (w.levelCursor->isHidden() || w.tileCursor->isHidden())
        return QStringLiteral("a cursor marker is hidden");
    return {};
}

QString modeRules(const frmMain &w) {
    if (w.rightButtonMode < 0 || w.rightButtonMode > 3)
        return QStringLiteral("rightButtonMode %1").arg(w.rightButtonMode);
    int checked = 0;
    for (const QAction *item : w.mnuToolsMouseChoice)
        checked += item->isChecked();
    if (checked != 1 || !w.mnuToolsMouseChoice[w.rightButtonMode]->isChecked())
        return QStringLiteral("%1 right-button modes checked, mode is %2")
            .arg(checked)
            .arg(w.rightButtonMode);
    return {};
}

// A number field whose text reads as a byte shows what the header holds: a text the user typed
// that is no byte leaves the header at the last byte stored.
QString numberFieldRule(const QLineEdit *field, int stored) {
    static const QRegularExpression plainNumber(QStringLiteral("^ *[+-]?[0-9]+ *$"));
    const QString text = field->text();
    if (!plainNumber.match(text).hasMatch())
        return {};
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (ok && value >= 0 && value <= 255 && value != stored)
        return QStringLiteral("%1 shows \"%2\", header holds %3")
            .arg(field->objectName(), text)
            .arg(stored);
    return {};
}

QString paddedPasscode(const QString &text) {
    return text.left(Levelset::PasscodeLength).leftJustified(Levelset::PasscodeLength, u' ');
}

QString panelRules(const frmMain &w) {
    const Levelset &levelset = w.levelset;
    const LevelRecord &level = levelset.current();
    const PropertiesPanel &panel = *w.panel;
    if (panel.optHatchery->isChecked() != (level.header[LevelRecord::LevelType] != 0) ||
        panel.optNormal->isChecked() == panel.optHatchery->isChecked())
        return QStringLiteral("Level Type options disagree with level type %1")
            .arg(level.header[LevelRecord::LevelType]);
    if (panel.optWeak->isChecked() != (level.header[LevelRecord::AlienType] == 3) ||
        panel.optWeak->isChecked() == panel.optStrong->isChecked())
        return QStringLiteral("Alien Type options disagree with alien type %1")
            .arg(level.header[LevelRecord::AlienType]);
    if (QString broken =
            numberFieldRule(panel.txtObjectives, level.header[LevelRecord::Objectives]);
        !broken.isEmpty())
        return broken;
    if (QString broken = numberFieldRule(panel.txtTime, level.header[LevelRecord::Time]);
        !broken.isEmpty())
        return broken;

    const QString shown = panel.txtPasscode->text();
    if (levelset.currentLevel == 0) {
        if (panel.txtPasscode->isEnabled() || shown != QStringLiteral("None"))
            return QStringLiteral("first level's passcode field shows \"%1\"").arg(shown);
        return {};
    }
    // Shown as loaded, or as typed and stored upper-cased.
    const QString slot = levelset.passcode(levelset.currentLevel - 1);
    if (!panel.txtPasscode->isEnabled() ||
        (slot != paddedPasscode(shown) && slot != paddedPasscode(shown.toUpper())))
        return QStringLiteral("passcode field shows \"%1\", slot holds \"%2\"").arg(shown, slot);
    return {};
}

} // namespace

QString brokenInvariant(const frmMain &window, const QString &expectedPath) {
    const Levelset &levelset = window.levelset;
    if (QString broken = levelRules(levelset); !broken.isEmpty())
        return broken; // the rest indexes the current level
    const QString title = u'[' + expectedPath + QStringLiteral("] - Kestrix: Levelset Editor");
    if (levelset.levelsetPath != expectedPath || window.windowTitle() != title)
        return QStringLiteral("path \"%1\" and title \"%2\", expected path \"%3\"")
            .arg(levelset.levelsetPath, window.windowTitle(), expectedPath);
    const QString label =
        QStringLiteral("Level: %1 / %2").arg(levelset.currentLevel + 1).arg(levelset.levelCount);
    if (window.lblLevelNum->text() != label)
        return QStringLiteral("label \"%1\", expected \"%2\"")
            .arg(window.lblLevelNum->text(), label);
    for (const QString &broken : {markerRules(window), modeRules(window), panelRules(window)})
        if (!broken.isEmpty())
            return broken;
    return {};
}
