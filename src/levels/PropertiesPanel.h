#pragma once

#include <QObject>
#include <cstdint>

class Dialogs;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;
struct Levelset;

// The panel of level settings on the left of the main window. Its controls are children of the
// window's client area, placed in client coordinates; every change is written at once into the
// current level.
class PropertiesPanel : public QObject {
    Q_OBJECT
public:
    PropertiesPanel(Levelset &levelset, Dialogs &dialogs, QWidget *client);

    // Shows the level's types, passcode, objectives and time (the window places the markers).
    // The level must be the current one: the handlers this sets off write into the current level.
    void loadLevel(std::int16_t &level);

    QGroupBox *fraLevelType;
    QRadioButton *optNormal;
    QRadioButton *optHatchery;
    QGroupBox *fraAlienType;
    QRadioButton *optWeak;
    QRadioButton *optStrong;
    QLabel *lblPasscode;
    QLineEdit *txtPasscode;
    QLabel *lblObjectives;
    QLineEdit *txtObjectives;
    QLabel *lblTime;
    QLineEdit *txtTime;

    void optNormal_Click();
    void optHatchery_Click();
    void optWeak_Click();
    void optStrong_Click();
    void txtPasscode_Change();
    void txtObjectives_Change();
    void txtTime_Change();

private:
    void numberChanged(QLineEdit &field, int headerByte);
    void warn(const QString &text);

    Levelset &levelset_;
    Dialogs &dialogs_;
};
