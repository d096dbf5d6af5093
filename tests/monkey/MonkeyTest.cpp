#include "MonkeyWalk.h"

#include "levels/PropertiesPanel.h"
#include "levelset/LevelsetFile.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <functional>

// The random walk over the main window, and the proof that its checks catch what they are for.
// KST_MONKEY_ACTIONS sets the walk's length (spread over the seeds), KST_MONKEY_SEED runs one
// seed only, to replay a failure.

// Breaks one thing in a window or its folder; a break that fails leaves the named rule whole.
using Breaker = std::function<void(frmMain &, const QString &folder)>;
Q_DECLARE_METATYPE(Breaker)

class MonkeyTest : public QObject {
    Q_OBJECT
public:
    MonkeyTest();

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void walk_data();
    void walk();
    void sameSeedSameWalk();
    void checksCatchBrokenRules_data();
    void checksCatchBrokenRules();
    void saveOutcomes_data();
    void saveOutcomes();
    void stepsCatchWrongEffects_data();
    void stepsCatchWrongEffects();
};

namespace {

int environmentNumber(const char *name, int fallback) {
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok && value > 0 ? value : fallback;
}

bool writeFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

// QtTest stops a test function after five minutes; a long walk is given time by its length.
MonkeyTest::MonkeyTest() {
    constexpr qint64 MillisecondsPerAction = 20; // ten times a sanitized build's pace
    const qint64 needed = MillisecondsPerAction * environmentNumber("KST_MONKEY_ACTIONS", 0);
    if (needed > 300000 && !qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(needed));
}

void MonkeyTest::walk_data() {
    QTest::addColumn<uint>("seed");
    QTest::addColumn<int>("actions");
    const int total = environmentNumber("KST_MONKEY_ACTIONS", 9000);
    if (qEnvironmentVariableIsSet("KST_MONKEY_SEED")) {
        const uint seed = qEnvironmentVariable("KST_MONKEY_SEED").toUInt();
        QTest::addRow("seed %u", seed) << seed << total;
        return;
    }
    for (uint seed : {1u, 20261122u, 4242u})
        QTest::addRow("seed %u", seed) << seed << (total + 2) / 3;
}

void MonkeyTest::walk() {
    QFETCH(uint, seed);
    QFETCH(int, actions);
    MonkeyWalk monkey(seed);
    QVERIFY(monkey.isReady());
    QCOMPARE(monkey.brokenRule(), QString());
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; i <= actions; ++i)
        if (const QString fault = monkey.step(); !fault.isEmpty())
            QFAIL(qPrintable(QStringLiteral("seed %1, action %2: %3\nreplay with "
                                            "KST_MONKEY_SEED=%1 KST_MONKEY_ACTIONS=%2\n"
                                            "last actions:\n  %4")
                                 .arg(seed)
                                 .arg(i)
                                 .arg(fault, monkey.recentActions().join(u"\n  "))));
    qInfo("seed %u: %d actions in %lld ms; %s", seed, actions, clock.elapsed(),
          qPrintable(monkey.statistics()));
}

void MonkeyTest::sameSeedSameWalk() {
    // One walk after the other: which window is active decides whether keys can be pressed.
    const auto run = [](QByteArray &stored) {
        MonkeyWalk monkey(77);
        for (int i = 0; i < 150; ++i)
            if (const QString fault = monkey.step(); !fault.isEmpty())
                return fault;
        stored = writeLevelset(monkey.window().levelset, QString());
        // The folders differ, so paths are compared without them.
        return monkey.recentActions()
            .replaceInStrings(monkey.folder().root(), QStringLiteral("<folder>"))
            .join(u'\n');
    };
    QByteArray firstLevelset;
    QByteArray secondLevelset;
    const QString first = run(firstLevelset);
    QVERIFY2(first.startsWith(u'#'), qPrintable(first));
    QCOMPARE(run(secondLevelset), first);
    QCOMPARE(secondLevelset, firstLevelset);
}

void MonkeyTest::checksCatchBrokenRules_data() {
    QTest::addColumn<Breaker>("breaker");
    QTest::addColumn<QString>("named");
    QTest::newRow("no level") << Breaker([](frmMain &w, auto) { w.levelset.levelCount = 0; })
                              << "levelCount 0";
    QTest::newRow("current level past the count")
        << Breaker([](frmMain &w, auto) { w.levelset.currentLevel = 1; }) << "currentLevel";
    QTest::newRow("level wider than the grid")
        << Breaker([](frmMain &w, auto) { w.levelset.levels[5].header[LevelRecord::Width] = 33; })
        << "33 x 8";
    QTest::newRow("start marker off its cell") << Breaker([](frmMain &w, auto) {
        w.shpStart->place({16, 0});
    }) << "shpStart";
    QTest::newRow("put type marker off its tile") << Breaker([](frmMain &w, auto) {
        w.shpPutType->place({0, 0});
    }) << "shpPutType";
    QTest::newRow("unchecked marker shown")
        << Breaker([](frmMain &w, auto) { w.shpTake->show(); }) << "shpTake";
    QTest::newRow("two modes checked")
        << Breaker([](frmMain &w, auto) { w.mnuToolsMouseChoice[2]->setChecked(true); })
        << "2 right-button modes";
    QTest::newRow("title without the path")
        << Breaker([](frmMain &w, auto) { w.setWindowTitle("Kestrix: Levelset Editor"); })
        << "title";
    QTest::newRow("label behind the count")
        << Breaker([](frmMain &w, auto) { w.levelset.levelCount = 2; }) << "label";
    QTest::newRow("time field disagrees")
        << Breaker([](frmMain &w, auto) { w.levelset.current().header[LevelRecord::Time] = 98; })
        << "txtTime";
    QTest::newRow("Hatchery shown for Normal") << Breaker([](frmMain &w, auto) {
        const QSignalBlocker quiet(w.panel->optHatchery);
        w.panel->optHatchery->setChecked(true);
    }) << "Level Type";
    QTest::newRow("first level's passcode editable")
        << Breaker([](frmMain &w, auto) { w.panel->txtPasscode->setEnabled(true); }) << "passcode";
    QTest::newRow("level cursor off the view") << Breaker([](frmMain &w, auto) {
        w.levelCursor->place({-16, 0});
    }) << "levelCursor";
    QTest::newRow("file changed behind the editor")
        << Breaker([](frmMain &, const QString &folder) {
               QFile file(folder + "/zkstlfor.kst");
               if (file.open(QIODevice::Append))
                   file.write("x");
           })
        << "differs";
    QTest::newRow("file nobody saved") << Breaker([](frmMain &, const QString &folder) {
        writeFile(folder + "/sub/zkstlnew.kst", "x");
    }) << "unexpected file";
    QTest::newRow("file gone") << Breaker([](frmMain &, const QString &folder) {
        QFile::remove(folder + "/zkstlfor.kst");
    }) << "has gone";
}

void MonkeyTest::checksCatchBrokenRules() {
    QFETCH(Breaker, breaker);
    QFETCH(QString, named);
    MonkeyWalk monkey(5);
    QCOMPARE(monkey.brokenRule(), QString()); // a fresh window keeps every rule
    breaker(monkey.window(), monkey.folder().root());
    const QString broken = monkey.brokenRule();
    QVERIFY2(broken.contains(named), qPrintable(broken));
}

// A save either leaves a file as it was or writes the new bytes whole; the folder says whether
// the save could have succeeded at all.
void MonkeyTest::saveOutcomes_data() {
    QTest::addColumn<QString>("target");    // below the walk's folder
    QTest::addColumn<QByteArray>("onDisk"); // "-" for as it is
    QTest::addColumn<bool>("written");
    QTest::addColumn<bool>("fault");
    const QByteArray fresh = writeLevelset(Levelset(), QStringLiteral("zkstlnew.kst"));
    const QByteArray same("-");
    QTest::newRow("new file written whole") << "zkstlnew.kst" << fresh << true << false;
    QTest::newRow("new file half written") << "zkstlnew.kst" << fresh.left(80) << false << true;
    QTest::newRow("writable folder, nothing written") << "zkstlnew.kst" << same << false << true;
    QTest::newRow("missing folder, nothing written")
        << "missing/zkstlnew.kst" << same << false << false;
    QTest::newRow("through a plain file, nothing written")
        << "plain.kst/zkstlnew.kst" << same << false << false;
    QTest::newRow("writable file left as it was") << "zkstlfor.kst" << same << false << true;
    // The save's temporary neighbour of a name this long may not be creatable.
    QTest::newRow("long name left as it was")
        << QString(243, u'l') + QStringLiteral("zkstllng.kst") << same << false << false;
}

void MonkeyTest::saveOutcomes() {
    QFETCH(QString, target);
    QFETCH(QByteArray, onDisk);
    QFETCH(bool, written);
    QFETCH(bool, fault);
    MonkeyWalk monkey(9);
    const QString path = monkey.folder().root() + u'/' + target;
    if (onDisk != "-")
        QVERIFY(writeFile(path, onDisk));
    const MonkeyFolder::SaveOutcome outcome =
        monkey.folder().noteSave(path, writeLevelset(Levelset(), QStringLiteral("zkstlnew.kst")));
    QCOMPARE(outcome.written, written);
    QVERIFY2(outcome.fault.isEmpty() != fault, qPrintable(outcome.fault));
    if (!fault)
        QCOMPARE(monkey.folder().check(), QString());
}

// Each sabotage makes one kind of action do a little more than it should while every rule that
// holds between actions still holds; the walk must notice from the action's effect alone.
void MonkeyTest::stepsCatchWrongEffects_data() {
    QTest::addColumn<Breaker>("sabotage");
    QTest::addColumn<QString>("named");
    QTest::newRow("stroke writes outside the level") << Breaker([](frmMain &w, auto) {
        // The bottom-right cell lies outside every level smaller than 32 x 32.
        QObject::connect(w.picLevel, &LevelView::mouseDown, &w,
                         [&w] { w.levelset.current().tile(31, 31) ^= 1; });
    }) << "(31, 31)";
    QTest::newRow("Add adds two levels") << Breaker([](frmMain &w, auto) {
        QObject::connect(w.mnuLevelAdd, &QAction::triggered, &w, [&w] {
            w.levelset.levelCount = std::min(w.levelset.levelCount + 1, Levelset::MaxLevels);
            w.updateLevelLabel();
        });
    }) << "after mnuLevelAdd";
    QTest::newRow("Save leaves a byte off") << Breaker([](frmMain &w, auto) {
        QObject::connect(w.mnuFileSave, &QAction::triggered, &w, [&w] {
            QFile saved(w.levelset.levelsetPath);
            if (saved.size() > 0)
                saved.resize(saved.size() - 1);
        });
    }) << "neither";
    QTest::newRow("popup stores another row") << Breaker([](frmMain &w, auto) {
        QObject::connect(w.mnuLevelPopUpStart, &QAction::triggered, &w, [&w] {
            LevelRecord &level = w.levelset.current();
            level.header[LevelRecord::StartY] = static_cast<std::uint8_t>(level.height() - 1);
            w.shpStart->place(QPoint(16 * level.header[LevelRecord::StartX],
                                     16 * level.header[LevelRecord::StartY]));
        });
    }) << "popup chose";
}

void MonkeyTest::stepsCatchWrongEffects() {
    QFETCH(Breaker, sabotage);
    QFETCH(QString, named);
    MonkeyWalk monkey(11);
    QString fault;
    for (int i = 0; i < 5000 && fault.isEmpty(); ++i) {
        // A window opened afresh after a close is sabotaged too; it may reuse the old address.
        frmMain &w = monkey.window();
        if (!w.property("sabotaged").toBool()) {
            w.setProperty("sabotaged", true);
            sabotage(w, monkey.folder().root());
        }
        fault = monkey.step();
    }
    QVERIFY2(fault.contains(named), qPrintable(fault));
}

QTEST_MAIN(MonkeyTest)
#include "MonkeyTest.moc"
