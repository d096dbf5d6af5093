#include "MonkeyShared.h"
#include "levels/PropertiesPanel.h"
#include "shell/frmMain.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

// Typing into the panel's fields and clicking its options, and what they may change.

using namespace monkey;

namespace {
const QString InvalidCharacterText = QStringLiteral("Invalid character!");
const QString InvalidValueText = QStringLiteral("Invalid value! Must be between 0-255.");
} // namespace

QString MonkeyWalk::typing(QString &description) {
    frmMain &w = *window_;
    const Before before = snapshot();
    QLineEdit *fields[] = {w.panel->txtPasscode, w.panel->txtObjectives, w.panel->txtTime};
    const int which = pick(3);
    QLineEdit *field = fields[which];
    QStringList steps;
    if (pick(3) == 0) {
        if (pick(2)) {
            QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(field, Qt::Key_Delete);
            steps.append(QStringLiteral("select all, delete"));
        } else {
            QTest::keyClick(field, Qt::Key_End);
            const int erase = pick(5);
            for (int i = 0; i < erase; ++i)
                QTest::keyClick(field, Qt::Key_Backspace);
            steps.append(QStringLiteral("end, %1 backspaces").arg(erase));
        }
    }
    const QString characters =
        which == 0 ? QStringLiteral("abcXYZ09 -!") : QStringLiteral("0123456789012345 -+x");
    QString text;
    const int length = pick(5);
    for (int i = 0; i < length; ++i)
        text += characters[pick(static_cast<int>(characters.size()))];
    QTest::keyClicks(field, text);
    steps.append(QStringLiteral("type \"%1\"").arg(text));
    description = QStringLiteral("%1: %2, shows \"%3\"")
                      .arg(field->objectName(), steps.join(QStringLiteral(", ")), field->text());
    count(QStringLiteral("typing"));

    for (const auto &m : std::as_const(dialogs_.messages))
        if (which == 0 || (m.text != InvalidCharacterText && m.text != InvalidValueText))
            return QStringLiteral("typing into %1 showed \"%2\"").arg(field->objectName(), m.text);

    // Typing changes one header byte, or one passcode slot, of the current level only.
    Levelset expected = before.levelset;
    const int current = expected.currentLevel;
    if (which == 0 && current > 0)
        expected.passcodes[current - 1] = w.levelset.passcodes[current - 1];
    if (which > 0) {
        const auto byte = which == 1 ? LevelRecord::Objectives : LevelRecord::Time;
        expected.levels[current].header[byte] = w.levelset.current().header[byte];
    }
    if (!sameStoredContent(expected, w.levelset) || expected.levels != w.levelset.levels)
        return QStringLiteral("typing into %1 changed more than its own value")
            .arg(field->objectName());
    return {};
}

QString MonkeyWalk::optionClick(QString &description) {
    frmMain &w = *window_;
    const Before before = snapshot();
    QRadioButton *options[] = {w.panel->optNormal, w.panel->optHatchery, w.panel->optWeak,
                               w.panel->optStrong};
    QRadioButton *option = options[pick(4)];
    QTest::mouseClick(option, Qt::LeftButton);
    description = QStringLiteral("click %1").arg(option->objectName());
    count(QStringLiteral("option"));

    Levelset expected = before.levelset;
    LevelRecord &level = expected.levels[expected.currentLevel];
    level.header[LevelRecord::LevelType] = w.levelset.current().header[LevelRecord::LevelType];
    level.header[LevelRecord::AlienType] = w.levelset.current().header[LevelRecord::AlienType];
    if (!option->isChecked())
        return QStringLiteral("%1 is not selected after a click").arg(option->objectName());
    if (!sameStoredContent(expected, w.levelset) || expected.levels != w.levelset.levels ||
        !dialogs_.messages.isEmpty())
        return QStringLiteral("clicking %1 changed more than the level's types")
            .arg(option->objectName());
    return {};
}
