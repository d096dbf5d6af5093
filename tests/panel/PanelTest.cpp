#include "levels/PropertiesPanel.h"
#include "levelset/Levelset.h"
#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

const QString InvalidCharacter = QStringLiteral("Invalid character!");
const QString InvalidValue = QStringLiteral("Invalid value! Must be between 0-255.");

} // namespace

class PanelTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void controlsStandWhereTheWindowNeedsThem_data();
    void controlsStandWhereTheWindowNeedsThem();
    void freshLevelShowsDefaultsAndWritesNothing();

    void typingIntoNumberFields_data();
    void typingIntoNumberFields();
    void messagesAreExclamationsWithOk();
    void clearingAFieldStoresZeroQuietly();
    void numberFieldsWriteTheCurrentLevel();

    void typedCharactersAreLimited_data();
    void typedCharactersAreLimited();
    void pastedAndComposedTextIsCut();
    void loadedPasscodeKeepsAllSixCharacters();

    void passcodeIsStoredUpperCasedAndShownAsTyped();
    void firstLevelHasNoPasscode();
    void showingALevelLeavesEveryPasscodeSlot();

    void optionsShowAndStoreTypes_data();
    void optionsShowAndStoreTypes();
    void clickingOptionsStoresTypes();

private:
    void show(int level);
    void retype(QLineEdit *field, const QString &text);

    Levelset levelset_;
    ScriptedDialogs dialogs_;
    std::unique_ptr<QWidget> client_;
    PropertiesPanel *panel_ = nullptr;
};

void PanelTest::init() {
    levelset_.reset();
    dialogs_ = ScriptedDialogs();
    client_ = std::make_unique<QWidget>();
    client_->resize(803, 572);
    panel_ = new PropertiesPanel(levelset_, dialogs_, client_.get());
    client_->show();
    show(0);
}

void PanelTest::cleanup() {
    client_.reset();
}

// What the window does when a level becomes current.
void PanelTest::show(int level) {
    levelset_.currentLevel = static_cast<std::int16_t>(level);
    panel_->loadLevel(levelset_.currentLevel);
}

// Selects the field's text and types over it, one key at a time.
void PanelTest::retype(QLineEdit *field, const QString &text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

void PanelTest::controlsStandWhereTheWindowNeedsThem_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QString>("caption");
    QTest::newRow("level type frame") << "fraLevelType" << QRect(8, 104, 121, 81) << "Level Type";
    QTest::newRow("normal level") << "optNormal" << QRect(8, 24, 105, 17) << "Normal";
    QTest::newRow("hatchery") << "optHatchery" << QRect(8, 48, 105, 17) << "Hatchery";
    QTest::newRow("alien type frame") << "fraAlienType" << QRect(8, 232, 121, 81) << "Alien Type";
    QTest::newRow("normal aliens") << "optWeak" << QRect(8, 24, 105, 17) << "Normal";
    QTest::newRow("strong aliens") << "optStrong" << QRect(8, 48, 105, 17) << "Strong";
    QTest::newRow("passcode label") << "lblPasscode" << QRect(8, 364, 57, 17) << "Passcode:";
    QTest::newRow("passcode") << "txtPasscode" << QRect(64, 360, 65, 19) << "";
    QTest::newRow("objectives label") << "lblObjectives" << QRect(8, 388, 57, 17) << "Objectives:";
    QTest::newRow("objectives") << "txtObjectives" << QRect(64, 384, 65, 19) << "";
    QTest::newRow("time label") << "lblTime" << QRect(8, 412, 57, 17) << "Time:";
    QTest::newRow("time") << "txtTime" << QRect(64, 408, 65, 19) << "";
}

void PanelTest::controlsStandWhereTheWindowNeedsThem() {
    QFETCH(QString, name);
    QFETCH(QRect, geometry);
    QFETCH(QString, caption);
    auto *control = client_->findChild<QWidget *>(name);
    QVERIFY(control);
    QCOMPARE(control->geometry(), geometry);
    const bool inFrame = name.startsWith(QLatin1String("opt"));
    QCOMPARE(control->parentWidget()->objectName().startsWith(QLatin1String("fra")), inFrame);
    if (auto *frame = qobject_cast<QGroupBox *>(control))
        QCOMPARE(frame->title(), caption);
    else if (auto *option = qobject_cast<QRadioButton *>(control))
        QCOMPARE(option->text(), caption);
    else if (auto *label = qobject_cast<QLabel *>(control)) {
        QCOMPARE(label->text(), caption);
        QVERIFY(label->fontMetrics().horizontalAdvance(caption) <= geometry.width());
    }
}

void PanelTest::freshLevelShowsDefaultsAndWritesNothing() {
    QVERIFY(!panel_->txtPasscode->isEnabled());
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("None"));
    QVERIFY(panel_->optNormal->isChecked());
    QVERIFY(!panel_->optHatchery->isChecked());
    QVERIFY(panel_->optWeak->isChecked());
    QVERIFY(!panel_->optStrong->isChecked());
    QCOMPARE(panel_->txtObjectives->text(), QStringLiteral("0"));
    QCOMPARE(panel_->txtTime->text(), QStringLiteral("99"));

    Levelset fresh;
    QVERIFY(levelset_.levels[0].header == fresh.levels[0].header);
    QVERIFY(levelset_.passcodes == fresh.passcodes);
    QVERIFY(dialogs_.messages.isEmpty());
}

void PanelTest::typingIntoNumberFields_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("255 is stored") << "255"
                                   << "255" << 255 << QStringList{};
    QTest::newRow("256 keeps the 25 stored on the way") << "256"
                                                        << "256" << 25 << QStringList{InvalidValue};
    QTest::newRow("lone minus") << "-"
                                << "-" << 99 << QStringList{InvalidCharacter};
    QTest::newRow("minus then one, one message each")
        << "-1"
        << "-1" << 99 << QStringList{InvalidCharacter, InvalidValue};
    QTest::newRow("x") << "x"
                       << "x" << 99 << QStringList{InvalidCharacter};
    QTest::newRow("digit then letter keeps the digit")
        << "7q"
        << "7q" << 7 << QStringList{InvalidCharacter};
    QTest::newRow("a blank alone is no number, then 5 is")
        << " 5"
        << " 5" << 5 << QStringList{InvalidCharacter};
}

void PanelTest::typingIntoNumberFields() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(int, stored);
    QFETCH(QStringList, messages);

    retype(panel_->txtTime, typed);
    QCOMPARE(panel_->txtTime->text(), shown);
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::Time]), stored);
    QCOMPARE(dialogs_.messageTexts(), messages);

    // The same routine serves the objectives, which start at 0.
    dialogs_.messages.clear();
    retype(panel_->txtObjectives, typed);
    QCOMPARE(panel_->txtObjectives->text(), shown);
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::Objectives]), stored == 99 ? 0 : stored);
    QCOMPARE(dialogs_.messageTexts(), messages);
}

void PanelTest::messagesAreExclamationsWithOk() {
    retype(panel_->txtObjectives, QStringLiteral("x"));
    retype(panel_->txtObjectives, QStringLiteral("300"));
    QCOMPARE(dialogs_.messages.size(), 2);
    for (const ScriptedDialogs::Message &message : dialogs_.messages) {
        QCOMPARE(message.title, ApplicationTitle);
        QCOMPARE(message.icon, QMessageBox::Warning);
        QCOMPARE(message.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }
}

void PanelTest::clearingAFieldStoresZeroQuietly() {
    levelset_.levels[0].header[LevelRecord::Objectives] = 12;
    show(0);
    QCOMPARE(panel_->txtObjectives->text(), QStringLiteral("12"));

    panel_->txtObjectives->setFocus();
    panel_->txtObjectives->selectAll();
    QTest::keyClick(panel_->txtObjectives, Qt::Key_Backspace);

    QCOMPARE(panel_->txtObjectives->text(), QStringLiteral("0"));
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::Objectives]), 0);
    QVERIFY(dialogs_.messages.isEmpty());
}

void PanelTest::numberFieldsWriteTheCurrentLevel() {
    levelset_.levelCount = 3;
    levelset_.levels[2].header[LevelRecord::Time] = 150;
    show(2);
    QCOMPARE(panel_->txtTime->text(), QStringLiteral("150"));

    retype(panel_->txtTime, QStringLiteral("42"));
    QCOMPARE(int(levelset_.levels[2].header[LevelRecord::Time]), 42);
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::Time]), 99);
    QCOMPARE(int(levelset_.levels[1].header[LevelRecord::Time]), 99);
}

void PanelTest::typedCharactersAreLimited_data() {
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("passcode takes five") << "txtPasscode"
                                         << "abcdefg"
                                         << "abcde";
    QTest::newRow("objectives take three") << "txtObjectives"
                                           << "1234"
                                           << "123";
    QTest::newRow("time takes three") << "txtTime"
                                      << "0099"
                                      << "009";
}

void PanelTest::typedCharactersAreLimited() {
    QFETCH(QString, field);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    levelset_.levelCount = 2;
    show(1);
    auto *edit = client_->findChild<QLineEdit *>(field);
    QVERIFY(edit);
    retype(edit, typed);
    QCOMPARE(edit->text(), shown);

    // A full field still takes editing keys, and a selection makes room again.
    QTest::keyClick(edit, Qt::Key_Backspace);
    QCOMPARE(edit->text(), shown.chopped(1));
    QTest::keyClick(edit, Qt::Key_Home);
    QTest::keyClick(edit, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClicks(edit, QStringLiteral("2"));
    QCOMPARE(edit->text(), QStringLiteral("2") + shown.chopped(1).mid(1));
}

void PanelTest::pastedAndComposedTextIsCut() {
    QApplication::clipboard()->setText(QStringLiteral("12345"));
    retype(panel_->txtTime, QString());
    QTest::keySequence(panel_->txtTime, QKeySequence::Paste);
    QCOMPARE(panel_->txtTime->text(), QStringLiteral("123"));
    QCOMPARE(int(levelset_.current().header[LevelRecord::Time]), 123);

    panel_->txtObjectives->selectAll();
    QInputMethodEvent compose;
    compose.setCommitString(QStringLiteral("2109"));
    QApplication::sendEvent(panel_->txtObjectives, &compose);
    QCOMPARE(panel_->txtObjectives->text(), QStringLiteral("210"));
    QCOMPARE(int(levelset_.current().header[LevelRecord::Objectives]), 210);
    QVERIFY(dialogs_.messages.isEmpty());

    // Paste from the field's own context menu, chosen while the menu is open.
    levelset_.levelCount = 2;
    show(1);
    panel_->txtPasscode->selectAll();
    QApplication::clipboard()->setText(QStringLiteral("abcdefgh"));
    bool pasted = false;
    QTimer::singleShot(0, this, [&pasted] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        for (QAction *action : menu->actions())
            if (action->text().startsWith(QLatin1String("&Paste"))) {
                action->trigger();
                pasted = true;
            }
        menu->close();
    });
    QContextMenuEvent menuRequest(QContextMenuEvent::Mouse, QPoint(5, 5),
                                  panel_->txtPasscode->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(panel_->txtPasscode, &menuRequest);
    QVERIFY(pasted);
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("abcde"));
    QCOMPARE(levelset_.passcode(0), QStringLiteral("ABCDE "));
}

void PanelTest::loadedPasscodeKeepsAllSixCharacters() {
    levelset_.levelCount = 2;
    levelset_.storePasscode(0, QStringLiteral("ABCDEF"));
    show(1);
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("ABCDEF"));

    // Typing at the end of six characters is refused, as are five already typed.
    panel_->txtPasscode->setFocus();
    panel_->txtPasscode->end(false);
    QTest::keyClicks(panel_->txtPasscode, QStringLiteral("g"));
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("ABCDEF"));
    QCOMPARE(levelset_.passcode(0), QStringLiteral("ABCDEF"));

    // Deleting one still leaves more than five, so typing stays refused.
    QTest::keyClick(panel_->txtPasscode, Qt::Key_Backspace);
    QTest::keyClicks(panel_->txtPasscode, QStringLiteral("g"));
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("ABCDE"));
    QCOMPARE(levelset_.passcode(0), QStringLiteral("ABCDE "));
}

void PanelTest::passcodeIsStoredUpperCasedAndShownAsTyped() {
    levelset_.levelCount = 3;
    show(2);
    QVERIFY(panel_->txtPasscode->isEnabled());
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("      "));

    retype(panel_->txtPasscode, QStringLiteral("abc"));
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("abc"));
    QCOMPARE(levelset_.passcode(1), QStringLiteral("ABC   "));
    QCOMPARE(levelset_.passcode(0), QStringLiteral("      "));
    QVERIFY(dialogs_.messages.isEmpty());
}

void PanelTest::firstLevelHasNoPasscode() {
    levelset_.levelCount = 2;
    levelset_.storePasscode(0, QStringLiteral("SECOND"));
    show(1);
    show(0);
    QVERIFY(!panel_->txtPasscode->isEnabled());
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("None"));
    // "None" is never stored anywhere.
    QCOMPARE(levelset_.passcode(0), QStringLiteral("SECOND"));
    for (int slot = 1; slot < Levelset::PasscodeSlots; ++slot)
        QCOMPARE(levelset_.passcode(slot), QStringLiteral("      "));
}

void PanelTest::showingALevelLeavesEveryPasscodeSlot() {
    levelset_.levelCount = 8;
    // As a file may hold them: lower case, and characters beyond plain ASCII.
    const char *codes[] = {"abc   ",
                           "Mixed1",
                           "      ",
                           "\xe9t\xe9   ",
                           "zz zz ",
                           "UPPER ",
                           "a\x01"
                           "b   "};
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        std::copy_n(codes[slot], Levelset::PasscodeLength, levelset_.passcodes[slot].begin());
    const auto before = levelset_.passcodes;

    for (int level : {1, 0, 2, 7, 3, 4, 5, 6, 1, 0}) {
        show(level);
        QVERIFY2(levelset_.passcodes == before, qPrintable(QStringLiteral("level %1").arg(level)));
    }
    show(1);
    QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("abc   "));

    // The first edit stores the whole field upper-cased.
    panel_->txtPasscode->setFocus();
    panel_->txtPasscode->end(false);
    QTest::keyClick(panel_->txtPasscode, Qt::Key_Backspace);
    QCOMPARE(levelset_.passcode(0), QStringLiteral("ABC   "));
}

void PanelTest::optionsShowAndStoreTypes_data() {
    QTest::addColumn<int>("levelType");
    QTest::addColumn<int>("alienType");
    QTest::addColumn<bool>("hatchery");
    QTest::addColumn<bool>("strong");
    QTest::addColumn<int>("storedLevelType");
    QTest::addColumn<int>("storedAlienType");
    QTest::newRow("normal, normal") << 0 << 3 << false << false << 0 << 3;
    QTest::newRow("hatchery, strong") << 1 << 4 << true << true << 1 << 4;
    QTest::newRow("level type 2 becomes hatchery") << 2 << 3 << true << false << 1 << 3;
    QTest::newRow("alien type 0 becomes strong") << 0 << 0 << false << true << 0 << 4;
    QTest::newRow("both foreign") << 255 << 9 << true << true << 1 << 4;
}

void PanelTest::optionsShowAndStoreTypes() {
    QFETCH(int, levelType);
    QFETCH(int, alienType);
    QFETCH(bool, hatchery);
    QFETCH(bool, strong);
    QFETCH(int, storedLevelType);
    QFETCH(int, storedAlienType);
    levelset_.levelCount = 2;
    LevelRecord &level = levelset_.levels[1];
    level.header[LevelRecord::LevelType] = static_cast<std::uint8_t>(levelType);
    level.header[LevelRecord::AlienType] = static_cast<std::uint8_t>(alienType);

    show(1);
    QCOMPARE(panel_->optHatchery->isChecked(), hatchery);
    QCOMPARE(panel_->optNormal->isChecked(), !hatchery);
    QCOMPARE(panel_->optStrong->isChecked(), strong);
    QCOMPARE(panel_->optWeak->isChecked(), !strong);
    QCOMPARE(int(level.header[LevelRecord::LevelType]), storedLevelType);
    QCOMPARE(int(level.header[LevelRecord::AlienType]), storedAlienType);
    // Only the shown level is written.
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::LevelType]), 0);
    QCOMPARE(int(levelset_.levels[0].header[LevelRecord::AlienType]), 3);

    // Back on the first level the options follow it again, and the byte stays as it was.
    show(0);
    QVERIFY(panel_->optNormal->isChecked());
    QVERIFY(panel_->optWeak->isChecked());
    QCOMPARE(int(level.header[LevelRecord::LevelType]), storedLevelType);
}

void PanelTest::clickingOptionsStoresTypes() {
    QTest::mouseClick(panel_->optHatchery, Qt::LeftButton);
    QCOMPARE(int(levelset_.current().header[LevelRecord::LevelType]), 1);
    QTest::mouseClick(panel_->optStrong, Qt::LeftButton);
    QCOMPARE(int(levelset_.current().header[LevelRecord::AlienType]), 4);
    QTest::mouseClick(panel_->optNormal, Qt::LeftButton);
    QCOMPARE(int(levelset_.current().header[LevelRecord::LevelType]), 0);
    QTest::mouseClick(panel_->optWeak, Qt::LeftButton);
    QCOMPARE(int(levelset_.current().header[LevelRecord::AlienType]), 3);
    QVERIFY(!panel_->optStrong->isChecked());
}

QTEST_MAIN(PanelTest)
#include "PanelTest.moc"
