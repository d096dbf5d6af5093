#include "levels/PropertiesPanel.h"

#include "dialogs/Dialogs.h"
#include "levels/ByteField.h"
#include "levels/TypedLengthLimit.h"
#include "levelset/Levelset.h"

#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace {

constexpr std::uint8_t NormalLevel = 0;
constexpr std::uint8_t HatcheryLevel = 1;
constexpr std::uint8_t WeakAliens = 3;
constexpr std::uint8_t StrongAliens = 4;

constexpr int PasscodeTypedLimit = 5;
constexpr int NumberTypedLimit = 3;

template <typename Control>
Control *place(Control *control, const char *name, const QRect &geometry) {
    control->setObjectName(QLatin1String(name));
    control->setGeometry(geometry);
    return control;
}

// The platform's default font may run wider than the one the panel was laid out for; a label
// keeps its place and size and takes a smaller font rather than losing its last letters.
void fitText(QLabel *label) {
    constexpr qreal SmallestPoints = 6;
    QFont font = label->font();
    while (font.pointSizeF() > SmallestPoints &&
           QFontMetrics(font).horizontalAdvance(label->text()) > label->width())
        font.setPointSizeF(font.pointSizeF() - 0.5);
    label->setFont(font);
}

// Runs the handler whenever the option becomes selected, by a click or from code.
void onSelected(QRadioButton *option, PropertiesPanel *panel, void (PropertiesPanel::*handler)()) {
    QObject::connect(option, &QRadioButton::toggled, panel, [panel, handler](bool selected) {
        if (selected)
            (panel->*handler)();
    });
}

} // namespace

PropertiesPanel::PropertiesPanel(Levelset &levelset, Dialogs &dialogs, QWidget *client)
    : QObject(client), levelset_(levelset), dialogs_(dialogs) {
    fraLevelType = place(new QGroupBox(QStringLiteral("Level Type"), client), "fraLevelType",
                         {8, 104, 121, 81});
    optNormal = place(new QRadioButton(QStringLiteral("Normal"), fraLevelType), "optNormal",
                      {8, 24, 105, 17});
    optHatchery = place(new QRadioButton(QStringLiteral("Hatchery"), fraLevelType), "optHatchery",
                        {8, 48, 105, 17});
    fraAlienType = place(new QGroupBox(QStringLiteral("Alien Type"), client), "fraAlienType",
                         {8, 232, 121, 81});
    optWeak = place(new QRadioButton(QStringLiteral("Normal"), fraAlienType), "optWeak",
                    {8, 24, 105, 17});
    optStrong = place(new QRadioButton(QStringLiteral("Strong"), fraAlienType), "optStrong",
                      {8, 48, 105, 17});
    lblPasscode =
        place(new QLabel(QStringLiteral("Passcode:"), client), "lblPasscode", {8, 364, 57, 17});
    txtPasscode = place(new QLineEdit(client), "txtPasscode", {64, 360, 65, 19});
    lblObjectives =
        place(new QLabel(QStringLiteral("Objectives:"), client), "lblObjectives", {8, 388, 57, 17});
    txtObjectives = place(new QLineEdit(client), "txtObjectives", {64, 384, 65, 19});
    lblTime = place(new QLabel(QStringLiteral("Time:"), client), "lblTime", {8, 412, 57, 17});
    txtTime = place(new QLineEdit(client), "txtTime", {64, 408, 65, 19});

    for (QLabel *label : {lblPasscode, lblObjectives, lblTime})
        fitText(label);

    new TypedLengthLimit(txtPasscode, PasscodeTypedLimit);
    new TypedLengthLimit(txtObjectives, NumberTypedLimit);
    new TypedLengthLimit(txtTime, NumberTypedLimit);

    // Selected before the handlers are connected: creating the window writes nothing.
    optNormal->setChecked(true);
    optWeak->setChecked(true);

    onSelected(optNormal, this, &PropertiesPanel::optNormal_Click);
    onSelected(optHatchery, this, &PropertiesPanel::optHatchery_Click);
    onSelected(optWeak, this, &PropertiesPanel::optWeak_Click);
    onSelected(optStrong, this, &PropertiesPanel::optStrong_Click);
    connect(txtPasscode, &QLineEdit::textChanged, this, &PropertiesPanel::txtPasscode_Change);
    connect(txtObjectives, &QLineEdit::textChanged, this, &PropertiesPanel::txtObjectives_Change);
    connect(txtTime, &QLineEdit::textChanged, this, &PropertiesPanel::txtTime_Change);
}

// Every control set here runs its handler nested, writing back into the current level; for the
// values the editor writes itself that changes nothing.
void PropertiesPanel::loadLevel(std::int16_t &level) {
    if (level < 0 || level >= Levelset::MaxLevels)
        return;
    const LevelRecord &record = levelset_.levels[level];

    if (record.header[LevelRecord::LevelType] != NormalLevel)
        optHatchery->setChecked(true);
    else
        optNormal->setChecked(true);

    if (record.header[LevelRecord::AlienType] == WeakAliens)
        optWeak->setChecked(true);
    else
        optStrong->setChecked(true);

    if (level == 0) {
        txtPasscode->setEnabled(false);
        txtPasscode->setText(QStringLiteral("None"));
    } else {
        txtPasscode->setEnabled(true);
        // The change handler stores the text upper-cased; putting the copy back keeps a
        // passcode read in lower case as it was.
        const Levelset::Passcode copy = levelset_.passcodes[level - 1];
        txtPasscode->setText(QString::fromLatin1(copy.data(), copy.size()));
        levelset_.passcodes[level - 1] = copy;
    }

    txtObjectives->setText(QString::number(record.header[LevelRecord::Objectives]));
    txtTime->setText(QString::number(record.header[LevelRecord::Time]));
}

void PropertiesPanel::optNormal_Click() {
    levelset_.current().header[LevelRecord::LevelType] = NormalLevel;
}

void PropertiesPanel::optHatchery_Click() {
    levelset_.current().header[LevelRecord::LevelType] = HatcheryLevel;
}

void PropertiesPanel::optWeak_Click() {
    levelset_.current().header[LevelRecord::AlienType] = WeakAliens;
}

void PropertiesPanel::optStrong_Click() {
    levelset_.current().header[LevelRecord::AlienType] = StrongAliens;
}

void PropertiesPanel::txtPasscode_Change() {
    if (levelset_.currentLevel == 0)
        return;
    levelset_.storePasscode(levelset_.currentLevel - 1, txtPasscode->text().toUpper());
}

void PropertiesPanel::txtObjectives_Change() {
    numberChanged(*txtObjectives, LevelRecord::Objectives);
}

void PropertiesPanel::txtTime_Change() {
    numberChanged(*txtTime, LevelRecord::Time);
}

void PropertiesPanel::numberChanged(QLineEdit &field, int headerByte) {
    if (field.text().isEmpty()) {
        field.setText(QStringLiteral("0")); // runs this handler nested, which stores 0
        // Selected, the 0 gives way to the next digit typed: clearing and typing 120 gives 120.
        field.selectAll();
    }

    const ByteField entry = ByteField::read(field.text());
    switch (entry.outcome) {
    case ByteField::Value:
        levelset_.current().header[headerByte] = entry.value;
        break;
    case ByteField::InvalidValue:
        warn(QStringLiteral("Invalid value! Must be between 0-255."));
        break;
    case ByteField::InvalidCharacter:
        warn(QStringLiteral("Invalid character!"));
        break;
    }
}

void PropertiesPanel::warn(const QString &text) {
    dialogs_.message(text, ApplicationTitle, QMessageBox::Warning, QMessageBox::Ok);
}
