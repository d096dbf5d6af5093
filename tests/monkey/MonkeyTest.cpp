#include "levels/PropertiesPanel.h"
#include "levelset/LevelsetFile.h"
#include "shell/frmMain.h"
#include "support/ScriptedDialogs.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <random>

// A seeded random walk over a real main window, every question answered at random, checking after
// every action the rules that always hold and every file of its folder. KST_MONKEY_ACTIONS sets
// the length (past five minutes, with QTEST_FUNCTION_TIMEOUT); KST_MONKEY_SEED replays a seed.
struct Monkey {
    static constexpr int Cell = 16;
    std::mt19937 random;
    ScriptedDialogs dialogs;
    QTemporaryDir dir;
    std::unique_ptr<frmMain> window;
    QMap<QString, QByteArray> files; // what each file must hold
    QStringList recent, saveNames;
    QString fileCommand; // the file command just given, if any
    int actions = 0;

    // The reader's test files, folders, a capital name with a lower-case namesake, a plain file on
    // the way to a name, and a name too long for the save's temporary neighbour.
    explicit Monkey(std::uint32_t seed) : random(seed) {
        const QString r = dir.path() + u'/';
        for (const char *folder : {"sub", "Upper", "zkstlold"})
            QDir(r).mkdir(folder);
        for (const QFileInfo &file : QDir(KST_SEED_DIR).entryInfoList(QDir::Files))
            for (const QString &copy : {r + file.fileName(), r + "sub/" + file.fileName()})
                QFile::copy(file.filePath(), copy);
        for (const QString &copy : {r + "ZKSTLMix.KST", r + "zkstlmix.kst", r + "plain.kst"})
            QFile::copy(r + "foreign-header.kst", copy);
        QFile::copy(r + "full.kst", r + QString(243, u'l') + "zkstllng.kst");
        files = scan();
        openWindow();
    }
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    QString choose(QString among) { return among.split(u'|')[pick(int(among.count(u'|')) + 1)]; }
    void openWindow() {
        window = std::make_unique<frmMain>(&dialogs);
        window->Form_Load();
        window->show();
        window->activateWindow();
        std::ignore = QTest::qWaitForWindowActive(window.get(), 1000); // else no shortcut keys
    }

    // One action and its checks: "" when all hold, else what broke. Few save names, so that saves
    // meet earlier files.
    QString step() {
        const Levelset before = window->levelset;
        const QString r = dir.path() + u'/';
        const auto answer =
            std::array{QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel}[pick(3)];
        dialogs = {};
        dialogs.onModal = [](QDialog &dialog) { dialog.reject(); };
        dialogs.messageAnswers << answer;
        saveNames.clear();
        for (int i = 0; i < 3; ++i) // the last, a folder alone, is a cancel
            saveNames
                << QString(
                       r + choose("|||sub/|Upper/|zkstlold/|missing/|plain.kst/") +
                       choose(
                           "zkstlaB1.kst|ZKSTLab1.KST|zkstl_ \u00e9.kst|zkstlB_1.Kst|zkstlab.kst|"
                           "zkstlabcd.kst|abc.kst|zkstlab.txt|"))
                       .remove(QRegularExpression(".*/$"));
        dialogs.saveAnswers << saveNames;
        const QString any = std::next(files.cbegin(), pick(int(files.size()))).key();
        const QString opened =
            pick(2) ? any : r + choose("missing/zkstlxyz.kst|sub|zkstlnew.kst|ZKSTLMIX.kst");
        dialogs.openAnswers << opened;
        for (int i = 0; i < 3; ++i)
            dialogs.popupAnswers << choose(
                "|mnuLevelPopUpStart|mnuLevelPopUpFinish|mnuLevelPopUpPut|"
                "mnuLevelPopUpTake|mnuTilePopUpPut|mnuTilePopUpTake");
        fileCommand.clear();
        recent << QString::number(++actions) + ':';
        const int kind = pick(100);
        const QString fault = kind < 30 ? command() : kind < 82 ? mouse() : panelInput();
        recent = recent.mid(recent.size() > 12);
        if (!fault.isEmpty() || fileCommand.isEmpty())
            return fault.isEmpty() ? brokenRule() : fault;

        // A file command: the save prompt unless saving, the window closed unless cancelled; a
        // save writes to the levelset's path or the name given, lower-cased, and says how it went.
        const frmMain &w = *window;
        const QString path = w.levelset.levelsetPath, status = w.statusText->text();
        QStringList messages;
        for (const ScriptedDialogs::Message &m : dialogs.messages)
            messages << m.text;
        const QStringList names =
            (saveNames << "").mid(0, dialogs.fileQuestions.filter("Save As|").size());
        const bool save = fileCommand.contains("Save"),
                   prompted = messages.value(0) == "Save current Levelset?";
        const bool closes = !save && !fileCommand.contains(QRegularExpression("New|Open")) &&
                            answer != QMessageBox::Cancel;
        recent.last() += " [" + names.join(u',') +
                         (dialogs.fileQuestions.filter("Open|").isEmpty() ? "" : ' ' + opened) +
                         ']';
        static const QRegularExpression rule("/zkstl[^/]{3}\\.kst$",
                                             QRegularExpression::CaseInsensitiveOption);
        QStringList targets = {before.levelsetPath};
        for (const QString &name : names)
            if (rule.match(name).hasMatch())
                targets << QFileInfo(name).path() + '/' + QFileInfo(name).fileName().toLower();
        if (prompted == save || w.isVisible() == closes)
            return QString::asprintf("prompted %d, window shown %d", prompted, w.isVisible());
        if (const QString fault = checkFolder(before, targets); !fault.isEmpty())
            return fault;
        if (save && messages.filter("Security Guards").isEmpty() &&
            !names.value(names.size() - 1, path).isEmpty() &&
            (status.startsWith("Saved " + path)
                 ? files.value(path) != writeLevelset(w.levelset, path)
                 : !status.startsWith("Could not write " + path)))
            return "status " + status;
        if (closes)
            openWindow();
        return brokenRule();
    }

    // Add and Next are made more common, so that levelsets grow between fresh starts.
    QString command() {
        frmMain &w = *window;
        QList<QAction *> items = w.findChildren<QAction *>();
        items.removeIf([](const QAction *a) {
            return a->objectName().isEmpty() || a->isSeparator() || a->menu();
        });
        QAction *item = pick(5)   ? items[pick(int(items.size()))]
                        : pick(2) ? w.mnuLevelAdd
                                  : w.mnuLevelNext;
        const QString name = item->objectName();
        const QKeySequence key = item->shortcut();
        if (name.contains(QRegularExpression("^(mnuFile|New$|Open$|Save$)")))
            fileCommand = name;
        recent.last() += name + ' ' + key.toString();
        if (QWidget *button = w.tbToolBar->widgetForAction(item))
            QTest::mouseClick(button, Qt::LeftButton);
        else if (!key.isEmpty() && pick(2) && QApplication::activeWindow() == &w)
            QTest::keyClick(&w, key[0].key(), key[0].keyboardModifiers()); // wherever the focus is
        else
            item->trigger();
        if (name.startsWith("mnuToolsMouseChoice") && w.rightButtonMode != name.back().digitValue())
            return "right-button mode " + QString::number(w.rightButtonMode);
        return {};
    }

    // One button or two held (left, right or middle), or none; the pointer near the last point or
    // in or beside the level, seldom far off, never at (0, 0), which QTest takes for the centre.
    QString mouse() {
        frmMain &w = *window;
        const bool onLevel = pick(10) < 7;
        QWidget *target = onLevel ? static_cast<QWidget *>(w.picLevel) : w.picTiles;
        const LevelRecord &level = w.levelset.current();
        const Qt::KeyboardModifiers keys = pick(3) ? Qt::NoModifier : Qt::ShiftModifier;
        const auto button = [&] { return Qt::MouseButton(1 << pick(5) / 2); };
        const auto point = [&](QPoint p) {
            const int range = pick(6) ? 24 : 300;
            p = pick(3) ? p + QPoint(pick(2 * range) - range, pick(2 * range) - range)
                        : QPoint(pick(16 * level.width() + 40), pick(16 * level.height() + 40)) -
                              QPoint(20, 20);
            return p.isNull() ? QPoint(0, 1) : p;
        };
        QPoint at =
            onLevel ? point(QPoint(pick(512), pick(512))) : QPoint(pick(128), 1 + pick(511));
        QList<Qt::MouseButton> held;
        recent.last() += target->objectName() + ':';
        const auto press = [&](Qt::MouseButton b) {
            recent.last() +=
                QString::asprintf(" press %d at %d,%d", held.emplace_back(b), at.x(), at.y());
            QTest::mousePress(target, b, keys, at);
        };
        if (!onLevel || pick(5))
            press(button());
        for (int moves = onLevel ? pick(8) : 0; moves > 0; --moves) {
            QTest::mouseMove(target, at = point(at));
            recent.last() += QString::asprintf(" to %d,%d", at.x(), at.y());
            if (const auto second = button(); held.size() == 1 && !pick(10) && second != held[0])
                press(second);
        }
        while (!held.isEmpty())
            QTest::mouseRelease(target, held.takeLast(), keys, at);
        return {};
    }

    QString panelInput() {
        const PropertiesPanel &p = *window->panel;
        if (const int option = pick(9); option < 4) {
            QRadioButton *button =
                std::array{p.optNormal, p.optHatchery, p.optWeak, p.optStrong}[option];
            QTest::mouseClick(button, Qt::LeftButton);
            recent.last() += button->objectName();
            return button->isChecked() ? QString() : "not chosen";
        }
        QLineEdit *field = std::array{p.txtPasscode, p.txtObjectives, p.txtTime}[pick(3)];
        const QString keys = field == p.txtPasscode ? "abcXYZ09 -!" : "0123456789012345 -+x";
        const int erase = pick(9);
        QTest::keyClick(field, Qt::Key_End);
        if (erase == 8) // select all, for one backspace to erase
            QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        for (int i = 0; i < erase % 8 + erase / 8; ++i)
            QTest::keyClick(field, Qt::Key_Backspace);
        for (int length = pick(5); length > 0; --length)
            QTest::keyClick(field, keys[pick(int(keys.size()))].toLatin1());
        recent.last() += field->objectName() + " shows " + field->text();
        return {};
    }

    QMap<QString, QByteArray> scan() const {
        QMap<QString, QByteArray> found;
        for (QDirIterator it(dir.path(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            if (QFile file(it.next()); file.open(QIODevice::ReadOnly))
                found[file.fileName()] = file.readAll();
        return found;
    }
    // Every file as last seen, or saved by a file command to a path it may have chosen, holding
    // the levelset as it was before.
    QString checkFolder(const Levelset &before, const QStringList &targets) {
        const QMap<QString, QByteArray> found = scan();
        int changed = 0;
        for (const QString &path : files.keys() + found.keys()) {
            if (files.contains(path) && found.value(path, "-") == files[path])
                continue;
            if (!found.contains(path))
                return path + " has gone";
            if (!targets.contains(path))
                return (files.contains(path) ? "changed file " : "unexpected file ") + path;
            if (found[path] != writeLevelset(before, path) || ++changed > 1)
                return path + " holds neither its last save nor the levelset";
            files[path] = found[path];
        }
        return {};
    }

    QString brokenRule() {
        const frmMain &w = *window;
        const Levelset &levelset = w.levelset;
        const int current = levelset.currentLevel, count = levelset.levelCount;
        if (count < 1 || count > 8 || current < 0 || current >= count)
            return QString::asprintf("level %d of %d", current, count);
        for (const LevelRecord &level : levelset.levels)
            if (level.width() > 32 || level.height() > 32)
                return QString::asprintf("a level is %d x %d", level.width(), level.height());
        if (w.windowTitle() != u'[' + levelset.levelsetPath + "] - " + ApplicationTitle ||
            w.lblLevelNum->text() != QString::asprintf("Level: %d / %d", current + 1, count))
            return "title " + w.windowTitle() + ", label " + w.lblLevelNum->text();
        const LevelRecord &level = levelset.current();
        const auto at = [&](int x) { return Cell * QPoint(level.header[x], level.header[x + 1]); };
        const auto tile = [](int id) { return Cell * QPoint(id % 8, id / 8); };
        const std::tuple<const Marker *, QPoint, const QAction *> markers[] = {
            {w.shpStart, at(LevelRecord::StartX), w.mnuViewStart},
            {w.shpFinish, at(LevelRecord::FinishX), w.mnuViewFinish},
            {w.shpPut, at(LevelRecord::PutX), w.mnuViewBlockPut},
            {w.shpTake, at(LevelRecord::TakeX), w.mnuViewBlockTake},
            {w.shpPutType, tile(level.header[LevelRecord::PutType]), w.mnuViewBlockPut},
            {w.shpTakeType, tile(level.header[LevelRecord::TakeType]), w.mnuViewBlockTake},
            {w.tileCursor, tile(w.selectedTile), nullptr}, // always shown
        };
        for (const auto &[marker, expected, item] : markers)
            if (marker->pos() != expected || marker->isHidden() == (!item || item->isChecked()))
                return marker->objectName() + " is not where the header says, or not as View says";
        const QPoint cursor = w.levelCursor->pos();
        if (w.selectedTile >= 178 || cursor.x() % Cell || cursor.y() % Cell ||
            !QRect(0, 0, 512, 512).contains(cursor) || w.levelCursor->isHidden())
            return QString::asprintf("levelCursor at %d,%d", cursor.x(), cursor.y());
        int checked = 0;
        for (const QAction *mode : w.mnuToolsMouseChoice)
            checked += mode->isChecked();
        if (checked != 1 || !w.mnuToolsMouseChoice.at(w.rightButtonMode)->isChecked())
            return QString::asprintf("%d modes checked, mode %d", checked, w.rightButtonMode);
        // A number field that reads as a byte shows the header's; a passcode, as read or as typed.
        const PropertiesPanel &p = *w.panel;
        const int levelType = level.header[LevelRecord::LevelType];
        const int alienType = level.header[LevelRecord::AlienType];
        if (p.optHatchery->isChecked() != (levelType != 0) ||
            p.optNormal->isChecked() == (levelType != 0) ||
            p.optWeak->isChecked() != (alienType == 3) ||
            p.optStrong->isChecked() == (alienType == 3))
            return QString::asprintf("type options for types %d and %d", levelType, alienType);
        static const QRegularExpression number("^ *[+-]?[0-9]+ *$");
        for (const auto &[field, byte] : {std::pair{p.txtObjectives, 2}, std::pair{p.txtTime, 3}})
            if (const int value = field->text().toInt(); number.match(field->text()).hasMatch() &&
                                                         value <= 255 && value >= 0 &&
                                                         value != level.header[byte])
                return field->objectName() + " shows " + field->text() + " against the header";
        const QString shown = p.txtPasscode->text(),
                      slot = current ? levelset.passcode(current - 1) : "None";
        if (p.txtPasscode->isEnabled() != (current > 0) ||
            (slot != shown && slot != shown.toUpper().leftJustified(6) &&
             slot != shown.leftJustified(6)))
            return "passcode field shows " + shown + ", slot holds " + slot;
        return checkFolder(levelset, {});
    }
};

class MonkeyTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void walk_data() {
        QTest::addColumn<uint>("seed");
        QTest::addColumn<int>("actions");
        const int given = qEnvironmentVariableIntValue("KST_MONKEY_ACTIONS"),
                  total = given > 0 ? given : 9000;
        const bool replay = qEnvironmentVariableIsSet("KST_MONKEY_SEED");
        for (uint seed : replay ? QList{qEnvironmentVariable("KST_MONKEY_SEED").toUInt()}
                                : QList{1u, 20261122u, 4242u})
            QTest::addRow("seed %u", seed) << seed << (replay ? total : (total + 2) / 3);
    }
    void walk() {
        QFETCH(uint, seed);
        QFETCH(int, actions);
        Monkey monkey(seed);
        QString fault = monkey.brokenRule();
        for (int i = 1; i <= actions && fault.isEmpty(); ++i)
            if (fault = monkey.step(); !fault.isEmpty())
                QFAIL(qPrintable(
                    QString::asprintf(
                        "replay with KST_MONKEY_SEED=%u KST_MONKEY_ACTIONS=%d: ", seed, i) +
                    fault + "\nlast actions:\n" + monkey.recent.join(u'\n')));
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
};

QTEST_MAIN(MonkeyTest)
#include "MonkeyTest.moc"
