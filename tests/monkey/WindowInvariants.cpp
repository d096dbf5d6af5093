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
    for (const LevelRecord &level : levelset.levels)
        if (level.width() > LevelRecord::GridSize || level.height() > LevelRecord::GridSize)
            return QStringLiteral("a level is %1 x %2").arg(level.width()).arg(level.height());
    return {};
}

QString markerRules(const frmMain &w) {
    const LevelRecord &level = w.levelset.current();
    const auto at = [&](LevelRecord::HeaderByte x) {
        return QPoint(Cell * level.header[x], Cell * level.header[x + 1]);
    };
    const auto paletteCell = [](int id) { return QPoint(Cell * (id % 8), Cell * (id / 8)); };
    const struct {
        const Marker *marker;
        QPoint expected;
        const QAction *viewItem; // null for a cursor, always shown
    } markers[] = {
        {w.shpStart, at(LevelRecord::StartX), w.mnuViewStart},
        {w.shpFinish, at(LevelRecord::FinishX), w.mnuViewFinish},
        {w.shpPut, at(LevelRecord::PutX), w.mnuViewBlockPut},
        {w.shpTake, at(LevelRecord::TakeX), w.mnuViewBlockTake},
        {w.shpPutType, paletteCell(level.header[LevelRecord::PutType]), w.mnuViewBlockPut},
        {w.shpTakeType, paletteCell(level.header[LevelRecord::TakeType]), w.mnuViewBlockTake},
        {w.tileCursor, paletteCell(w.selectedTile), nullptr},
    };
    for (const auto &m : markers) {
        if (m.marker->pos() != m.expected)
            return QStringLiteral("%1 at %2, header says %3")
                .arg(m.marker->objectName(), where(m.marker->pos()), where(m.expected));
        if (m.marker->isHidden() == (!m.viewItem || m.viewItem->isChecked()))
            return QStringLiteral("%1 hidden: %2, against its View item")
                .arg(m.marker->objectName())
                .arg(m.marker->isHidden());
    }
    if (w.selectedTile >= 178)
        return QStringLiteral("selectedTile %1 is a grey cell").arg(w.selectedTile);
    const QPoint cursor = w.levelCursor->pos();
    if (cursor.x() % Cell || cursor.y() % Cell ||
        !QRect(0, 0, Cell * LevelRecord::GridSize, Cell * LevelRecord::GridSize).contains(cursor) ||
        w.levelCursor->isHidden())
        return QStringLiteral("levelCursor at %1, not shown on a cell of the view")
            .arg(where(cursor));
    return {};
}

QString modeRules(const frmMain &w) {
    int checked = 0;
    for (const QAction *item : w.mnuToolsMouseChoice)
        checked += item->isChecked();
    if (w.rightButtonMode < 0 || w.rightButtonMode > 3 || checked != 1 ||
        !w.mnuToolsMouseChoice[w.rightButtonMode]->isChecked())
        return QStringLiteral("%1 right-button modes checked, mode is %2")
            .arg(checked)
            .arg(w.rightButtonMode);
    return {};
}

// A number field whose text reads as a byte shows what the header holds; a text that is no byte
// leaves the header at the last byte stored.
QString numberFieldRule(const QLineEdit *field, int stored) {
    static const QRegularExpression plainNumber(QStringLiteral("^ *[+-]?[0-9]+ *$"));
    bool ok = false;
    const int value = field->text().trimmed().toInt(&ok);
    if (ok && plainNumber.match(field->text()).hasMatch() && value >= 0 && value <= 255 &&
        value != stored)
        return QStringLiteral("%1 shows \"%2\", header holds %3")
            .arg(field->objectName(), field->text())
            .arg(stored);
    return {};
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
    for (const QString &broken :
         {numberFieldRule(panel.txtObjectives, level.header[LevelRecord::Objectives]),
          numberFieldRule(panel.txtTime, level.header[LevelRecord::Time])})
        if (!broken.isEmpty())
            return broken;

    const QString shown = panel.txtPasscode->text();
    if (levelset.currentLevel == 0) {
        if (panel.txtPasscode->isEnabled() || shown != QStringLiteral("None"))
            return QStringLiteral("first level's passcode field shows \"%1\"").arg(shown);
        return {};
    }
    // Shown as loaded, or as typed and stored upper-cased.
    const auto padded = [](const QString &text) {
        return text.left(Levelset::PasscodeLength).leftJustified(Levelset::PasscodeLength, u' ');
    };
    const QString slot = levelset.passcode(levelset.currentLevel - 1);
    if (!panel.txtPasscode->isEnabled() ||
        (slot != padded(shown) && slot != padded(shown.toUpper())))
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
