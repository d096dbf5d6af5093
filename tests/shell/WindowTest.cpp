// The main window as first seen, its commands, keys and properties panel, About, the splash and
// start-up, and the rules they rest on.

#include "levels/ByteField.h"
#include "shell/Main.h"
#include "shell/SystemInfo.h"
#include "shell/VersionText.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "support/EditorWindow.h"

#include <QClipboard>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>

namespace {

using L = LevelRecord;

// Everything a user sees of the window and everything it asked, for comparing two windows.
QVariantList seen(EditorWindow &e) {
    const Levelset &s = e.levelset();
    QVariantList all{e.title(),
                     e.label(),
                     e.status(),
                     e.window.panel->txtPasscode->text(),
                     e.window.panel->txtTime->text(),
                     e.window.picLevel->image(),
                     e.dialogs.messageTexts(),
                     int(e.dialogs.openQuestions.size()),
                     int(e.dialogs.saveQuestions.size()),
                     e.dialogs.modalCount,
                     s.levelCount,
                     QByteArray(reinterpret_cast<const char *>(&s.levels), sizeof s.levels),
                     QByteArray(s.passcodes[0].data(), sizeof s.passcodes),
                     s.currentLevel};
    for (const Marker *m : e.window.findChildren<Marker *>())
        all << m->pos() << m->isVisible();
    return all;
}

bool centredOn(const QRect &frame, const QRect &area) {
    return (frame.center() - area.center()).manhattanLength() <= 2;
}

// Runs a check on the About window while it is shown, then presses OK if the check did not.
void whileAboutIsOpen(EditorWindow &e, std::function<void(frmAbout &)> check) {
    e.dialogs.onModal = [check](QDialog &dialog) {
        auto *about = qobject_cast<frmAbout *>(&dialog);
        about->show();
        QVERIFY(QTest::qWaitForWindowExposed(about));
        check(*about);
        if (about->isVisible())
            QTest::mouseClick(about->cmdOK, Qt::LeftButton);
        QVERIFY(!about->isVisible());
    };
}

// Notes, when shown, its level label and whether a splash window is still there.
struct ShownMain : frmMain {
    QString atShow;
    void showEvent(QShowEvent *event) override {
        atShow = lblLevelNum->text();
        for (QWidget *top : QApplication::topLevelWidgets())
            atShow += qobject_cast<frmSplash *>(top) ? " and the splash" : "";
        frmMain::showEvent(event);
    }
};

struct CloseOrder : QObject {
    QStringList closed;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Close)
            closed << watched->objectName();
        return false;
    }
};

// Keys by name with their values as (type, bytes). Records each call, and whether it came with
// the local machine's root, all access and a 1024-byte buffer.
struct FakeRegistry : RegistryApi {
    QMap<QString, QMap<QString, std::pair<quint32, QByteArray>>> keys;
    QStringList calls;
    bool openKey(quint32 root, const QString &name, quint32 access, Key &key) override {
        calls << (root == 0x80000002 && access == 0x2003F ? "open" : "open?");
        key = std::distance(keys.begin(), keys.find(name));
        return keys.contains(name);
    }
    bool queryValue(Key key, const QString &name, quint32 &type, QByteArray &buffer) override {
        const auto values = std::next(keys.begin(), qsizetype(key)).value();
        calls << (buffer.size() == 1024 ? "query" : "query?");
        type = values.value(name).first;
        buffer.replace(0, values.value(name).second.size(), values.value(name).second);
        return values.contains(name);
    }
    void closeKey(Key) override { calls << "close"; }
};

} // namespace

class WindowTest : public QObject {
    Q_OBJECT
private slots:
    void windowAsFirstSeen() {
        ScriptedDialogs dialogs;
        QCOMPARE(frmMain(&dialogs).windowTitle(), ApplicationTitle); // before Form_Load
        EditorWindow e;
        frmMain &w = e.window;
        QVERIFY(e.activate());
        QCOMPARE(w.objectName() + ' ' + e.title() + ' ' + e.status(),
                 "frmMain [Untitled] - Kestrix: Levelset Editor Status");
        QVERIFY(w.selectedTile == 0 && !w.windowIcon().isNull());

        // Fixed in size, centred, without minimise and maximise buttons.
        const QSize size(803, w.menuBar()->height() + 572);
        QCOMPARE(w.client->geometry(), QRect(QPoint(0, w.menuBar()->height()), QSize(803, 572)));
        w.resize(1000, 800);
        QVERIFY(w.size() == size && w.minimumSize() == size && w.maximumSize() == size);
        QCOMPARE(w.windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                                    Qt::WindowCloseButtonHint),
                 Qt::WindowCloseButtonHint);
        QVERIFY(centredOn(w.frameGeometry(), w.screen()->availableGeometry()));
        QVERIFY(!w.picTileset->isVisible() && w.picTileset->x() >= w.client->width());
        QCOMPARE(w.picTileset->size(), QSize(132, 516));
        // The cursors lie above the markers that share their cell.
        QVERIFY(w.picLevel->children().last() == w.levelCursor &&
                w.picTiles->children().last() == w.tileCursor);

        // Each control's place in the client area, then its caption, which fits it, or its
        // colour, and its state.
        for (const QString row : {"tbToolBar 0,0 803x28",
                                  "sbStatusBar 0,554 803x18",
                                  "lblLevelNum 8,40 113x17 Level: 1 / 1",
                                  "fraLevelType 8,104 121x81 Level Type",
                                  "optNormal 16,128 105x17 Normal checked",
                                  "optHatchery 16,152 105x17 Hatchery",
                                  "fraAlienType 8,232 121x81 Alien Type",
                                  "optWeak 16,256 105x17 Normal checked",
                                  "optStrong 16,280 105x17 Strong",
                                  "lblPasscode 8,364 57x17 Passcode:",
                                  "txtPasscode 64,360 65x19 None off",
                                  "lblObjectives 8,388 57x17 Objectives:",
                                  "txtObjectives 64,384 65x19 0",
                                  "lblTime 8,412 57x17 Time:",
                                  "txtTime 64,408 65x19 99",
                                  "picLevelBorder 136,32 516x516 sunken",
                                  "picLevel 138,34 512x512",
                                  "picTilesBorder 664,32 132x516 sunken",
                                  "picTiles 666,34 128x512",
                                  "shpStart 138,34 16x16 #80ff80",
                                  "shpFinish 314,146 16x16 #00c000",
                                  "shpPut 154,34 16x16 #8080ff hidden",
                                  "shpTake 170,34 16x16 #0000c0 hidden",
                                  "levelCursor 138,34 16x16 #ff8000",
                                  "tileCursor 666,34 16x16 #ff8000",
                                  "shpPutType 682,210 16x16 #8080ff hidden",
                                  "shpTakeType 666,34 16x16 #0000c0 hidden"}) {
            const QWidget *c = w.client->findChild<QWidget *>(row.section(' ', 0, 0));
            QVERIFY2(c, qPrintable(row));
            const auto *marker = qobject_cast<const Marker *>(c);
            const auto *frame = qobject_cast<const QFrame *>(c);
            const QString caption =
                marker ? marker->colour().name()
                       : c->property(c->inherits("QGroupBox") ? "title" : "text").toString();
            const QPoint at = c->mapTo(w.client, QPoint());
            QStringList shown{QString::asprintf("%s %d,%d %dx%d", qPrintable(c->objectName()),
                                                at.x(), at.y(), c->width(), c->height()),
                              caption};
            shown << (c->property("checked").toBool() ? "checked" : "")
                  << (c->isEnabled() ? "" : "off") << (c->isVisible() ? "" : "hidden")
                  << (frame && frame->frameWidth() == 2 && frame->frameShadow() == QFrame::Sunken
                          ? "sunken"
                          : "");
            shown.removeAll("");
            QCOMPARE(shown.join(' '), row);
            QVERIFY(marker || c->fontMetrics().horizontalAdvance(caption) <= c->width());
        }

        QStringList shown; // checked items, focus order, menus and toolbar buttons
        for (const QAction *item : w.findChildren<QAction *>())
            if (item->isChecked() && item->objectName().startsWith("mnu")) // not Qt's own
                shown << item->objectName();
        QStringList focus;
        for (QWidget *c = w.picLevel; focus.size() < 9; c = c->nextInFocusChain())
            if (c->focusPolicy() & Qt::TabFocus)
                focus << c->objectName();
        shown << focus.join(' ') << QString::number(w.menuBar()->actions().size());
        for (const QMenu *menu : w.findChildren<QMenu *>(QRegularExpression("^mnu"))) {
            QStringList items{menu->objectName() + ' ' + menu->title()}; // then item captions
            for (const QAction *item : menu->actions())
                items << (item->isSeparator() ? "-" : item->text());
            shown << items.join('|');
        }
        for (QAction *action : w.tbToolBar->actions()) {
            shown << (action->isSeparator() ? "-" : action->objectName() + ' ' + action->toolTip());
            const QImage picture = action->icon().pixmap(16, 16).toImage();
            const QWidget *button = w.tbToolBar->widgetForAction(action);
            QVERIFY(action->isSeparator() ||
                    (button->size() == QSize(23, 22) && picture.size() == QSize(16, 16)));
            for (int i = 0; i < 256 && !action->isSeparator(); ++i) // grey: transparent
                QVERIFY(picture.pixelColor(i % 16, i / 16) != QColor(192, 192, 192));
        }
        QCOMPARE(shown,
                 (QStringList{
                     "mnuViewStart",
                     "mnuViewFinish",
                     "mnuToolsMouseChoice0",
                     "picLevel picTiles optNormal optHatchery optWeak optStrong txtPasscode "
                     "txtObjectives txtTime",
                     "5",
                     "mnuFile &File|&New|&Open...|-|&Save|Save &As...|-|E&xit",
                     "mnuView &View|&Start Position|&Finish Position|-|Block to &Put|Block to "
                     "&Take",
                     "mnuLevel &Level|Decrease Width|Increase Width|Decrease Height|Increase "
                     "Height|-|&Remove a Level|&Add a Level|&Previous|&Next",
                     "mnuTools &Tools|Right &Mouse Button|-|Set &Floor|-|Count &Enemies|Count "
                     "&Pick-ups|Count &Doors",
                     "mnuToolsMouse Right &Mouse Button|Set &Positions|Random &Wall Tile|Random "
                     "&Inside Tile|Random &Outside Tile",
                     "mnuHelp &Help|&About ",
                     "mnuTilePopUp Tile PopUp|Set as Block to &Put Type|Set as Block to &Take Type",
                     "mnuLevelPopUp Level PopUp|Set as &Start Position|Set as &Finish "
                     "Position|-|Set as Block to &Put Position|Set as Block to &Take Position",
                     "New New Levelset",
                     "Open Open",
                     "Save Save",
                     "-",
                     "DWidth Decrease Width",
                     "IWidth Increase Width",
                     "DHeight Decrease Height",
                     "IHeight Increase Height",
                     "-",
                     "AddLevel Add a Level",
                     "RemoveLevel Remove a Level",
                     "PreviousLevel Go to Previous Level",
                     "NextLevel Go to Next Level",
                     "-",
                     "About About"}));

        const auto *date = w.sbStatusBar->findChild<QLabel *>("statusDate");
        const auto *time = w.sbStatusBar->findChild<QLabel *>("statusTime");
        QVERIFY(date->width() >= 96 && time->width() >= 96 && !time->text().isEmpty());
        QVERIFY(w.statusText->x() < date->x() && date->x() < time->x());
        QVERIFY(w.statusText->width() >= 803 - date->width() - time->width() - 24);
        QCOMPARE(date->text(), QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
    }

    // Each key runs exactly its item whichever control has the focus, also a panel field whose
    // platform key bindings give the key an editing meaning (on X11 Ctrl+E ends the line).
    void shortcutRunsExactlyItsItem_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("focus");
        const QStringList items =
            QString("Ctrl+N FileNew Ctrl+O FileOpen Ctrl+S FileSave F1 LevelDecreaseWidth F2 "
                    "LevelIncreaseWidth F3 LevelDecreaseHeight F4 LevelIncreaseHeight F5 "
                    "LevelRemove F6 LevelAdd F7 LevelPrevious F8 LevelNext Ctrl+F ToolsSetFloor "
                    "Ctrl+E ToolsEnemies Ctrl+P ToolsPickups Ctrl+D ToolsDoors F12 HelpAbout")
                .split(' ');
        for (const char *focus : {"picLevel", "txtPasscode", "txtObjectives", "txtTime"})
            for (qsizetype i = 0; i < items.size(); i += 2)
                QTest::addRow("%s in %s", qPrintable(items[i]), focus)
                    << items[i] << "mnu" + items[i + 1] << QString(focus);
    }
    void shortcutRunsExactlyItsItem() {
        QFETCH(QString, key);
        QFETCH(QString, item);
        QFETCH(QString, focus);
        QStringList triggered;
        EditorWindow e;
        e.window.mnuLevelAdd_Click();
        e.window.mnuLevelNext_Click(); // the passcode field is enabled from level 2 on
        QVERIFY(e.activate());
        e.answer({QMessageBox::No});
        for (QAction *action : e.window.findChildren<QAction *>())
            connect(action, &QAction::triggered,
                    [&, action] { triggered << action->objectName(); });
        auto *control = e.window.client->findChild<QWidget *>(focus);
        control->setFocus();
        QVERIFY(control->hasFocus());
        if (auto *field = qobject_cast<QLineEdit *>(control))
            field->setCursorPosition(1);
        QTest::keySequence(control, QKeySequence(key));
        QCOMPARE(triggered, QStringList{item});
    }

    // The keys of a field's own editing, which no menu item owns, stay the field's.
    void fieldsKeepTheirEditingKeys() {
        EditorWindow e;
        e.window.mnuLevelAdd_Click();
        e.window.mnuLevelNext_Click();
        QVERIFY(e.activate());
        QLineEdit *passcode = e.window.panel->txtPasscode;
        passcode->setFocus();
        for (const QString row : {"Home, Del=bc", "Left, Backspace=ac", "Home, Right, Del=ac",
                                  "Ctrl+A, Del=", "Ctrl+A, Ctrl+C, End, Ctrl+V=abcab",
                                  "Ctrl+A, Ctrl+X, Ctrl+V, Ctrl+V=abcab"}) {
            passcode->setText("abc"); // the caret last
            QTest::keySequence(passcode, QKeySequence(row.section('=', 0, 0)));
            QCOMPARE(passcode->text(), row.section('=', 1));
        }
        QVERIFY(e.dialogs.messages.isEmpty());
    }

    // Letters run commands through the menu in one window and the toolbar in another, which
    // must end alike: N O S New Open Save, w W h H narrower wider lower taller, + - < > add
    // remove previous next, A About. Past the second, levels differ in size, time, contents and
    // passcode, so that a command that shows, drops or alters the wrong level is seen.
    void commands_data() {
        QTest::addColumn<QString>("letters");
        QTest::addColumn<QString>("after"); // then messages, opens, saves and modal windows
        for (const QString row :
             {"-<> Level: 1 / 1 12x8 [None] 0000", "+ Level: 1 / 2 12x8 [None] 0000",
              "+> Level: 2 / 2 12x8 [      ] 0000", "+>> Level: 2 / 2 12x8 [      ] 0000",
              "++++++++ Level: 1 / 8 12x8 [None] 0000", "++>>-<- Level: 2 / 2 12x8 [      ] 0000",
              "++>-+> Level: 3 / 3 14x10 [CODE2 ] 0000", "wh Level: 1 / 1 12x8 [None] 0000",
              "WWWWWWWWWWWWWWWWWWWWW Level: 1 / 1 32x8 [None] 0000",
              "HHHHHHHHHHHHHHHHHHHHHHHHH Level: 1 / 1 12x32 [None] 0000",
              "WWWWwW Level: 1 / 1 16x8 [None] 0000", "+++>>>wh Level: 4 / 4 19x11 [CODE3 ] 0000",
              "++++>>>>wWh Level: 5 / 5 6x0 [CODE4 ] 0000",
              "+++++>>>>>WH Level: 6 / 6 32x32 [CODE5 ] 0000", "+>N Level: 1 / 1 12x8 [None] 1010",
              "O Level: 1 / 1 12x8 [None] 1110", "S Level: 1 / 1 12x8 [None] 0010",
              "A Level: 1 / 1 12x8 [None] 0001"})
            QTest::newRow(qPrintable(row.section(' ', 0, 0)))
                << row.section(' ', 0, 0) << row.section(' ', 1);
    }
    void commands() {
        QFETCH(QString, letters);
        QFETCH(QString, after);
        // Each letter, its menu item and its button.
        const QStringList commands =
            QString("N FileNew New O FileOpen Open S FileSave Save w LevelDecreaseWidth DWidth W "
                    "LevelIncreaseWidth IWidth h LevelDecreaseHeight DHeight H "
                    "LevelIncreaseHeight IHeight + LevelAdd AddLevel - LevelRemove RemoveLevel < "
                    "LevelPrevious PreviousLevel > LevelNext NextLevel A HelpAbout About")
                .split(' ');
        EditorWindow byMenu, byButton;
        for (Levelset *s : {&byMenu.levelset(), &byButton.levelset()}) {
            s->levels[0].tile(15, 0) = 12; // hidden until the level is 16 wide
            const int sizes[] = {14, 10, 20, 12, 5, 0, 32, 32, 31, 9, 13, 8};
            for (int i = 2; i < Levelset::MaxLevels; ++i) {
                L &level = s->levels[i];
                level.header[L::Width] = sizes[2 * i - 4];
                level.header[L::Height] = sizes[2 * i - 3];
                level.header[L::Time] = 40 + i;
                level.header[L::StartX] = i;
                level.header[L::FinishX] = 19;
                level.tile(i, 5) = 100 + i;
                s->storePasscode(i - 1, QString("CODE%1").arg(i));
            }
        }
        for (const QChar letter : letters) {
            const qsizetype n = commands.indexOf(letter);
            for (EditorWindow *e : {&byMenu, &byButton}) {
                e->window.levelCursor->place(QPoint(32, 32));
                if (QString("wWhH").contains(letter)) // which repaint even at a limit
                    e->window.picLevel->drawLevel(L{}, e->window.picTileset->image());
            }
            const Levelset before = byMenu.levelset();
            byMenu.item("mnu" + commands[n + 1])->trigger();
            QToolBar *bar = byButton.window.tbToolBar;
            QTest::mouseClick(bar->widgetForAction(bar->findChild<QAction *>(commands[n + 2])),
                              Qt::LeftButton);
            if (QString("NOSA").contains(letter))
                continue;
            // Only the size of the level that was current may change; the view, markers and
            // panel show the current level; the level cursor goes home with another level.
            const Levelset &s = byMenu.levelset();
            const L &level = s.current();
            for (int i = 0; i < Levelset::MaxLevels; ++i) {
                L was = before.levels[i];
                if (i == before.currentLevel) // height and width, the first two bytes
                    std::copy_n(s.levels[i].header.begin(), 2, was.header.begin());
                QVERIFY(s.levels[i] == was && s.passcodes == before.passcodes);
            }
            bool viewAgrees = true;
            for (int i = 0; i < L::GridSize * L::GridSize; ++i)
                viewAgrees &= byMenu.cellIsGrey(i % 32, i / 32) != level.contains(i % 32, i / 32);
            QVERIFY(viewAgrees);
            const frmMain &w = byMenu.window;
            QCOMPARE(w.shpStart->pos(),
                     16 * QPoint(level.header[L::StartX], level.header[L::StartY]));
            QCOMPARE(w.shpFinish->pos(),
                     16 * QPoint(level.header[L::FinishX], level.header[L::FinishY]));
            QCOMPARE(w.panel->txtTime->text(), QString::number(level.header[L::Time]));
            QCOMPARE(w.levelCursor->pos(),
                     QPoint(32, 32) * (s.currentLevel == before.currentLevel));
        }
        // Unknown keys and levels outside the set do nothing.
        for (const char *key : {"", "addlevel", "Add a Level", "About "})
            byMenu.window.tbToolBar_ButtonClick(key);
        for (std::int16_t level : {-1, 8})
            byMenu.window.loadLevel(level);
        QCOMPARE(seen(byButton), seen(byMenu));
        const ScriptedDialogs &d = byMenu.dialogs;
        QCOMPARE(QString::asprintf("%s %dx%d [%s] %d%d%d%d", qPrintable(byMenu.label()),
                                   byMenu.level().width(), byMenu.level().height(),
                                   qPrintable(byMenu.window.panel->txtPasscode->text()),
                                   int(d.messages.size()), int(d.openQuestions.size()),
                                   int(d.saveQuestions.size()), d.modalCount),
                 after);
    }

    // Once the window goes, the other shown windows close, the newest first; a cancelled Exit
    // keeps them all.
    void exitClosesTheOtherWindowsUnlessCancelled() {
        for (auto answer : {QMessageBox::Cancel, QMessageBox::No}) {
            EditorWindow e;
            QWidget hidden, older, newer;
            CloseOrder order;
            for (QWidget *other : {&hidden, &older, &newer}) {
                other->installEventFilter(&order);
                other->show();
            }
            hidden.hide();
            older.setObjectName("older");
            newer.setObjectName("newer");
            e.answer({answer});
            e.window.mnuFileExit_Click();
            const bool cancelled = answer == QMessageBox::Cancel;
            QCOMPARE(order.closed.join(" "), cancelled ? "" : "newer older");
            QVERIFY(e.window.isVisible() == cancelled && older.isVisible() == cancelled);
        }
    }

    // Rows of the field (Passcode, Objectives, Time), how the text comes in and the text, then
    // the field's text, what is stored and the messages (C the character one, V the value one).
    // Each keystroke is read at once; however text comes in, a field takes no more than its
    // limit, over the selected text; a full field still takes its editing keys.
    void panelFields_data() {
        QTest::addColumn<QString>("row");
        for (const char *row :
             {"OT|type|255|255|255|", "OT|type|256|256|25|V", "OT|type|-|-|99|C",
              "OT|type|-1|-1|99|CV", "OT|type|x|x|99|C", "OT|type|7q|7q|7|C", "OT|type| 5| 5|5|C",
              "OT|type|\b|0|0|", "OT|type|\b120|120|120|", "P|type|abc|abc|ABC   |",
              "P|type|abcdefg|abcde|ABCDE |", "P|menu|abcdefgh|abcde|ABCDE |",
              "O|compose|2109|210|210|", "T|type|0099|009|9|", "T|paste|12345|123|123|",
              "P|middle|abcdefgh|abcde|ABCDE |"})
            QTest::newRow(row) << QString(row);
    }
    void panelFields() {
        QFETCH(QString, row);
        const QStringList c = row.split('|');
        const QString how = c[1], text = c[2];
        EditorWindow e;
        Levelset &s = e.levelset();
        s.levelCount = 3;
        for (const QChar field : c[0]) {
            const auto byte = field == 'T' ? L::Time : L::Objectives;
            s.levels[2].header[byte] = 99;
            e.window.loadLevel(s.currentLevel = 2);
            e.dialogs.messages.clear();
            QLineEdit *edit = field == 'P'   ? e.window.panel->txtPasscode
                              : field == 'T' ? e.window.panel->txtTime
                                             : e.window.panel->txtObjectives;
            edit->setFocus();
            edit->selectAll();
            QApplication::clipboard()->setText(text);
            if (how == "type") {
                QTest::keyClicks(edit, text);
            } else if (how == "paste") {
                QTest::keySequence(edit, QKeySequence::Paste);
            } else if (how == "compose") {
                QInputMethodEvent compose;
                compose.setCommitString(text);
                QApplication::sendEvent(edit, &compose);
            } else if (how == "middle") {
                if (!QApplication::clipboard()->supportsSelection())
                    QSKIP("the platform has no selection to paste with the middle button");
                QApplication::clipboard()->setText(text, QClipboard::Selection);
                edit->clear(); // the press drops the selection the others replace
                QTest::mouseClick(edit, Qt::MiddleButton);
            } else { // the field's own menu; here its paste item is found by its caption
                QTimer::singleShot(0, edit, [] {
                    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
                    for (QAction *action : menu->actions())
                        if (action->text().startsWith("&Paste"))
                            action->trigger();
                    menu->close();
                });
                QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5},
                                       edit->mapToGlobal(QPoint(5, 5)));
                QApplication::sendEvent(edit, &menu);
            }
            QString warnings;
            for (const ScriptedDialogs::Message &m : e.dialogs.messages) {
                warnings += m.text == "Invalid character!"                      ? u'C'
                            : m.text == "Invalid value! Must be between 0-255." ? u'V'
                                                                                : u'?';
                QVERIFY(m.title == ApplicationTitle && m.icon == QMessageBox::Warning &&
                        m.buttons == QMessageBox::Ok);
            }
            const QString stored =
                field == 'P' ? s.passcode(1) : QString::number(s.levels[2].header[byte]);
            QCOMPARE((QStringList{edit->text(), stored, warnings}), c.mid(3));
            QVERIFY(s.levels[0] == Levelset().levels[0] && s.passcode(0) == "      ");
            QTest::keyClick(edit, Qt::Key_Backspace);
            QTest::keyClick(edit, Qt::Key_Home);
            QTest::keyClick(edit, Qt::Key_Right, Qt::ShiftModifier); // a selection makes room
            QTest::keyClicks(edit, "2");
            QCOMPARE(edit->text(), "2" + c[3].chopped(1).mid(1));
        }
    }

    // Showing a level writes nothing, whatever a file put in its passcode, and the field shows
    // the passcode as it is; the first edit stores the whole field upper-cased.
    void passcodesShowAsLoaded() {
        EditorWindow e;
        Levelset &s = e.levelset();
        QLineEdit *field = e.window.panel->txtPasscode;
        s.levelCount = 8;
        const QByteArray codes = "abc   Mixed1      \xe9t\xe9   zz zz UPPER a\x01"
                                 "b   ";
        for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
            std::copy_n(codes.constData() + 6 * slot, 6, s.passcodes[slot].begin());
        const Levelset before = s;
        for (std::int16_t level : {1, 0, 2, 7, 3, 4, 5, 6, 1, 0, 2}) {
            e.window.loadLevel(s.currentLevel = level);
            QVERIFY(s.passcodes == before.passcodes && s.levels == before.levels);
            QCOMPARE(field->text(), level ? s.passcode(level - 1) : "None");
            QCOMPARE(field->isEnabled(), level > 0);
        }
        field->setFocus();
        field->end(false);
        QTest::keyClicks(field, "g"); // six loaded characters, five typed
        QCOMPARE(s.passcode(1), "Mixed1");
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, "g");
        QCOMPARE(field->text() + s.passcode(1), "MixedMIXED ");
        QVERIFY(e.dialogs.messages.isEmpty());
    }

    // Rows of the level type and alien type a file holds, then the types shown, as the bytes
    // they store. Showing the level stores those; a click on the other option of each frame
    // then stores that, in the shown level only.
    void optionsShowAndStoreTypes() {
        EditorWindow e;
        PropertiesPanel &p = *e.window.panel;
        Levelset &s = e.levelset();
        s.levelCount = 2;
        for (const auto &[levelType, alienType, shownLevel, shownAlien] :
             {std::array{0, 3, 0, 3}, {1, 4, 1, 4}, {2, 3, 1, 3}, {0, 0, 0, 4}, {255, 9, 1, 4}}) {
            s.levels[1].header[L::LevelType] = levelType;
            s.levels[1].header[L::AlienType] = alienType;
            e.window.loadLevel(s.currentLevel = 0); // Normal and Normal
            e.window.loadLevel(s.currentLevel = 1);
            for (bool click : {false, true}) {
                const bool hatchery = (shownLevel == 1) != click;
                const bool strong = (shownAlien == 4) != click;
                if (click) {
                    QTest::mouseClick(hatchery ? p.optHatchery : p.optNormal, Qt::LeftButton);
                    QTest::mouseClick(strong ? p.optStrong : p.optWeak, Qt::LeftButton);
                }
                QVERIFY(p.optHatchery->isChecked() == hatchery &&
                        p.optNormal->isChecked() != hatchery);
                QVERIFY(p.optStrong->isChecked() == strong && p.optWeak->isChecked() != strong);
                QCOMPARE(s.levels[1].header[L::LevelType] * 10 + s.levels[1].header[L::AlienType],
                         (hatchery ? 10 : 0) + (strong ? 4 : 3));
            }
            QVERIFY(s.levels[0] == Levelset().levels[0]);
        }
    }

    // About is built anew each time it opens, centred on its owner; Escape and Enter press OK.
    void aboutShowsTitleAndVersionEveryTime() {
        EditorWindow e;
        QVERIFY(e.activate());
        QStringList seen;
        int opened = 0, okPresses = 0;
        whileAboutIsOpen(e, [&](frmAbout &about) {
            seen << about.windowTitle() << about.lblTitle->text() << about.lblVersion->text()
                 << about.cmdSysInfo->text() << about.lblDescription->text()
                 << about.lblDisclaimer->text();
            QVERIFY(about.parentWidget() == &e.window && !about.picIcon->pixmap().isNull());
            // Frame on frame, title bars included, where a window manager adds them.
            QVERIFY(centredOn(about.frameGeometry(), e.window.frameGeometry()));
            QVERIFY(!(about.windowFlags() &
                      (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)));
            QCOMPARE(about.minimumSize(), about.maximumSize());
            connect(about.cmdOK, &QPushButton::clicked, [&okPresses] { ++okPresses; });
            QTest::keyClick(&about, opened++ ? Qt::Key_Return : Qt::Key_Escape);
            QVERIFY(!about.isVisible() && about.result() == QDialog::Accepted);
        });
        e.window.mnuHelpAbout_Click();
        e.window.mnuHelpAbout_Click();
        QCOMPARE(okPresses, 2);
        const QStringList once{
            "About Kestrix: Levelset Editor",
            "Kestrix: Levelset Editor",
            "Version 2.0",
            "&System Info...",
            "Levelset Editor for the game Kestrix, for the TI-83, TI-83+ and TI-86 calculators.",
            "Disclaimer: The author of this program takes no responsibility for the effects of "
            "using this software. It has been tested and at the time of release no known bugs "
            "were apparent."};
        QCOMPARE(seen, once + once);
        QCOMPARE(versionText("3.14.2") + versionText("4"), "Version 3.14Version 4.0");
    }

    // With the platform's own modal windows, About holds its caller until OK.
    void realAboutWindowBlocksUntilOK() {
        frmMain window;
        window.Form_Load();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QString modalTitle;
        QTimer closer;
        connect(&closer, &QTimer::timeout, [&] {
            if (auto *about = qobject_cast<frmAbout *>(QApplication::activeModalWidget())) {
                modalTitle = about->windowTitle();
                QTest::mouseClick(about->cmdOK, Qt::LeftButton);
            }
        });
        closer.start(50);
        window.mnuHelpAbout_Click();
        QCOMPARE(modalTitle, "About Kestrix: Levelset Editor");
        QVERIFY(!QApplication::activeModalWidget());
    }

    // System Info starts the first known tool on the PATH of the moment, in the order of the
    // list, then of the folders; with none found, or one that will not start, it says so.
    // About stays open either way. Rows of files as "folder/name" in one of two folders, "*"
    // after an executable one, then the tool started.
    void systemInfoStartsAToolFromThePathOrSaysThereIsNone() {
        const QByteArray path = qgetenv("PATH");
        for (const QString row :
             {"=", "0/hardinfo=", "1/kinfocenter*=1/kinfocenter",
              "0/lshw-gtk* 1/hardinfo*=1/hardinfo", "0/hardinfo* 1/hardinfo*=0/hardinfo",
              "1/lshw-gtk* 0/hardinfo2=1/lshw-gtk", "0/hardinfo2* 1/hardinfo*=0/hardinfo2",
              "0/hardinfo*junk=", "0/top* 1/htop*=",
              "0/gnome-system-monitor* 1/mate-system-monitor*="}) {
            QTemporaryDir folders[2];
            for (const QString &entry : row.section('=', 0, 0).split(' ', Qt::SkipEmptyParts)) {
                QFile tool(folders[entry[0] == '1'].filePath(entry.mid(2).section('*', 0, 0)));
                QVERIFY(tool.open(QIODevice::WriteOnly));
                tool.write(entry.endsWith("junk") ? "junk" : "#!/bin/sh\necho > \"$0.started\"\n");
                tool.close();
                if (entry.contains('*'))
                    QVERIFY(tool.setPermissions(tool.permissions() | QFileDevice::ExeOwner));
            }
            qputenv("PATH", (folders[0].path() + ':' + folders[1].path()).toLocal8Bit());
            EditorWindow e;
            whileAboutIsOpen(e, [](frmAbout &about) {
                QTest::mouseClick(about.cmdSysInfo, Qt::LeftButton);
                QVERIFY(about.isVisible());
            });
            e.window.mnuHelpAbout_Click();
            qputenv("PATH", path);
            const QString started = row.section('=', 1);
            if (!started.isEmpty())
                QTRY_VERIFY(QFile::exists(folders[started[0] == '1'].filePath(started.mid(2)) +
                                          ".started"));
            QCOMPARE(e.dialogs.messages.size(), started.isEmpty() ? 1 : 0);
            for (const ScriptedDialogs::Message &m : e.dialogs.messages)
                QVERIFY(m.text == "System Information Is Unavailable At This Time" &&
                        m.title == ApplicationTitle && m.icon == QMessageBox::NoIcon &&
                        m.buttons == QMessageBox::Ok);
        }
    }

    // The splash, centred and deaf to the user, is on the screen and painted before the main
    // window is built, and gone before the loaded main window shows.
    void startUpShowsTheSplashFirstAndTheLoadedWindowLast() {
        QImage onScreen, painted;
        QStringList splashShows;
        ShownMain *shown = nullptr;
        const std::unique_ptr<frmMain> window = Main([&] {
            frmSplash *splash = nullptr;
            for (QWidget *top : QApplication::topLevelWidgets())
                splash = splash ? splash : qobject_cast<frmSplash *>(top);
            const QRect place = splash->geometry();
            onScreen = splash->screen()
                           ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                           .toImage();
            painted = splash->grab().toImage();
            QTest::mouseClick(splash, Qt::LeftButton);
            QTest::keyClick(splash, Qt::Key_Escape);
            QTest::keyClick(splash, Qt::Key_Return);
            splashShows << splash->windowTitle()
                        << QString::number(
                               splash->isVisible() &&
                               splash->windowFlags().testFlag(Qt::FramelessWindowHint) &&
                               centredOn(place, splash->screen()->availableGeometry()) &&
                               !splash->lblCompany->text().isEmpty() &&
                               !splash->lblCopyright->text().isEmpty())
                        << QString::number(splash->picLogo->pixmap().width()) + 'x' +
                               QString::number(splash->picLogo->pixmap().height());
            for (const QLabel *line :
                 {splash->lblProductName, splash->lblPlatform, splash->lblVersion})
                splashShows << QString::asprintf("%s %g %d", qPrintable(line->text()),
                                                 line->font().pointSizeF(), line->font().bold());
            auto made = std::make_unique<ShownMain>();
            shown = made.get();
            return made;
        });
        QCOMPARE(splashShows, (QStringList{"", "1", "200x134", "Kestrix: Levelset Editor 18 1",
                                           "for Linux 13.5 1", "Version 2.0 12 1"}));
        QVERIFY(!painted.isNull());
        QCOMPARE(onScreen.convertToFormat(QImage::Format_RGB32),
                 painted.convertToFormat(QImage::Format_RGB32));
        QCOMPARE(shown->atShow + ' ' + window->windowTitle(),
                 "Level: 1 / 1 [Untitled] - Kestrix: Levelset Editor");
        QVERIFY(window->isVisible());
    }

    // The byte a number field's text gives, or which message: C the character one, V the value
    // one.
    void numberFieldReading() {
        for (const QString &row :
             QString("0=0|007=7|  42 =42|\t7\t=7|+12=12|-32768=V|32768=C|-32769=C|"
                     "99999999999999999999=C|=C|12a=C|1 2=C|- 1=C|1.5=C|&H10=C|\u0661=C")
                 .split('|')) {
            const ByteField field = ByteField::read(row.section('=', 0, 0));
            QCOMPARE(row.section('=', 0, 0) + '=' +
                         (field.outcome == ByteField::Value          ? QString::number(field.value)
                          : field.outcome == ByteField::InvalidValue ? "V"
                                                                     : "C"),
                     row);
        }
    }

    // Where the registry names the tool: MSINFO's PATH value, else MSINFO32.EXE in the shared
    // tools folder if it is there. Rows of that value's type (0 for none) and bytes, the
    // folder, whether the program is there, then the path found and the calls made: a string
    // is cut at its first zero, a number is its codes from last to first, other types give
    // nothing, and every key opened is closed.
    void registryFindsTheTool() {
        const struct {
            quint32 type;
            QByteArray value;
            const char *folder, *exists, *found, *calls;
        } rows[] = {{1, QByteArray("C:\\Tools\\msinfo32.exe\0x", 23), "C:\\Other", "y",
                     "C:\\Tools\\msinfo32.exe", "open query close"},
                    {4, "\x01\x0f\xff", "", "", "&hFFF1", "open query close"},
                    {3, "xyz", "C:\\Shared", "y", "", "open query close"},
                    {0, "", "C:\\Shared", "y", "C:\\Shared\\MSINFO32.EXE",
                     "open query close open query close"},
                    {0, "", "C:\\Shared", "", "", "open query close open query close"},
                    {0, "", "", "y", "", "open query close open"}};
        for (const auto &[type, value, folder, exists, found, calls] : rows) {
            FakeRegistry registry;
            auto &values = registry.keys["SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"];
            if (type)
                values["PATH"] = {type, value};
            if (*folder)
                registry.keys["SOFTWARE\\Microsoft\\Shared Tools Location"]["MSINFO"] = {1, folder};
            QStringList asked;
            const auto fileExists = [&](const QString &path) {
                asked << path;
                return *exists != 0;
            };
            QCOMPARE(RegistrySystemInfo(registry, fileExists, startDetached).toolPath(), found);
            QCOMPARE(registry.calls.join(' '), calls);
            QCOMPARE(asked.join(""), type || !*folder ? "" : QString(folder) + "\\MSINFO32.EXE");
        }
        FakeRegistry none;
        QString keyVal = "before"; // a key that cannot be opened empties it
        QVERIFY(!GetKeyValue(none, 0x80000002, "K", "V", keyVal) && keyVal.isEmpty());
    }
};

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
