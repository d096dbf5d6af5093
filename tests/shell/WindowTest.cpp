// The main window as first seen, its commands, keys and panel, About, the splash and start-up,
// and the rules they rest on.

#include "levels/ByteField.h"
#include "shell/Main.h"
#include "shell/SystemInfo.h"
#include "shell/VersionText.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "support/EditorWindow.h"
#include "view/drawLevel.h"

#include <QClipboard>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>

namespace {

using L = LevelRecord;

// The menu items with a key or a button, in fours: the item, its key, its button ("." for
// none) and the letter that runs it in scripts().
const QStringList Items =
    QString("FileNew Ctrl+N New N FileOpen Ctrl+O Open O FileSave Ctrl+S Save S "
            "LevelDecreaseWidth F1 DWidth w LevelIncreaseWidth F2 IWidth W LevelDecreaseHeight F3 "
            "DHeight h LevelIncreaseHeight F4 IHeight H LevelRemove F5 RemoveLevel - LevelAdd F6 "
            "AddLevel + LevelPrevious F7 PreviousLevel < LevelNext F8 NextLevel > HelpAbout F12 "
            "About A ToolsSetFloor Ctrl+F . . ToolsEnemies Ctrl+E . . ToolsPickups Ctrl+P . . "
            "ToolsDoors Ctrl+D . .")
        .split(' ');

bool centredOn(const QRect &frame, const QRect &area) {
    return (frame.center() - area.center()).manhattanLength() <= 2;
}

// What the window shows and asked, first as text: the label's numbers, the size, the passcode
// field and its slot, the objectives and time fields with their bytes, the level and alien type
// bytes and options, the messages (C, V the character and value ones, else the first letter),
// the opens, saves and modal windows, and "stale" unless the view shows the current level.
QVariantList state(EditorWindow &e) {
    const Levelset &s = e.levelset();
    const PropertiesPanel &p = *e.window.panel;
    QString messages;
    for (const ScriptedDialogs::Message &m : e.dialogs.messages)
        messages += m.text == "Invalid character!"   ? u'C'
                    : m.text.startsWith("Invalid v") ? u'V'
                                                     : m.text[0];
    QImage drawn;
    drawLevel(s.current(), drawn);
    QVariantList all{
        QString::asprintf(
            "%s %dx%d [%s|%s] O%s=%d T%s=%d %d/%d%c%c %s|%d%d%d%s", qPrintable(e.label().mid(7)),
            s.current().width(), s.current().height(), qPrintable(p.txtPasscode->text()),
            qPrintable(s.currentLevel ? s.passcode(s.currentLevel - 1) : ""),
            qPrintable(p.txtObjectives->text()), s.current().header[L::Objectives],
            qPrintable(p.txtTime->text()), s.current().header[L::Time],
            s.current().header[L::LevelType], s.current().header[L::AlienType],
            p.optHatchery->isChecked() ? 'H' : 'N', p.optStrong->isChecked() ? 'S' : 'W',
            qPrintable(messages), int(e.dialogs.fileQuestions.filter("Open|").size()),
            int(e.dialogs.fileQuestions.filter("Save As|").size()), e.dialogs.modalCount,
            e.window.picLevel->image() == drawn ? "" : " stale"),
        e.title(), e.status(), e.window.picLevel->image(),
        QByteArray(reinterpret_cast<const char *>(&s.levels), sizeof s.levels)};
    for (const Marker *m : e.window.findChildren<Marker *>())
        all << m->pos() << m->isVisible();
    return all;
}

// Enters text into a field as the token says (see scripts()).
void enter(EditorWindow &e, const QString &token) {
    auto *field = e.window.client->findChild<QLineEdit *>(
        QStringList{"txtPasscode", "txtObjectives", "txtTime"}[QString("POT").indexOf(token[0])]);
    const QString text = token.mid(2).replace('_', ' ');
    if (token[1] == '<' || token[1] == '#')
        e.activate(); // keys and menus go to the active window
    field->setFocus();
    if (QString("=#~").contains(token[1]))
        field->selectAll();
    QApplication::clipboard()->setText(text);
    if (token[1] == '<') {
        QTest::keySequence(field, QKeySequence(text));
    } else if (token[1] == '~') { // as an input method commits it
        QInputMethodEvent commit;
        commit.setCommitString(text);
        QApplication::sendEvent(field, &commit);
    } else if (token[1] == '*') {
        field->clear(); // the press drops the selection the others replace
        QApplication::clipboard()->setText(text, QClipboard::Selection);
        QTest::mouseClick(field, Qt::MiddleButton);
    } else if (token[1] == '#') { // the field's own menu; here its paste item is found by caption
        QTimer::singleShot(0, field, [] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            for (QAction *action : menu->actions())
                if (action->text().startsWith("&Paste"))
                    action->trigger();
            menu->close();
        });
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, field->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(field, &menu);
    } else {
        QTest::keyClicks(field, text);
    }
}

// Keys by name with their string values; counts the keys open.
struct FakeRegistry : RegistryApi {
    QMap<QString, QMap<QString, QByteArray>> keys;
    int open = 0;
    bool openKey(quint32, const QString &name, quint32, Key &key) override {
        key = std::distance(keys.begin(), keys.find(name));
        return keys.contains(name) && ++open;
    }
    bool queryValue(Key key, const QString &name, quint32 &type, QByteArray &buffer) override {
        const auto values = std::next(keys.begin(), qsizetype(key)).value();
        type = StringType;
        buffer.replace(0, values.value(name).size(), values.value(name));
        return values.contains(name);
    }
    void closeKey(Key) override { --open; }
};

} // namespace

class WindowTest : public QObject {
    Q_OBJECT
private slots:
    void windowAsFirstSeen() {
        EditorWindow e;
        frmMain &w = e.window;
        QVERIFY(e.activate());
        QCOMPARE(state(e).first(), "1 / 1 12x8 [None|] O0=0 T99=99 0/3NW |000");
        QCOMPARE(w.objectName() + ' ' + e.title() + ' ' + e.status(),
                 "frmMain [Untitled] - Kestrix: Levelset Editor Status");
        QVERIFY(w.selectedTile == 0 && !w.windowIcon().isNull() &&
                w.findChild<QLabel *>("statusText") == w.statusText);
        // Fixed in size, centred, without minimise and maximise buttons.
        const QSize size(803, w.menuBar()->height() + 572);
        QCOMPARE(w.client->geometry(), QRect(QPoint(0, w.menuBar()->height()), QSize(803, 572)));
        w.resize(1000, 800);
        QVERIFY(w.size() == size && w.minimumSize() == size && w.maximumSize() == size);
        QCOMPARE(w.windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                                    Qt::WindowCloseButtonHint),
                 Qt::WindowCloseButtonHint);
        // A window manager frames the window after it is shown; it is centred again then.
        QTRY_VERIFY_WITH_TIMEOUT(centredOn(w.frameGeometry(), w.screen()->availableGeometry()),
                                 5000);
        QVERIFY(!w.picTileset->isVisible() && w.picTileset->x() >= w.client->width());
        QCOMPARE(w.picTileset->size(), QSize(132, 516));
        QVERIFY(w.picLevel->children().last() == w.levelCursor && // the cursors on top
                w.picTiles->children().last() == w.tileCursor);

        // Each control's place in the client area and its caption, which fits it, or colour,
        // then its state; the checked items and the focus order.
        const QString expected =
            "tbToolBar 0,0 803x28|sbStatusBar 0,554 803x18|lblLevelNum 8,40 113x17 Level: 1 / "
            "1|fraLevelType 8,104 121x81 Level Type|optNormal 16,128 105x17 Normal "
            "checked|optHatchery 16,152 105x17 Hatchery|fraAlienType 8,232 121x81 Alien "
            "Type|optWeak 16,256 105x17 Normal checked|optStrong 16,280 105x17 Strong|lblPasscode "
            "8,364 57x17 Passcode:|txtPasscode 64,360 65x19 None off|lblObjectives 8,388 57x17 "
            "Objectives:|txtObjectives 64,384 65x19 0|lblTime 8,412 57x17 Time:|txtTime 64,408 "
            "65x19 99|picLevelBorder 136,32 516x516 sunken|picLevel 138,34 "
            "512x512|picTilesBorder 664,32 132x516 sunken|picTiles 666,34 128x512|shpStart "
            "138,34 16x16 #80ff80|shpFinish 314,146 16x16 #00c000|shpPut 154,34 16x16 #8080ff "
            "hidden|shpTake 170,34 16x16 #0000c0 hidden|levelCursor 138,34 16x16 "
            "#ff8000|tileCursor 666,34 16x16 #ff8000|shpPutType 682,210 16x16 #8080ff "
            "hidden|shpTakeType 666,34 16x16 #0000c0 hidden|mnuViewStart|mnuViewFinish|"
            "mnuToolsMouseChoice0|picLevel picTiles optNormal optHatchery optWeak optStrong "
            "txtPasscode txtObjectives txtTime";
        QStringList shown;
        for (const QString &row : expected.split('|').mid(0, 27)) {
            const QWidget *c = w.client->findChild<QWidget *>(row.section(' ', 0, 0));
            const auto *marker = qobject_cast<const Marker *>(c);
            const auto *frame = qobject_cast<const QFrame *>(c);
            const QString caption =
                marker ? marker->colour().name()
                       : c->property(c->inherits("QGroupBox") ? "title" : "text").toString();
            const QPoint at = c->mapTo(w.client, QPoint());
            QStringList facts{QString::asprintf("%s %d,%d %dx%d", qPrintable(c->objectName()),
                                                at.x(), at.y(), c->width(), c->height()),
                              caption,
                              c->property("checked").toBool() ? "checked" : "",
                              c->isEnabled() ? "" : "off",
                              c->isVisible() ? "" : "hidden",
                              frame && frame->frameWidth() == 2 ? "sunken" : ""};
            facts.removeAll("");
            shown << facts.join(' ');
            QVERIFY(marker || c->fontMetrics().horizontalAdvance(caption) <= c->width());
        }
        for (const QAction *item : w.findChildren<QAction *>(QRegularExpression("^mnu")))
            if (item->isChecked())
                shown << item->objectName();
        QStringList focus;
        for (QWidget *c = w.picLevel; focus.size() < 9; c = c->nextInFocusChain())
            if (c->focusPolicy() & Qt::TabFocus)
                focus << c->objectName();
        QCOMPARE(shown << focus.join(' '), expected.split('|'));
    }

    // Each key runs exactly its item whichever control has the focus, also a panel field whose
    // platform key bindings give the key an editing meaning (on X11 Ctrl+E ends the line).
    void shortcutRunsExactlyItsItem_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("focus");
        for (const char *focus : {"picLevel", "txtPasscode", "txtObjectives", "txtTime"})
            for (qsizetype i = 1; i < Items.size(); i += 4)
                QTest::addRow("%s in %s", qPrintable(Items[i]), focus)
                    << Items[i] << QString(focus);
    }
    void shortcutRunsExactlyItsItem() {
        QFETCH(QString, key);
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
        QCOMPARE(triggered, QStringList{"mnu" + Items[Items.indexOf(key) - 1]});
    }

    // Scripts run in two windows, which must end alike, and then the first shows the state after
    // "->" (see state()). A run of letters is commands (see Items), through the menu in one
    // window and the toolbar in the other. P, O or T enters text into the passcode, objectives
    // or time field, "_" for a blank: "=" typed over the selected field, "+" typed at the caret,
    // "#" pasted from the field's menu, "*" with the middle button, "~" by an input method over
    // the selection, "<" as keys. "!" clicks a control. Past the second, levels differ in size,
    // time, types, contents and passcode.
    void scripts_data() {
        QTest::addColumn<QString>("script");
        for (const char *row :
             {"-<>wh -> 1 / 1 12x8 [None|] O0=0 T99=99 0/3NW |000",
              "+ -> 1 / 2 12x8 [None|] O0=0 T99=99 0/3NW |000",
              "+>> -> 2 / 2 12x8 [      |      ] O0=0 T99=99 0/3NW |000",
              "++++++++ -> 1 / 8 12x8 [None|] O0=0 T99=99 0/3NW |000",
              "++>>-<- -> 2 / 2 12x8 [      |      ] O0=0 T99=99 0/3NW |000",
              "++>-+> -> 3 / 3 14x10 [Mixed1|Mixed1] O0=0 T42=42 1/3HW |000",
              "WWWWWWWWWWWWWWWWWWWWWHHHHHHHHHHHHHHHHHHHHHHHHH -> 1 / 1 32x32 [None|] O0=0 "
              "T99=99 0/3NW |000",
              "WWWWwW -> 1 / 1 16x8 [None|] O0=0 T99=99 0/3NW |000",
              "+++>>>wh -> 4 / 4 19x11 [abc   |abc   ] O0=0 T43=43 0/4NS |000",
              "++++>>>>wWh -> 5 / 5 6x0 [été   |été   ] O0=0 T44=44 1/4HS |000",
              "+++++>>>>>WH -> 6 / 6 32x32 [zz zz |zz zz ] O0=0 T45=45 255/9HS |000",
              "+>N -> 1 / 1 12x8 [None|] O0=0 T99=99 0/3NW S|010",
              "O -> 1 / 1 12x8 [None|] O0=0 T99=99 0/3NW S|110",
              "SA -> 1 / 1 12x8 [None|] O0=0 T99=99 0/3NW |011",
              "T=255 O=256 -> 1 / 1 12x8 [None|] O256=25 T255=255 0/3NW V|000",
              "T=- O=x -> 1 / 1 12x8 [None|] Ox=0 T-=99 0/3NW CC|000",
              "T=-1 O=7q -> 1 / 1 12x8 [None|] O7q=7 T-1=99 0/3NW CVC|000",
              "T=_5 O=\b -> 1 / 1 12x8 [None|] O0=0 T 5=5 0/3NW C|000",
              "T=\b120 O=\b12345 -> 1 / 1 12x8 [None|] O123=123 T120=120 0/3NW |000",
              "T=0099 T+\b -> 1 / 1 12x8 [None|] O0=0 T00=0 0/3NW |000",
              "++>> P=abc -> 3 / 3 14x10 [abc|ABC   ] O0=0 T42=42 1/3HW |000",
              "++>> P=abcdefg P+\b -> 3 / 3 14x10 [abcd|ABCD  ] O0=0 T42=42 1/3HW |000",
              "++>> P#abcdefgh -> 3 / 3 14x10 [abcde|ABCDE ] O0=0 T42=42 1/3HW |000",
              "++>> P*abcdefgh -> 3 / 3 14x10 [abcde|ABCDE ] O0=0 T42=42 1/3HW |000",
              "++>> P~abcdefgh T~1234 -> 3 / 3 14x10 [abcde|ABCDE ] O0=0 T123=123 1/3HW |000",
              "++>> P+g P+\b P+g -> 3 / 3 14x10 [Mixed|MIXED ] O0=0 T42=42 1/3HW |000",
              "++>> !optNormal !optStrong -> 3 / 3 14x10 [Mixed1|Mixed1] O0=0 T42=42 0/4NS |000",
              "+> P=abc P<Home,Right,Del P<End,Left,Backspace -> 2 / 2 12x8 [c|C     ] O0=0 "
              "T99=99 0/3NW |000",
              "+> P=abc P<Ctrl+A,Ctrl+C,End,Ctrl+V -> 2 / 2 12x8 [abcab|ABCAB ] O0=0 T99=99 "
              "0/3NW |000",
              "+> P=abc P<Ctrl+A,Ctrl+X,Ctrl+V,Ctrl+V -> 2 / 2 12x8 [abcab|ABCAB ] O0=0 "
              "T99=99 0/3NW |000"})
            QTest::newRow(row) << QString(row);
    }
    void scripts() {
        QFETCH(QString, script);
        if (script.contains('*') && !QApplication::clipboard()->supportsSelection())
            QSKIP("the platform has no selection to paste with the middle button");
        // Levels 3 to 6 as a file may hold them, the header in file order: height, width,
        // objectives, time, put and take cells, their types, level and alien type, finish, start.
        const std::uint8_t headers[][16] = {
            {10, 14, 0, 42, 1, 0, 2, 0, 89, 0, 2, 3, 19, 0, 2, 0},
            {12, 20, 0, 43, 1, 0, 2, 0, 89, 0, 0, 0, 19, 0, 3, 0},
            {0, 5, 0, 44, 1, 0, 2, 0, 89, 0, 1, 4, 19, 0, 4, 0},
            {32, 32, 0, 45, 1, 0, 2, 0, 89, 0, 255, 9, 19, 0, 5, 0}};
        const QByteArray codes = "Mixed1abc   \xe9t\xe9   zz zz ";
        EditorWindow byMenu, byButton;
        for (Levelset *s : {&byMenu.levelset(), &byButton.levelset()}) {
            s->levels[0].tile(15, 0) = 12; // hidden until the level is 16 wide
            for (int i = 2; i < 6; ++i) {
                std::copy_n(headers[i - 2], L::HeaderSize, s->levels[i].header.begin());
                std::copy_n(codes.constData() + 6 * (i - 2), 6, s->passcodes[i - 1].begin());
                s->levels[i].tiles.fill(100 + i); // every cell, in and outside the level
            }
        }
        for (const QString &token : script.section(" -> ", 0, 0).split(' ')) {
            const bool click = token[0] == '!', field = token.size() > 1 &&
                                                        QString("POT").contains(token[0]) &&
                                                        QString("=+#*<~").contains(token[1]);
            for (EditorWindow *e : {&byMenu, &byButton})
                if (click)
                    QTest::mouseClick(e->window.client->findChild<QWidget *>(token.mid(1)),
                                      Qt::LeftButton);
                else if (field)
                    enter(*e, token);
            for (const QChar letter : click || field ? QString() : token) {
                const qsizetype n = Items.indexOf(letter);
                for (EditorWindow *e : {&byMenu, &byButton})
                    if (QString("wWhH").contains(letter)) // which repaint even at a limit
                        e->window.picLevel->drawLevel(L{}, e->window.picTileset->image());
                byMenu.item("mnu" + Items[n - 3])->trigger();
                QToolBar *bar = byButton.window.tbToolBar;
                QTest::mouseClick(bar->widgetForAction(bar->findChild<QAction *>(Items[n - 1])),
                                  Qt::LeftButton);
                QVERIFY2(!state(byMenu)[0].toString().endsWith("stale"), qPrintable(token));
            }
        }
        // Unknown keys and levels outside the set do nothing.
        for (const char *key : {"", "addlevel", "Add a Level", "About "})
            byMenu.window.tbToolBar_ButtonClick(key);
        for (std::int16_t level : {-1, 8})
            byMenu.window.loadLevel(level);
        QCOMPARE(state(byButton), state(byMenu));
        QCOMPARE(state(byMenu).first(), script.section(" -> ", 1));
    }

    // About, opened again and again from one window: built anew, centred on its owner, closed by
    // Escape or Enter as by OK. Its System Info starts the first known tool on the PATH of the
    // moment, in the order of the list, then of the folders; with none found, or one that will
    // not start, it says so, and About stays open. Rows of files as "folder/name" in one of two
    // folders, "*" after an executable one, then the tool started.
    void aboutAndSystemInfo() {
        const QByteArray path = qgetenv("PATH");
        EditorWindow e;
        QVERIFY(e.activate());
        int okPresses = 0;
        e.dialogs.onModal = [&](QDialog &dialog) {
            auto &about = dynamic_cast<frmAbout &>(dialog);
            about.show();
            QVERIFY(QTest::qWaitForWindowExposed(&about));
            QCOMPARE(
                QStringList({about.windowTitle(), about.lblTitle->text(), about.lblVersion->text(),
                             about.lblDescription->text(), about.lblDisclaimer->text()})
                    .join('|'),
                "About Kestrix: Levelset Editor|Kestrix: Levelset Editor|Version "
                "2.0|Levelset Editor for the game Kestrix, for the TI-83, TI-83+ and TI-86 "
                "calculators.|Disclaimer: The author of this program takes no responsibility "
                "for the effects of using this software. It has been tested and at the time "
                "of release no known bugs were apparent.");
            // Frame on frame, title bars included, where a window manager adds them.
            QTRY_VERIFY_WITH_TIMEOUT(centredOn(about.windowHandle()->frameGeometry(),
                                               e.window.windowHandle()->frameGeometry()),
                                     5000);
            QStringList places; // each control's place; the title in bold
            for (const QWidget *c : about.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
                places << QString::asprintf("%s %d,%d %dx%d%s", qPrintable(c->objectName()), c->x(),
                                            c->y(), c->width(), c->height(),
                                            c->font().bold() ? " bold" : "");
            QCOMPARE(places.join('|'),
                     "picIcon 16,16 32x32|lblTitle 72,16 352x22 bold|lblVersion 72,42 352x17|"
                     "lblDescription 72,68 352x34|lblAuthor 72,108 352x17|Line1 8,140 424x1|Line1 "
                     "8,141 424x1|lblDisclaimer 16,156 296x88|cmdOK 328,160 100x26|cmdSysInfo "
                     "328,196 100x26");
            QVERIFY(!(about.windowFlags() &
                      (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)));
            about.cmdSysInfo->click(); // which leaves OK the default button
            QVERIFY(about.isVisible());
            connect(about.cmdOK, &QPushButton::clicked, [&okPresses] { ++okPresses; });
            QTest::keyClick(&about, okPresses % 2 ? Qt::Key_Return : Qt::Key_Escape);
            QVERIFY(!about.isVisible() && about.result() == QDialog::Accepted);
        };
        const QStringList rows = QString("=|0/hardinfo=|0/lshw-gtk* 1/hardinfo*=1/hardinfo|"
                                         "0/hardinfo* 1/hardinfo*=0/hardinfo|0/hardinfo*junk=|"
                                         "0/gnome-system-monitor* 1/mate-system-monitor*=")
                                     .split('|');
        for (const QString &row : rows) {
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
            const qsizetype messages = e.dialogs.messages.size();
            e.window.mnuHelpAbout_Click();
            qputenv("PATH", path);
            const QString started = row.section('=', 1);
            if (!started.isEmpty())
                QTRY_VERIFY(QFile::exists(folders[started[0] == '1'].filePath(started.mid(2)) +
                                          ".started"));
            QCOMPARE(e.dialogs.messages.size(), messages + started.isEmpty());
        }
        QCOMPARE(okPresses, rows.size());
        for (const ScriptedDialogs::Message &m : e.dialogs.messages)
            QVERIFY(m.text == "System Information Is Unavailable At This Time" &&
                    m.title == ApplicationTitle && m.icon == QMessageBox::NoIcon);
        QCOMPARE(versionText("3.14.2") + versionText("4"), "Version 3.14Version 4.0");
    }

    // The splash, centred, is on the screen and painted before the main window is built, and
    // gone when the loaded main window shows. With the platform's dialogs, About is modal.
    void startUpShowsTheSplashFirstAndTheLoadedWindowLast() {
        QImage onScreen, painted;
        QString splashShows;
        QPointer<frmSplash> splash;
        struct ShowWatch : QObject {
            QPointer<frmSplash> &splash;
            QString seen; // the splash if still there, and the label, when the window shows
            explicit ShowWatch(QPointer<frmSplash> &s) : splash(s) {}
            bool eventFilter(QObject *window, QEvent *event) override {
                if (event->type() == QEvent::Show)
                    seen = (splash ? "splash " : "") +
                           static_cast<frmMain *>(window)->lblLevelNum->text();
                return false;
            }
        } watch(splash);
        const std::unique_ptr<frmMain> window = Main([&] {
            for (QWidget *top : QApplication::topLevelWidgets())
                splash = splash ? splash.get() : qobject_cast<frmSplash *>(top);
            const QRect place = splash->geometry();
            onScreen = splash->screen()
                           ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                           .toImage();
            painted = splash->grab().toImage();
            for (const QLabel *label :
                 {splash->lblProductName, splash->lblPlatform, splash->lblVersion})
                splashShows += label->text() + ' ' + QString::number(label->font().pointSizeF()) +
                               (label->font().bold() ? " bold|" : "|");
            if (centredOn(place, splash->screen()->availableGeometry()))
                splashShows += "centred";
            auto built = std::make_unique<frmMain>();
            built->installEventFilter(&watch);
            return built;
        });
        QCOMPARE(watch.seen, "Level: 1 / 1");
        QCOMPARE(splashShows, "Kestrix: Levelset Editor 18 bold|for Linux 13.5 bold|Version 2.0 12 "
                              "bold|centred");
        QVERIFY(!painted.isNull() && !splash && window->isVisible());
        QCOMPARE(onScreen.convertToFormat(QImage::Format_RGB32),
                 painted.convertToFormat(QImage::Format_RGB32));
        QCOMPARE(window->windowTitle(), "[Untitled] - Kestrix: Levelset Editor");
        QString modal = "none";
        QTimer::singleShot(0, [&] { // runs once the click waits for About to close
            if (auto *about = qobject_cast<frmAbout *>(QApplication::activeModalWidget()))
                modal = about->windowTitle(), about->cmdOK->click();
        });
        QToolBar *bar = window->tbToolBar;
        QTest::mouseClick(bar->widgetForAction(bar->findChild<QAction *>("About")), Qt::LeftButton);
        QVERIFY(modal == "About Kestrix: Levelset Editor" && !QApplication::activeModalWidget());
    }

    // The byte a number field's text gives, or which message: C the character one, V the value
    // one.
    void numberFieldReading() {
        for (const QString &row :
             QString("0=0|007=7|  42 =42|\t7\t=7|+12=12|-32768=V|32768=C|-32769=C|"
                     "99999999999999999999=C|=C|12a=C|1 2=C|- 1=C|1.5=C|&H10=C|\u0661=C")
                 .split('|')) {
            const ByteField field = ByteField::read(row.section('=', 0, 0));
            const QString reading =
                field.outcome ? QString("?CV")[field.outcome] : QString::number(field.value);
            QCOMPARE(row.section('=', 0, 0) + '=' + reading, row);
        }
    }

    // Where the registry names the tool: MSINFO's PATH value, else MSINFO32.EXE in the shared
    // tools folder if it is there. Every key opened is closed.
    void registryFindsTheTool() {
        for (const auto &[msinfo, folder, exists, found] :
             {std::array<const char *, 4>{"C:\\T\\msinfo32.exe", "C:\\S", "y",
                                          "C:\\T\\msinfo32.exe"},
              {"", "C:\\S", "y", "C:\\S\\MSINFO32.EXE"},
              {"", "C:\\S", "", ""},
              {"", "", "y", ""}}) {
            FakeRegistry registry;
            auto &values = registry.keys["SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"];
            if (*msinfo)
                values["PATH"] = msinfo;
            if (*folder)
                registry.keys["SOFTWARE\\Microsoft\\Shared Tools Location"]["MSINFO"] = folder;
            const auto fileExists = [&](const QString &path) {
                return *exists && path == QString(folder) + "\\MSINFO32.EXE";
            };
            QCOMPARE(RegistrySystemInfo(registry, fileExists, startDetached).toolPath(), found);
            QCOMPARE(registry.open, 0);
        }
    }
};

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
