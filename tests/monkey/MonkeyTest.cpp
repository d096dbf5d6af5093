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
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

// The random walk over the main window, and the proof that its checks do catch what they are
// for. KST_MONKEY_ACTIONS sets the walk's length (spread over the seeds), KST_MONKEY_SEED runs
// one seed only, to replay a failure.
class MonkeyTest : public QObject {
    Q_OBJECT
public:
    MonkeyTest();

private slots:
    void initTestCase();
    void walk_data();
    void walk();
    void sameSeedSameWalk();
    void freshWindowKeepsEveryRule();
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

QByteArray readFile(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

void MonkeyTest::initTestCase() {
    // The walk closes its window now and then and opens a new one.
    QApplication::setQuitOnLastWindowClosed(false);
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
    const uint seeds[] = {1, 20261122, 4242};
    for (uint seed : seeds)
        QTest::addRow("seed %u", seed) << seed << (total + 2) / 3;
}

void MonkeyTest::walk() {
    QFETCH(uint, seed);
    QFETCH(int, actions);
    MonkeyWalk monkey(seed);
    QVERIFY(monkey.isReady());
    QVERIFY2(monkey.brokenRule().isEmpty(), qPrintable(monkey.brokenRule()));

    QElapsedTimer clock;
    clock.start();
    for (int i = 1; i <= actions; ++i) {
        const QString fault = monkey.step();
        if (!fault.isEmpty()) {
            const QString report =
                QStringLiteral("seed %1, action %2: %3\nreplay with KST_MONKEY_SEED=%1 "
                               "KST_MONKEY_ACTIONS=%2\nlast actions:\n  %4")
                    .arg(seed)
                    .arg(i)
                    .arg(fault, monkey.recentActions().join(QStringLiteral("\n  ")));
            QFAIL(qPrintable(report));
        }
    }
    qInfo("seed %u: %d actions in %lld ms; %s", seed, actions, clock.elapsed(),
          qPrintable(monkey.statistics()));
}

void MonkeyTest::sameSeedSameWalk() {
    // One walk after the other: which window is active decides whether keys can be pressed.
    const auto run = [](QByteArray &stored) {
        MonkeyWalk monkey(77);
        for (int i = 0; i < 150; ++i) {
            const QString fault = monkey.step();
            if (!fault.isEmpty())
                return fault;
        }
        stored = writeLevelset(monkey.window().levelset, QString());
        QStringList actions = monkey.recentActions();
        // The folders differ, so paths are compared without them.
        actions.replaceInStrings(monkey.folder().root(), QStringLiteral("<folder>"));
        return actions.join(u'\n');
    };
    QByteArray firstLevelset;
    QByteArray secondLevelset;
    const QString first = run(firstLevelset);
    const QString second = run(secondLevelset);
    QVERIFY(first.startsWith(u'#'));
    QCOMPARE(first, second);
    QCOMPARE(firstLevelset, secondLevelset);
}

void MonkeyTest::freshWindowKeepsEveryRule() {
    MonkeyWalk monkey(1);
    QVERIFY(monkey.isReady());
    QCOMPARE(monkey.brokenRule(), QString());
}

enum class Break {
    CountZero,
    CurrentPastCount,
    TooWide,
    StartMarkerOff,
    PutTypeMarkerOff,
    HiddenMarkerShown,
    TwoModes,
    TitleWithoutPath,
    LabelBehind,
    TimeFieldDisagrees,
    HatcheryShownForNormal,
    PasscodeFieldEnabled,
    LevelCursorOffView,
    FileChanged,
    StrayFile,
    FileGone,
};
Q_DECLARE_METATYPE(Break)

void MonkeyTest::checksCatchBrokenRules_data() {
    QTest::addColumn<Break>("fault");
    QTest::addColumn<QString>("named");
    QTest::newRow("no level") << Break::CountZero << "levelCount 0";
    QTest::newRow("current level past the count") << Break::CurrentPastCount << "currentLevel";
    QTest::newRow("level wider than the grid") << Break::TooWide << "33 x 8";
    QTest::newRow("start marker off its cell") << Break::StartMarkerOff << "shpStart";
    QTest::newRow("put type marker off its tile") << Break::PutTypeMarkerOff << "shpPutType";
    QTest::newRow("unchecked marker shown") << Break::HiddenMarkerShown << "shpTake";
    QTest::newRow("two modes checked") << Break::TwoModes << "2 right-button modes";
    QTest::newRow("title without the path") << Break::TitleWithoutPath << "title";
    QTest::newRow("label behind the count") << Break::LabelBehind << "label";
    QTest::newRow("time field disagrees") << Break::TimeFieldDisagrees << "txtTime";
    QTest::newRow("Hatchery shown for Normal") << Break::HatcheryShownForNormal << "Level Type";
    QTest::newRow("first level's passcode editable") << Break::PasscodeFieldEnabled << "passcode";
    QTest::newRow("level cursor off the view") << Break::LevelCursorOffView << "levelCursor";
    QTest::newRow("file changed behind the editor") << Break::FileChanged << "differs";
    QTest::newRow("file nobody saved") << Break::StrayFile << "unexpected file";
    QTest::newRow("file gone") << Break::FileGone << "has gone";
}

void MonkeyTest::checksCatchBrokenRules() {
    QFETCH(Break, fault);
    QFETCH(QString, named);
    MonkeyWalk monkey(5);
    frmMain &w = monkey.window();
    const QString foreign = monkey.folder().root() + QStringLiteral("/zkstlfor.kst");
    switch (fault) {
    case Break::CountZero:
        w.levelset.levelCount = 0;
        break;
    case Break::CurrentPastCount:
        w.levelset.currentLevel = 1;
        break;
    case Break::TooWide:
        w.levelset.levels[5].header[LevelRecord::Width] = 33;
        break;
    case Break::StartMarkerOff:
        w.shpStart->place(QPoint(16, 0));
        break;
    case Break::PutTypeMarkerOff:
        w.shpPutType->place(QPoint(0, 0));
        break;
    case Break::HiddenMarkerShown:
        w.shpTake->show();
        break;
    case Break::TwoModes:
        w.mnuToolsMouseChoice[2]->setChecked(true);
        break;
    case Break::TitleWithoutPath:
        w.setWindowTitle(QStringLiteral("Kestrix: Levelset Editor"));
        break;
    case Break::LabelBehind:
        w.levelset.levelCount = 2;
        break;
    case Break::TimeFieldDisagrees:
        w.levelset.current().header[LevelRecord::Time] = 98;
        break;
    case Break::HatcheryShownForNormal: {
        const QSignalBlocker quiet(w.panel->optHatchery);
        w.panel->optHatchery->setChecked(true);
        break;
    }
    case Break::PasscodeFieldEnabled:
        w.panel->txtPasscode->setEnabled(true);
        break;
    case Break::LevelCursorOffView:
        w.levelCursor->place(QPoint(-16, 0));
        break;
    case Break::FileChanged: {
        QByteArray bytes = readFile(foreign);
        bytes[60] = char(bytes[60] + 1);
        QVERIFY(writeFile(foreign, bytes));
        break;
    }
    case Break::StrayFile:
        QVERIFY(writeFile(monkey.folder().root() + QStringLiteral("/sub/zkstlnew.kst"), "x"));
        break;
    case Break::FileGone:
        QVERIFY(QFile::remove(foreign));
        break;
    }
    const QString broken = monkey.brokenRule();
    QVERIFY2(broken.contains(named), qPrintable(broken));
}

// A save either leaves a file as it was or writes the new bytes whole; the folder says whether
// the save could have succeeded at all.
void MonkeyTest::saveOutcomes_data() {
    QTest::addColumn<QString>("target");    // below the walk's folder
    QTest::addColumn<QByteArray>("onDisk"); // "-" for no file
    QTest::addColumn<bool>("written");
    QTest::addColumn<bool>("fault");
    const QByteArray fresh = writeLevelset(Levelset(), QStringLiteral("zkstlnew.kst"));
    QTest::newRow("new file written whole") << "zkstlnew.kst" << fresh << true << false;
    QTest::newRow("new file half written") << "zkstlnew.kst" << fresh.left(80) << false << true;
    QTest::newRow("writable folder, nothing written")
        << "zkstlnew.kst" << QByteArray("-") << false << true;
    QTest::newRow("missing folder, nothing written")
        << "missing/zkstlnew.kst" << QByteArray("-") << false << false;
    QTest::newRow("through a plain file, nothing written")
        << "plain.kst/zkstlnew.kst" << QByteArray("-") << false << false;
    QTest::newRow("writable file left as it was")
        << "zkstlfor.kst" << QByteArray() << false << true;
    // A name so long that the save's temporary neighbour may not be creatable: the old file
    // staying is a right outcome there.
    QTest::newRow("long name left as it was")
        << QString(243, u'l') + QStringLiteral("zkstllng.kst") << QByteArray() << false << false;
}

void MonkeyTest::saveOutcomes() {
    QFETCH(QString, target);
    QFETCH(QByteArray, onDisk);
    QFETCH(bool, written);
    QFETCH(bool, fault);
    MonkeyWalk monkey(9);
    const QString path = monkey.folder().root() + u'/' + target;
    const QByteArray bytes = writeLevelset(Levelset(), QStringLiteral("zkstlnew.kst"));
    if (onDisk != "-" && !onDisk.isEmpty())
        QVERIFY(writeFile(path, onDisk));
    const MonkeyFolder::SaveOutcome outcome = monkey.folder().noteSave(path, bytes);
    QCOMPARE(outcome.written, written);
    QVERIFY2(outcome.fault.isEmpty() != fault, qPrintable(outcome.fault));
    if (!fault)
        QCOMPARE(monkey.folder().check(), QString());
}

// Each sabotage makes one kind of action do a little more than it should, while every rule
// that holds between actions still holds; the walk must notice from the action's effect alone.
enum class Sabotage { WriteOutsideLevel, AddTwice, TruncateSave, PopupStoresNextCell };
Q_DECLARE_METATYPE(Sabotage)

namespace {

// Presses on the level view also flip the bottom-right cell of the grid, which lies outside
// every level smaller than 32 x 32.
class CellFlipper : public QObject {
public:
    explicit CellFlipper(frmMain &window) : QObject(window.picLevel), window_(window) {
        window.picLevel->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::MouseButtonPress)
            window_.levelset.current().tile(31, 31) ^= 1;
        return false;
    }

private:
    frmMain &window_;
};

void sabotage(frmMain &w, Sabotage kind) {
    switch (kind) {
    case Sabotage::WriteOutsideLevel:
        new CellFlipper(w);
        break;
    case Sabotage::AddTwice:
        QObject::connect(w.mnuLevelAdd, &QAction::triggered, &w, [&w] {
            if (w.levelset.levelCount < Levelset::MaxLevels)
                ++w.levelset.levelCount;
            w.updateLevelLabel();
        });
        break;
    case Sabotage::TruncateSave:
        QObject::connect(w.mnuFileSave, &QAction::triggered, &w, [&w] {
            QFile saved(w.levelset.levelsetPath);
            if (saved.exists() && saved.size() > 0)
                saved.resize(saved.size() - 1);
        });
        break;
    case Sabotage::PopupStoresNextCell:
        QObject::connect(w.mnuLevelPopUpStart, &QAction::triggered, &w, [&w] {
            LevelRecord &level = w.levelset.current();
            level.header[LevelRecord::StartY] = static_cast<std::uint8_t>(level.height() - 1);
            w.shpStart->place(QPoint(16 * level.header[LevelRecord::StartX],
                                     16 * level.header[LevelRecord::StartY]));
        });
        break;
    }
}

} // namespace

void MonkeyTest::stepsCatchWrongEffects_data() {
    QTest::addColumn<Sabotage>("kind");
    QTest::addColumn<QString>("named");
    QTest::newRow("stroke writes outside the level") << Sabotage::WriteOutsideLevel << "(31, 31)";
    QTest::newRow("Add adds two levels") << Sabotage::AddTwice << "after Add";
    QTest::newRow("Save leaves a byte off") << Sabotage::TruncateSave << "neither";
    QTest::newRow("popup stores another row") << Sabotage::PopupStoresNextCell << "popup chose";
}

void MonkeyTest::stepsCatchWrongEffects() {
    QFETCH(Sabotage, kind);
    QFETCH(QString, named);
    MonkeyWalk monkey(11);
    QString fault;
    for (int i = 0; i < 5000 && fault.isEmpty(); ++i) {
        // A window opened afresh after a close is sabotaged too; it may reuse the old address.
        frmMain &w = monkey.window();
        if (!w.property("sabotaged").toBool()) {
            w.setProperty("sabotaged", true);
            sabotage(w, kind);
        }
        fault = monkey.step();
    }
    QVERIFY2(fault.contains(named), qPrintable(fault));
}

QTEST_MAIN(MonkeyTest)
#include "MonkeyTest.moc"
