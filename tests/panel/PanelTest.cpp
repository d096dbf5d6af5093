#include "levels/PropertiesPanel.h"
#include "levelset/Levelset.h"
#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

const QString InvalidCharacter = QStringLiteral("Invalid character!");
const QString InvalidValue = QStringLiteral("Invalid value! Must be between 0-255.");
const QString NoPasscode = QStringLiteral("      ");

// Selects the field's text and types over it, one key at a time.
void retype(QLineEdit *field, const QString &text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

} // namespace

class PanelTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        levelset_.reset();
        levelset_.levelCount = 3;
        dialogs_ = ScriptedDialogs();
        client_ = std::make_unique<QWidget>();
        client_->resize(803, 572);
        panel_ = new PropertiesPanel(levelset_, dialogs_, client_.get());
        client_->show();
        show(0);
    }

    void captionsFitTheirControls_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        const auto row = [](const char *name, const QString &caption) {
            QTest::newRow(name) << QString::fromLatin1(name) << caption;
        };
        row("fraLevelType", "Level Type");
        row("optNormal", "Normal");
        row("optHatchery", "Hatchery");
        row("fraAlienType", "Alien Type");
        row("optWeak", "Normal");
        row("optStrong", "Strong");
        row("lblPasscode", "Passcode:");
        row("lblObjectives", "Objectives:");
        row("lblTime", "Time:");
    }

    void captionsFitTheirControls() {
        QFETCH(QString, name);
        QFETCH(QString, caption);
        auto *control = client_->findChild<QWidget *>(name);
        QVERIFY(control);
        QCOMPARE(control->property(name.startsWith("fra") ? "title" : "text").toString(), caption);
        // A wider default font must not cost a label its last letters.
        QVERIFY(control->fontMetrics().horizontalAdvance(caption) <= control->width());
    }

    void showingLevelsWritesNothing() {
        QVERIFY(!panel_->txtPasscode->isEnabled());
        QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("None"));
        QVERIFY(panel_->optNormal->isChecked() && !panel_->optHatchery->isChecked());
        QVERIFY(panel_->optWeak->isChecked() && !panel_->optStrong->isChecked());
        QCOMPARE(panel_->txtObjectives->text(), QStringLiteral("0"));
        QCOMPARE(panel_->txtTime->text(), QStringLiteral("99"));

        // Passcodes as a file may hold them: lower case, blank, beyond plain ASCII, six characters.
        levelset_.levelCount = 8;
        const QByteArray codes = "abc   Mixed1      \xe9t\xe9   zz zz UPPER a\x01"
                                 "b   ";
        for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
            std::copy_n(codes.constData() + 6 * slot, 6, levelset_.passcodes[slot].begin());
        const Levelset before = levelset_;
        for (int level : {1, 0, 2, 7, 3, 4, 5, 6, 1, 0}) {
            show(level);
            QVERIFY2(levelset_.passcodes == before.passcodes && levelset_.levels == before.levels,
                     qPrintable(QStringLiteral("level %1").arg(level)));
        }
        QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("None"));
        show(1);
        QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("abc   "));
        show(3);
        QCOMPARE(panel_->txtPasscode->text(), NoPasscode);

        // Six loaded characters take no typing, but the first edit stores the field upper-cased.
        show(2);
        panel_->txtPasscode->setFocus();
        panel_->txtPasscode->end(false);
        QTest::keyClicks(panel_->txtPasscode, QStringLiteral("g"));
        QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("Mixed1"));
        QCOMPARE(levelset_.passcode(1), QStringLiteral("Mixed1"));
        QTest::keyClick(panel_->txtPasscode, Qt::Key_Backspace);
        QTest::keyClicks(panel_->txtPasscode, QStringLiteral("g"));
        QCOMPARE(panel_->txtPasscode->text(), QStringLiteral("Mixed"));
        QCOMPARE(levelset_.passcode(1), QStringLiteral("MIXED "));
        QVERIFY(dialogs_.messages.isEmpty());
    }

    void numberFieldsReadEveryKeystroke_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("stored"); // over 99
        QTest::addColumn<QStringList>("messages");
        const auto row = [](const char *name, const QString &typed, const QString &shown,
                            int stored, const QStringList &messages) {
            QTest::newRow(name) << typed << shown << stored << messages;
        };
        row("255 is stored", "255", "255", 255, {});
        row("256 keeps the 25 stored on the way", "256", "256", 25, {InvalidValue});
        row("lone minus", "-", "-", 99, {InvalidCharacter});
        row("minus then one, one message each", "-1", "-1", 99, {InvalidCharacter, InvalidValue});
        row("x", "x", "x", 99, {InvalidCharacter});
        row("digit then letter keeps the digit", "7q", "7q", 7, {InvalidCharacter});
        row("a blank alone is no number, then 5 is", " 5", " 5", 5, {InvalidCharacter});
        row("clearing shows and stores 0 quietly", "\b", "0", 0, {});
        row("the 0 of a cleared field gives way to digits", "\b120", "120", 120, {});
    }

    void numberFieldsReadEveryKeystroke() {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(int, stored);
        QFETCH(QStringList, messages);
        LevelRecord &level = levelset_.levels[2];
        for (auto [field, byte] : {std::pair{panel_->txtTime, LevelRecord::Time},
                                   std::pair{panel_->txtObjectives, LevelRecord::Objectives}}) {
            level.header[byte] = 99;
            show(2);
            dialogs_.messages.clear();
            retype(field, typed);
            QCOMPARE(field->text(), shown);
            QCOMPARE(int(level.header[byte]), stored);
            QCOMPARE(dialogs_.messageTexts(), messages);
            for (const ScriptedDialogs::Message &message : dialogs_.messages) {
                QCOMPARE(message.title, ApplicationTitle);
                QCOMPARE(message.icon, QMessageBox::Warning);
                QCOMPARE(message.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
            }
        }
        QVERIFY(levelset_.levels[0] == Levelset().levels[0]);
        QVERIFY(levelset_.levels[1] == Levelset().levels[1]);
    }

    void insertedTextIsCutToTheTypingLimit_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char *name, const QString &field, const QString &how,
                            const QString &text, const QString &shown, const QString &stored) {
            QTest::newRow(name) << field << how << text << shown << stored;
        };
        row("abc typed as passcode", "txtPasscode", "type", "abc", "abc", "ABC   ");
        row("passcode takes five typed", "txtPasscode", "type", "abcdefg", "abcde", "ABCDE ");
        row("passcode takes five from its menu", "txtPasscode", "menu", "abcdefgh", "abcde",
            "ABCDE ");
        row("objectives take three typed", "txtObjectives", "type", "1234", "123", "123");
        row("objectives take three composed", "txtObjectives", "compose", "2109", "210", "210");
        row("time takes three typed", "txtTime", "type", "0099", "009", "9");
        row("time takes three pasted", "txtTime", "paste", "12345", "123", "123");
        row("passcode takes five middle-clicked", "txtPasscode", "middle", "abcdefgh", "abcde",
            "ABCDE ");
    }

    void insertedTextIsCutToTheTypingLimit() {
        QFETCH(QString, field);
        QFETCH(QString, how);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        QFETCH(QString, stored);
        show(2);
        auto *edit = client_->findChild<QLineEdit *>(field);
        QVERIFY(edit);
        retype(edit, QString());
        QApplication::clipboard()->setText(text);
        if (how == "type") {
            QTest::keyClicks(edit, text);
        } else if (how == "paste") {
            QTest::keySequence(edit, QKeySequence::Paste);
        } else if (how == "middle") {
            if (!QApplication::clipboard()->supportsSelection())
                QSKIP("the platform has no selection to paste with the middle button");
            QApplication::clipboard()->setText(text, QClipboard::Selection);
            edit->clear(); // the press drops the selection the others type over
            QTest::mouseClick(edit, Qt::MiddleButton);
        } else if (how == "menu") {
            pasteFromContextMenu(edit);
        } else {
            QInputMethodEvent compose;
            compose.setCommitString(text);
            QApplication::sendEvent(edit, &compose);
        }
        QCOMPARE(edit->text(), shown);
        const LevelRecord &level = levelset_.levels[2];
        QCOMPARE(field == "txtPasscode"
                     ? levelset_.passcode(1)
                     : QString::number(level.header[field == "txtTime" ? LevelRecord::Time
                                                                       : LevelRecord::Objectives]),
                 stored);
        QCOMPARE(levelset_.passcode(0), NoPasscode);
        QVERIFY(dialogs_.messages.isEmpty());

        // A full field still takes editing keys, and a selection makes room again.
        QTest::keyClick(edit, Qt::Key_Backspace);
        QCOMPARE(edit->text(), shown.chopped(1));
        QTest::keyClick(edit, Qt::Key_Home);
        QTest::keyClick(edit, Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClicks(edit, QStringLiteral("2"));
        QCOMPARE(edit->text(), QStringLiteral("2") + shown.chopped(1).mid(1));
    }

    void optionsShowAndStoreTypes_data() {
        QTest::addColumn<int>("levelType");
        QTest::addColumn<int>("alienType");
        QTest::addColumn<bool>("hatchery");
        QTest::addColumn<bool>("strong");
        QTest::newRow("normal, normal") << 0 << 3 << false << false;
        QTest::newRow("hatchery, strong") << 1 << 4 << true << true;
        QTest::newRow("level type 2 becomes hatchery") << 2 << 3 << true << false;
        QTest::newRow("alien type 0 becomes strong") << 0 << 0 << false << true;
        QTest::newRow("both foreign") << 255 << 9 << true << true;
    }

    void optionsShowAndStoreTypes() {
        QFETCH(int, levelType);
        QFETCH(int, alienType);
        QFETCH(bool, hatchery);
        QFETCH(bool, strong);
        LevelRecord &level = levelset_.levels[1];
        level.header[LevelRecord::LevelType] = static_cast<std::uint8_t>(levelType);
        level.header[LevelRecord::AlienType] = static_cast<std::uint8_t>(alienType);

        // Showing a level stores the types its options show; a click on the other option of each
        // frame then stores that, in the shown level only.
        show(1);
        for (bool click : {false, true}) {
            if (click) {
                hatchery = !hatchery;
                strong = !strong;
                QTest::mouseClick(hatchery ? panel_->optHatchery : panel_->optNormal,
                                  Qt::LeftButton);
                QTest::mouseClick(strong ? panel_->optStrong : panel_->optWeak, Qt::LeftButton);
            }
            QCOMPARE(panel_->optHatchery->isChecked(), hatchery);
            QCOMPARE(panel_->optNormal->isChecked(), !hatchery);
            QCOMPARE(panel_->optStrong->isChecked(), strong);
            QCOMPARE(panel_->optWeak->isChecked(), !strong);
            QCOMPARE(int(level.header[LevelRecord::LevelType]), hatchery ? 1 : 0);
            QCOMPARE(int(level.header[LevelRecord::AlienType]), strong ? 4 : 3);
        }
        QVERIFY(levelset_.levels[0] == Levelset().levels[0]);
        show(0);
        QVERIFY(panel_->optNormal->isChecked() && panel_->optWeak->isChecked());
    }

private:
    // Qt 6.4 leaves the menu's actions unnamed: the paste action is found by its caption.
    void pasteFromContextMenu(QLineEdit *field) {
        bool pasted = false;
        QTimer::singleShot(0, this, [&pasted] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            for (QAction *action : menu ? menu->actions() : QList<QAction *>())
                if (action->text().startsWith(QLatin1String("&Paste"))) {
                    action->trigger();
                    pasted = true;
                }
            if (menu)
                menu->close();
        });
        QContextMenuEvent request(QContextMenuEvent::Mouse, QPoint(5, 5),
                                  field->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(field, &request);
        QVERIFY(pasted);
    }

    // What the window does when a level becomes current.
    void show(int level) {
        levelset_.currentLevel = static_cast<std::int16_t>(level);
        panel_->loadLevel(levelset_.currentLevel);
    }

    Levelset levelset_;
    ScriptedDialogs dialogs_;
    std::unique_ptr<QWidget> client_;
    PropertiesPanel *panel_ = nullptr;
};

QTEST_MAIN(PanelTest)
#include "PanelTest.moc"
