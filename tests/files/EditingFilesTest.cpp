// Editing and the file commands on a real window, and the rules beneath them.

#include "levelset/LevelsetFile.h"
#include "support/EditorWindow.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "view/CellFromPixel.h"
#include "view/SetFloor.h"
#include "view/drawLevel.h"

#include <QFileDialog>
#include <QtTest>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using B = QMessageBox;

QPoint pixel(const QString &xy) {
    return {xy.section(',', 0, 0).toInt(), xy.section(',', 1).toInt()};
}

// Levels of 12 x 8 but the third, each with its number in the first cell.
Levelset sample(int levelCount) {
    Levelset levelset;
    levelset.levelCount = std::uint8_t(levelCount);
    levelset.levels[2].header[LevelRecord::Height] = 16;
    for (int i = 0; i < 5; ++i)
        levelset.levels[i].tile(0, 0) = std::uint8_t(i + 1);
    return levelset;
}

// Level 5 of five, named zkstlabc.kst but not on disk yet, beside a folder of files; driven by
// scripts of steps, each a letter and its argument. At pixel x,y of the level view L ^ R M press
// the left button (^ with Shift), the right or the middle one and hold it; > moves, h hovers, u
// releases. tN selects tile N; PN QN click palette id N, left or right; pNAME has the next popup
// choose mnuNAME ("p" none); mN chooses mode N; vNAME rNAME trigger mnuViewNAME mnuToolsNAME;
// fN fills the level with tile N, TN makes it of type N, wN N x N; + adds a level and shows it.
// y n c answer the prompt, oNAME sNAME a file dialog ("o" "s" cancel); N O S A X are New, Open,
// Save, Save As, close; U makes the levelset untitled, e edits it, H puts 11 alien holes on
// level 3; from F on files may grow to 100 bytes, from C the folder takes no new file; "|"
// marks the levelset and forgets what was asked.
struct Session : EditorWindow {
    QTemporaryDir folder;
    Levelset marked;
    std::optional<FileSizeLimit> limit;
    std::map<QChar, std::function<void(const QString &)>> steps;

    QString at(const QString &name) const { return name.isEmpty() ? name : folder.filePath(name); }
    QString local(QString text) const { return text.remove(folder.path() + '/'); }

    Session() {
        for (const char *name : {"Levels", "zkstldir.kst", "real"})
            QDir(folder.path()).mkdir(name);
        for (auto [name, count] :
             {std::pair{"ZKSTLxyz.KST", 3}, {"zkstlxyz.kst", 2}, {"real/zkstlabc.kst", 1}})
            putFile(at(name), writeLevelset(sample(count), at(name)));
        putFile(at("zkstlcut.kst"), writeLevelset(sample(1), "").left(100));
        putFile(at("plain"), "not a folder");
        ::chmod(QFile::encodeName(at("real/zkstlabc.kst")), 0640);
        QFile::link("real/zkstlabc.kst", at("zkstllnk.kst"));
        marked = levelset() = sample(5);
        window.drawLevel(levelset().currentLevel = 4);
        window.updateLevelLabel();
        window.setWindowTitle(windowTitle(levelset().levelsetPath = at("zkstlabc.kst")));
        steps = {{'L', [&](auto a) { press(Qt::LeftButton, pixel(a)); }},
                 {'^', [&](auto a) { press(Qt::LeftButton, pixel(a), Qt::ShiftModifier); }},
                 {'R', [&](auto a) { press(Qt::RightButton, pixel(a)); }},
                 {'M', [&](auto a) { press(Qt::MiddleButton, pixel(a)); }},
                 {'>', [&](auto a) { moveTo(pixel(a)); }},
                 {'h', [&](auto a) { hover(pixel(a)); }},
                 {'u', [&](auto) { releaseAll(); }},
                 {'t', [&](auto a) { window.selectedTile = std::uint8_t(a.toInt()); }},
                 {'P', [&](auto a) { clickPalette(Qt::LeftButton, a.toInt()); }},
                 {'Q', [&](auto a) { clickPalette(Qt::RightButton, a.toInt()); }},
                 {'p', [&](auto a) { dialogs.popupAnswers.enqueue(a.isEmpty() ? a : "mnu" + a); }},
                 {'m', [&](auto a) { window.mnuToolsMouseChoice.at(a.toInt())->trigger(); }},
                 {'v', [&](auto a) { item("mnuView" + a)->trigger(); }},
                 {'w', [&](auto a) { std::fill_n(level().header.begin(), 2, a.toInt()); }},
                 {'+', [&](auto) { window.mnuLevelAdd_Click(), window.mnuLevelNext_Click(); }},
                 {'r', [&](auto a) { item("mnuTools" + a)->trigger(); }},
                 {'f', [&](auto a) { level().tiles.fill(std::uint8_t(a.toInt())); }},
                 {'T', [&](auto a) { level().header[LevelRecord::LevelType] = a.toInt(); }},
                 {'y', [&](auto) { answer({B::Yes}); }},
                 {'n', [&](auto) { answer({B::No}); }},
                 {'c', [&](auto) { answer({B::Cancel}); }},
                 {'o', [&](auto a) { dialogs.openAnswers.enqueue(at(a)); }},
                 {'s', [&](auto a) { dialogs.saveAnswers.enqueue(at(a)); }},
                 {'N', [&](auto) { window.mnuFileNew_Click(); }},
                 {'O', [&](auto) { window.mnuFileOpen_Click(); }},
                 {'S', [&](auto) { window.mnuFileSave_Click(); }},
                 {'A', [&](auto) { window.mnuFileSaveAs_Click(); }},
                 {'X', [&](auto) { window.close(); }},
                 {'U', [&](auto) { levelset().levelsetPath = UntitledPath; }},
                 {'e', [&](auto) { ++levelset().levels[0].tile(3, 1); }},
                 {'H', [&](auto) { std::fill_n(levelset().levels[2].tiles.begin(), 11, 69); }},
                 {'F', [&](auto) { limit.emplace(100); }},
                 {'C', [&](auto) { ::chmod(QFile::encodeName(folder.path()), 0500); }},
                 {'|', [&](auto) { marked = levelset(), dialogs = ScriptedDialogs(); }}};
    }
    ~Session() { ::chmod(QFile::encodeName(folder.path()), 0700); }

    // The current level's cells x,y and header bytes hN, the markers' cells (in brackets while
    // hidden), the items checked, label, path (and title unless it names it), status; what was
    // asked: ? the prompt, ! an invalid name, # holes and guards, O and S the dialogs (in the
    // program's folder, for levelsets); each file: a link by its target, else its tag, "~" and a
    // hash unless it holds the marked levelset, and its mode unless 644.
    QMap<QString, QString> state() {
        const QString path = levelset().levelsetPath;
        QMap<QString, QString> items{
            {"label", label().remove("Level: ")},
            {"path", local(path) + (title() == windowTitle(path) ? "" : " title " + title())},
            {"popups", QString::number(dialogs.popups)},
            {"status", '\'' + local(status()) + '\''},
            {"window", window.isVisible() ? "open" : "closed"}};
        for (int i = 0; i < 1024; ++i)
            items[QString("%1,%2").arg(i / 32).arg(i % 32)] = QString::number(level().tiles[i]);
        for (int i = 0; i < LevelRecord::HeaderSize; ++i)
            items['h' + QString::number(i)] = QString::number(level().header[i]);
        QImage drawn;
        ::drawLevel(level(), drawn);
        items["view"] = window.picLevel->image() == drawn ? "shown" : "stale";
        for (const Marker *m : window.findChildren<Marker *>()) {
            const QString cell = QString("%1,%2").arg(m->x() / 16).arg(m->y() / 16);
            items[m->objectName().remove("shp").replace("levelC", "c").remove("Cursor")] =
                m->isVisibleTo(&window) ? cell : '(' + cell + ')';
        }
        for (const QAction *a : window.mnuView->actions() + window.mnuToolsMouse->actions())
            if (a->isChecked())
                items["checked"] +=
                    a->objectName().section("mnuView", -1).section("Choice", -1) + ',';
        const auto key = [](const ScriptedDialogs::Message &m) {
            return m.text + '|' + m.title + '|' + QString::number(m.icon) + '|' +
                   QString::number(m.buttons);
        };
        const QStringList known{key({"Save current Levelset?", ApplicationTitle, B::NoIcon,
                                     B::Yes | B::No | B::Cancel}),
                                key({"Invalid file name! Must be of the format: zkstl???.kst, "
                                     "where ??? is the Levelset name.",
                                     ApplicationTitle, B::Warning, B::Ok}),
                                key({"Either too many Alien Holes or Security Guards on Level 3",
                                     "Error!", B::Critical, B::Ok})};
        for (const ScriptedDialogs::Message &m : dialogs.messages)
            items["asked"] +=
                known.contains(key(m)) ? QString("?!#")[known.indexOf(key(m))] : '<' + key(m) + '>';
        const QString dialog =
            "|KST Levelsets (zkstl*.kst)|zkstl*.kst|" + qApp->applicationDirPath();
        for (const QString &question : dialogs.fileQuestions)
            items["asked"] += question == "Open" + dialog      ? "O"
                              : question == "Save As" + dialog ? "S"
                                                               : '<' + question + '>';
        QDirIterator it(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QFileInfo file(it.next());
            const QByteArray bytes = fileBytes(file.filePath());
            struct stat st {};
            ::stat(QFile::encodeName(file.filePath()), &st);
            QString &item = items[local(file.filePath())] = bytes.left(7);
            if (bytes.mid(7) != writeLevelset(marked, "").mid(7))
                item += '~' + QString::number(qHash(bytes));
            if ((st.st_mode & 0777) != 0644)
                item += ' ' + QString::number(st.st_mode & 0777, 8);
            if (file.isSymLink())
                item = "->" + local(file.symLinkTarget());
        }
        return items;
    }

    // The items of the state a script changed, as key=value; the step "|" starts anew.
    QString run(const QString &script) {
        QMap<QString, QString> before = state();
        for (const QString &step : script.split(' ', Qt::SkipEmptyParts)) {
            steps.at(step[0])(step.mid(1));
            if (step == "|")
                before = state();
        }
        QStringList changed;
        for (auto [key, value] : state().asKeyValueRange())
            if (before.value(key) != value)
                changed << key + '=' + value;
        return changed.join(' ');
    }
};

// One row per case: its script, " => ", and what the script changes.
void addRows(std::initializer_list<const char *> rows) {
    QTest::addColumn<QString>("changes");
    for (const QString row : rows)
        QTest::newRow(qPrintable(row.section(" => ", 0, 0))) << row.section(" => ", 1);
}

} // namespace

class EditingFilesTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QApplication::setQuitOnLastWindowClosed(false);
        ::umask(022);
    }

    // Whole pixels, halves to even, divided truncating toward zero (the scripts paint the edges).
    void cellFromPixel() {
        const std::pair<double, int> cases[] = {{-32, -2},        {14.5, 0},     {15.5, 1},
                                                {-15.5, -1},      {1e12, 32767}, {-1e12, -32767},
                                                {std::nan(""), 0}};
        for (auto [pixel, cell] : cases)
            QCOMPARE(int(::cellFromPixel(pixel)), cell);
    }

    // Each of the 2^24 numbers a generator gives: a mode's tiles come in their shares of twelve
    // and no other tile comes out.
    void randomTiles() {
        const std::tuple<int, int, int, int, int> families[] = {
            {1, 89, 97, 4, 1}, {2, 10, 13, 3, 3}, {3, 7, 9, 4, 4}, {0, 255, 255, 12, 0}};
        for (auto [mode, first, last, firstShare, share] : families) {
            std::array<int, 256> count{}, twelfths{};
            for (std::uint32_t k = 0; k < (1u << 24); ++k)
                ++count[RandomTiles::tileFor(mode, static_cast<float>(k) * 0x1p-24f)];
            std::fill(&twelfths[first], &twelfths[last] + 1, share);
            twelfths[first] = firstShare;
            for (int tile = 0; tile < 256; ++tile)
                QVERIFY(std::abs(count[tile] - (1 << 24) / 12.0 * twelfths[tile]) <= 1);
        }
    }

    // Each cell written in a random mode takes the next tile of a generator in its start state:
    // refused cells draw nothing, the right button opens no popup, and the solid wall takes
    // about a third of the walls.
    void randomModesDrawOncePerCellWritten() {
        for (int mode : {1, 2, 3}) {
            Session w;
            QString s = QString("w32 m%1 pLevelPopUpStart R328,-40 >-40,8").arg(mode);
            for (int i = 0; i < 1024; ++i)
                s += QString::asprintf(i % 32 ? " >%d,%d" : " u R%d,%d", i % 32 * 16 + 8,
                                       i / 32 * 16 + 8);
            w.run(s);
            RandomTiles fresh;
            for (int i = 0; i < 1024; ++i)
                QCOMPARE(w.tile(i % 32, i / 32), fresh.draw(mode));
            const auto &tiles = w.level().tiles;
            QCOMPARE(w.dialogs.popups, 0);
            QVERIFY(mode != 1 || std::abs(std::count(tiles.begin(), tiles.end(), 89) - 341) < 60);
        }
    }

    void scripts_data() {
        addRows({
            // Painting: once per cell entered, no line between positions, again after leaving,
            // and past the view's edges while a button is held.
            "t20 ^8,40 t21 >24,40 t99 >29,35 t22 >40,40 t99 >45,35 => 0,2=20 1,2=21 2,2=22 "
            "cursor=2,2 status='X:  2, Y:  2'",
            "t89 L8,8 >104,88 => 0,0=89 6,5=89 cursor=6,5 status='X:  6, Y:  5'",
            "t7 L168,120 >184,120 t8 >200,120 >184,120 => 10,7=7 11,7=8 cursor=11,7 status='X:  "
            "11, Y:  7'",
            "w32 t63 L88,88 t1 >-15,40 t2 >-16,40 t3 >40,-15 t4 >40,-16 t5 >511,40 t6 >512,40 => "
            "0,2=1 2,0=3 31,2=5 5,5=63 cursor=31,2 h0=32 h1=32 status='Out of level'",
            // Hovering: the first move onto (0, 0) is no change of cell; a press moves no cursor.
            "h8,8 => ",
            "t89 L88,56 u h8,8 h88,56 => 5,3=89 cursor=5,3 status='X: 5, Y: 3, Tile: 89'",
            "h184,120 h328,120 L56,56 u h57,57 => cursor=11,7 status='X:  3, Y:  3'",
            // After a change of level the cursor comes back only in another cell than before.
            "h88,88 + h91,91 => 0,0=0 label=6 / 6 status='X: 5, Y: 5, Tile: 0'",
            "h88,88 + h104,88 => 0,0=0 cursor=6,5 label=6 / 6 status='X: 6, Y: 5, Tile: 0'",
            // Both buttons or the middle one only move the cursor; outside the level nothing
            // is written or opened.
            "m1 t60 L328,328 R328,328 >104,72 >120,72 u M328,328 >136,72 >152,72 => "
            "checked=Start,Finish,1, cursor=9,4 status='Out of level'",
            "t90 L200,8 u L8,136 u pLevelPopUpStart R200,56 u m1 R200,56 => "
            "checked=Start,Finish,1, status='Out of level'",
            // The level popup opens once per press and moves its marker, shown or hidden.
            "p R152,104 u pLevelPopUpStart R152,104 >168,104 >184,104 => Start=9,6 cursor=11,6 "
            "h14=9 h15=6 popups=2",
            "pLevelPopUpFinish R152,104 u pLevelPopUpPut R168,104 u pLevelPopUpTake R184,104 => "
            "Finish=9,6 Put=(10,6) Take=(11,6) h12=9 h13=6 h4=10 h5=6 h6=11 h7=6 popups=3",
            // The palette: ids below 178 are tiles to paint with or to make a block type.
            "P177 L8,8 P178 pTilePopUpPut Q5 => 0,0=177 PutType=(5,0) h8=5 popups=1 status='Tile: "
            "177' tile=1,22",
            "pTilePopUpTake Q89 pTilePopUpPut Q177 p Q50 pTilePopUpPut Q178 => PutType=(1,22) "
            "TakeType=(1,11) h8=177 h9=89 popups=3 status='Tile: 0'",
            // Marks are set by the items' handlers and outlive a change of level or levelset.
            "vStart pLevelPopUpStart R120,120 + => 0,0=0 Start=(0,0) checked=Finish,0, label=6 / 6 "
            "popups=1",
            "vFinish vBlockPut n N => 0,0=0 Finish=(11,7) Put=1,0 PutType=1,11 asked=? "
            "checked=Start,BlockPut,0, label=1 / 1 path=Untitled",
            "m2 m2 => checked=Start,Finish,2,",
            // The reports count the current level's objects, in message boxes of their own.
            "+ t60 L8,8 t59 >8,24 >8,40 t58 >24,40 >24,24 >24,8 t69 >56,56 t70 >72,72 t168 "
            ">120,120 t169 >120,104 u rDoors rEnemies rPickups => 0,0=60 0,1=59 0,2=59 1,0=58 "
            "1,1=58 1,2=58 3,3=69 4,4=70 7,6=169 7,7=168 asked=<Normal Doors: 2\rSecurity Doors: "
            "0\rWhite Doors: 0\rCheckered Doors: 0\rBlack Doors: 0|Doors|1|1024><Holes: 2\rWorms: "
            "0\rFace Huggers: 0\rNormal Aliens: 0\rStrong Aliens: 0\rSecurity Guards: "
            "0|Enemies|1|1024><Credits: 120\rAmmo: 60\rKey Passes: 0\rWhite Keys: 0\rCheckered "
            "Keys: 0\rBlack Keys: 0\rFirst Aids: 0\rInvincibilities: 0\rExtra Lives: "
            "0|Pick-ups|1|1024> cursor=7,6 label=6 / 6 status='X:  7, Y:  6'",
            "m3 n N => 0,0=0 asked=? checked=Start,Finish,3, label=1 / 1 path=Untitled",
            // Set Floor turns the other type's floor into this type's in all cells, also outside
            // the level, and shows the result; a second run changes nothing.
            "f89 w32 t1 L328,328 u L8,8 u w12 | rSetFloor rSetFloor => 0,0=0 20,20=0 view=shown",
            "f89 w32 t0 L328,328 u L8,8 u w12 T1 | rSetFloor rSetFloor => 0,0=1 20,20=1 view=shown",
            "f1 T2 | rSetFloor => view=shown",
            // The prompt comes first; Cancel there changes nothing. Yes saves a named levelset at
            // once and asks a name for an untitled one; New resets and closing goes on anyway.
            "c N c oZKSTLxyz.KST O c X => asked=???",
            "n o O => asked=?O",
            "n N => 0,0=0 asked=? label=1 / 1 path=Untitled",
            "U | y s N => 0,0=0 asked=?S label=1 / 1 path=Untitled",
            "n X => asked=? window=closed",
            // Open takes any name as it is and shows level 1; a file that is not there names
            // the levelset for the next save.
            "n oZKSTLxyz.KST O => 0,0=1 asked=?O label=1 / 3 path=ZKSTLxyz.KST status='Opened "
            "ZKSTLxyz.KST'",
            "n ozkstlcut.kst O => 0,0=1 asked=?O label=1 / 1 path=zkstlcut.kst status='Opened "
            "zkstlcut.kst: the file ended early'",
            "n ozkstlnew.kst O => 0,0=0 asked=?O label=1 / 1 path=zkstlnew.kst status='Could not "
            "open zkstlnew.kst'",
            "n ozkstlnew.kst O | S => status='Saved zkstlnew.kst' zkstlnew.kst=KST0NEW",
            // Save As lower-cases a valid file name, and asks again after an invalid one.
            "n N e | sLevels/ZKSTLAbc.KST A => Levels/zkstlabc.kst=KST0ABC asked=S "
            "path=Levels/zkstlabc.kst status='Saved Levels/zkstlabc.kst'",
            "szkstlab.kst szkstlabcd.kst sabc.kst szkstldir.kst/x.kst s A => asked=!!!!SSSSS",
            "sabc.kst szkstlXY1.kst A => asked=!SS path=zkstlxy1.kst status='Saved zkstlxy1.kst' "
            "zkstlxy1.kst=KST0XY1",
            "U | s S => asked=S",
            // Save rewrites the file the levelset came from, whatever its name.
            "e | S => status='Saved zkstlabc.kst' zkstlabc.kst=KST0ABC",
            "n oZKSTLxyz.KST O e | S => ZKSTLxyz.KST=KST0XYZ status='Saved ZKSTLxyz.KST'",
            "n ozkstllnk.kst O e | S => real/zkstlabc.kst=KST0LNK 640 status='Saved zkstllnk.kst'",
            "n ozkstlxyz.kst O e | C S => status='Saved zkstlxyz.kst in place: its folder takes no "
            "new file' zkstlxyz.kst=KST0XYZ",
            // Too many alien holes refuse every save; New and closing go on.
            "S H | S szkstlnew.kst A => asked=##S",
            "S H | y N => 0,0=0 asked=?# label=1 / 1 path=Untitled",
            "S H | y X => asked=?# window=closed",
            // A failed write leaves what was on disk, and says why.
            "n oLevels/no/zkstlabc.kst O e | S => status='Could not write Levels/no/zkstlabc.kst: "
            "No such file or directory'",
            "n oplain/zkstlabc.kst O e | S => status='Could not write plain/zkstlabc.kst: Not a "
            "directory'",
            "n ozkstldir.kst O e | S => status='Could not write zkstldir.kst: Is a directory'",
            "n oZKSTLxyz.KST O e | F S => status='Could not write ZKSTLxyz.KST: File too large'",
        });
    }
    void scripts() {
        QFETCH(QString, changes);
        // Root writes anywhere, so a case about permissions runs as nobody.
        const bool asNobody = QString(QTest::currentDataTag()).contains(" C ") && ::geteuid() == 0;
        QVERIFY(!asNobody || (::setegid(65534) == 0 && ::seteuid(65534) == 0));
        const auto back =
            qScopeGuard([=] { QVERIFY(!asNobody || (::seteuid(0) == 0 && ::setegid(0) == 0)); });
        Session s;
        QCOMPARE(s.run(QTest::currentDataTag()), changes);
    }

    // The platform's own save dialog, answered as a user would: it offers the levelset filter
    // in the program's folder and replaces an existing file without a question.
    void platformSaveDialogReplacesWithoutAsking() {
        QTemporaryDir folder;
        const QString path = folder.filePath("zkstlabc.kst");
        putFile(path, "an older levelset");
        frmMain window;
        window.Form_Load();
        window.show();
        QStringList seen;
        QTimer answerer; // answers the first modal window, closes any other
        connect(&answerer, &QTimer::timeout, this, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            auto *dialog = seen.isEmpty() ? qobject_cast<QFileDialog *>(modal) : nullptr;
            if (modal)
                seen << modal->windowTitle();
            if (dialog) {
                seen << dialog->nameFilters() << dialog->directory().absolutePath();
                // Typed as a user types it: selectFile() would race the folder's loading.
                dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
                static_cast<QDialog *>(dialog)->accept(); // as the Save button does
            } else if (modal) {
                modal->close();
            }
        });
        answerer.start(20);
        window.mnuFileSaveAs_Click();
        QCOMPARE(seen, QStringList({"Save As", "KST Levelsets (zkstl*.kst)",
                                    QDir(QCoreApplication::applicationDirPath()).absolutePath()}));
        QCOMPARE(fileBytes(path), writeLevelset(window.levelset, path));
        QCOMPARE(window.windowTitle(), windowTitle(path));
    }
};

QTEST_MAIN(EditingFilesTest)
#include "EditingFilesTest.moc"
