// The save prompt, New, Open and the close request, driven through a real main window.

#include "EditorFixture.h"

#include "levelset/LevelsetFile.h"

#include <QCoreApplication>
#include <QtTest>

namespace {

enum class Command { New, Open, Close, Exit };

} // namespace

class LifecycleTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> tmp;
    std::unique_ptr<Editor> editor;

    QString at(const QString &name) const { return tmp->filePath(name); }

    // Runs a command the way the user reaches it; for closing, whether the window closed.
    bool run(Command command) {
        switch (command) {
        case Command::New:
            editor->window.mnuFileNew_Click();
            return false;
        case Command::Open:
            editor->window.mnuFileOpen_Click();
            return false;
        case Command::Close:
            return editor->window.close();
        case Command::Exit:
            editor->window.mnuFileExit_Click();
            return !editor->window.isVisible();
        }
        return false;
    }

    // The sample levelset in the window, with its fifth level shown.
    void showSampleAtLevel5(const QString &path) {
        fillSample(editor->levelset());
        editor->levelset().levelsetPath = path;
        editor->levelset().currentLevel = 4;
        editor->window.updateLevelLabel();
    }

    QString writeSampleFile(const QString &name, int levelCount) {
        Levelset sample;
        fillSample(sample);
        sample.levelCount = static_cast<std::uint8_t>(levelCount);
        const QString path = at(name);
        return putFile(path, writeLevelset(sample, path)) ? path : QString();
    }

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init() {
        tmp = std::make_unique<QTemporaryDir>();
        QVERIFY(tmp->isValid());
        editor = std::make_unique<Editor>();
    }
    void cleanup() {
        editor.reset();
        tmp.reset();
    }

    // Cancel in the prompt ends each guarded command with nothing asked or changed.
    void promptGuardsEveryCommand_data() {
        QTest::addColumn<Command>("command");
        QTest::newRow("New") << Command::New;
        QTest::newRow("Open") << Command::Open;
        QTest::newRow("close") << Command::Close;
        QTest::newRow("Exit") << Command::Exit;
    }
    void promptGuardsEveryCommand() {
        QFETCH(Command, command);
        const QString path = at(QStringLiteral("zkstlabc.kst"));
        showSampleAtLevel5(path);
        Levelset expected;
        fillSample(expected);
        editor->answer({QMessageBox::Cancel});
        editor->answerOpen(writeSampleFile(QStringLiteral("zkstloth.kst"), 2));

        QVERIFY(!run(command));

        QCOMPARE(editor->dialogs.messages.size(), 1);
        const ScriptedDialogs::Message &prompt = editor->dialogs.messages[0];
        QCOMPARE(prompt.text, PromptText);
        QCOMPARE(prompt.title, ApplicationTitle);
        QCOMPARE(prompt.icon, QMessageBox::NoIcon);
        QCOMPARE(prompt.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QVERIFY(editor->dialogs.openQuestions.isEmpty());
        QVERIFY(editor->dialogs.saveQuestions.isEmpty());
        QVERIFY(editor->window.isVisible());
        QCOMPARE(storedDifference(editor->levelset(), expected), QString());
        QCOMPARE(editor->levelset().currentLevel, 4);
        QCOMPARE(editor->levelset().levelsetPath, path);
        QCOMPARE(filesBelow(tmp->path()), QStringList{QStringLiteral("zkstloth.kst")});
    }

    // New always ends with a fresh levelset, whatever came of the save its Yes asked for.
    void newResetsTheLevelset_data() {
        QTest::addColumn<bool>("named");
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<QStringList>("written");
        QTest::newRow("No") << true << QMessageBox::No << QStringList();
        QTest::newRow("Yes, untitled, dialog cancelled")
            << false << QMessageBox::Yes << QStringList();
        QTest::newRow("Yes, named: saved first")
            << true << QMessageBox::Yes << QStringList{QStringLiteral("zkstlabc.kst")};
    }
    void newResetsTheLevelset() {
        QFETCH(bool, named);
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(QStringList, written);
        showSampleAtLevel5(named ? at(QStringLiteral("zkstlabc.kst")) : UntitledPath);
        editor->answer({answer});

        editor->window.mnuFileNew_Click();

        QCOMPARE(filesBelow(tmp->path()), written);
        if (!written.isEmpty()) { // the file holds the levelset as it was before the reset
            Levelset reread;
            QVERIFY(readLevelsetFile(reread, at(written[0])));
            Levelset sample;
            fillSample(sample);
            QCOMPARE(storedDifference(reread, sample), QString());
        }
        QCOMPARE(editor->dialogs.saveQuestions.size(), named ? 0 : 1);
        QCOMPARE(storedDifference(editor->levelset(), Levelset()), QString());
        QCOMPARE(editor->levelset().currentLevel, 0);
        QCOMPARE(editor->levelset().levelsetPath, UntitledPath);
        QCOMPARE(editor->title(), QStringLiteral("[Untitled] - Kestrix: Levelset Editor"));
        QCOMPARE(editor->label(), QStringLiteral("Level: 1 / 1"));
    }

    void openWithCancelledDialogChangesNothing() {
        const QString path = at(QStringLiteral("zkstlabc.kst"));
        showSampleAtLevel5(path);
        Levelset expected;
        fillSample(expected);
        editor->answer({QMessageBox::No});

        editor->window.mnuFileOpen_Click();

        QCOMPARE(editor->dialogs.openQuestions.size(), 1);
        const ScriptedDialogs::FileQuestion &asked = editor->dialogs.openQuestions[0];
        QCOMPARE(asked.title, QStringLiteral("Open"));
        QCOMPARE(asked.filter, DialogFilter);
        QCOMPARE(asked.dir, QCoreApplication::applicationDirPath());
        QCOMPARE(storedDifference(editor->levelset(), expected), QString());
        QCOMPARE(editor->levelset().currentLevel, 4);
        QCOMPARE(editor->levelset().levelsetPath, path);
        QCOMPARE(editor->label(), QStringLiteral("Level: 5 / 5"));
    }

    // Open shows the file's first level under the path as chosen, whatever the prompt's answer.
    void openShowsTheFirstLevelOfTheFile_data() {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<int>("saveDialogs");
        QTest::newRow("No") << QMessageBox::No << 0;
        QTest::newRow("Yes, save dialog cancelled") << QMessageBox::Yes << 1;
    }
    void openShowsTheFirstLevelOfTheFile() {
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(int, saveDialogs);
        // No name rule and no change of case on the way in.
        const QString path = writeSampleFile(QStringLiteral("Some Levels.BIN"), 3);
        QVERIFY(!path.isEmpty());
        showSampleAtLevel5(UntitledPath);
        editor->levelset().levels[4].tile(0, 0) = 99; // a level the file does not cover
        editor->answer({answer});
        editor->answerOpen(path);

        editor->window.mnuFileOpen_Click();

        QCOMPARE(editor->dialogs.saveQuestions.size(), saveDialogs);
        Levelset expected;
        fillSample(expected);
        expected.levelCount = 3;
        QCOMPARE(storedDifference(editor->levelset(), expected), QString());
        QCOMPARE(editor->levelset().levels[4].tile(0, 0), 0); // reset before reading
        QCOMPARE(editor->levelset().currentLevel, 0);
        QCOMPARE(editor->levelset().levelsetPath, path);
        QCOMPARE(editor->title(), windowTitle(path));
        QCOMPARE(editor->label(), QStringLiteral("Level: 1 / 3"));
        QCOMPARE(editor->status(), QStringLiteral("Opened ") + path);
        QCOMPARE(filesBelow(tmp->path()), QStringList{QStringLiteral("Some Levels.BIN")});
    }

    void openOfMissingFileNamesItForTheNextSave() {
        const QString path = at(QStringLiteral("zkstlnew.kst"));
        showSampleAtLevel5(UntitledPath);
        editor->answer({QMessageBox::No});
        editor->answerOpen(path);

        editor->window.mnuFileOpen_Click();

        QCOMPARE(storedDifference(editor->levelset(), Levelset()), QString());
        QCOMPARE(editor->title(), windowTitle(path));
        QCOMPARE(editor->status(), QStringLiteral("Could not open ") + path);
        QCOMPARE(filesBelow(tmp->path()), QStringList());

        editor->window.mnuFileSave_Click();

        QVERIFY(editor->dialogs.saveQuestions.isEmpty());
        QCOMPARE(fileBytes(path), writeLevelset(Levelset(), path));
    }

    void openReportsWhatTheReaderRepaired() {
        Levelset sample;
        fillSample(sample);
        const QString path = at(QStringLiteral("zkstlcut.kst"));
        QVERIFY(putFile(path, writeLevelset(sample, path).left(100)));
        editor->answer({QMessageBox::No});
        editor->answerOpen(path);

        editor->window.mnuFileOpen_Click();

        QVERIFY2(editor->status().startsWith(QStringLiteral("Opened ") + path + ": "),
                 qPrintable(editor->status()));
        QCOMPARE(editor->levelset().levelCount, 5);
        QCOMPARE(editor->label(), QStringLiteral("Level: 1 / 5"));
    }

    // What is saved through the window comes back through the window.
    void savedLevelsetReopensUnchanged() {
        fillSample(editor->levelset());
        editor->levelset().currentLevel = 2;
        Levelset expected;
        fillSample(expected);
        editor->answerSave(at(QStringLiteral("zkstlrtp.kst")));
        editor->window.mnuFileSaveAs_Click();
        const QString path = at(QStringLiteral("zkstlrtp.kst"));
        const QByteArray saved = fileBytes(path);
        editor->answer({QMessageBox::No, QMessageBox::No});
        editor->window.mnuFileNew_Click();
        editor->answerOpen(path);

        editor->window.mnuFileOpen_Click();

        QCOMPARE(storedDifference(editor->levelset(), expected), QString());
        QCOMPARE(editor->label(), QStringLiteral("Level: 1 / 5"));
        editor->window.mnuFileSave_Click(); // saving what was opened writes the same bytes
        QCOMPARE(fileBytes(path), saved);
    }

    // Yes and No let the window close; only Yes writes, and only a levelset with a file.
    void closeRequest_data() {
        QTest::addColumn<Command>("command");
        QTest::addColumn<bool>("named");
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<bool>("writes");
        QTest::newRow("close, No") << Command::Close << true << QMessageBox::No << false;
        QTest::newRow("close, Yes, named") << Command::Close << true << QMessageBox::Yes << true;
        QTest::newRow("close, Yes, untitled, dialog cancelled")
            << Command::Close << false << QMessageBox::Yes << false;
        QTest::newRow("Exit, No") << Command::Exit << true << QMessageBox::No << false;
        QTest::newRow("Exit, Yes, named") << Command::Exit << true << QMessageBox::Yes << true;
    }
    void closeRequest() {
        QFETCH(Command, command);
        QFETCH(bool, named);
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(bool, writes);
        const QString path = at(QStringLiteral("zkstlend.kst"));
        showSampleAtLevel5(named ? path : UntitledPath);
        editor->answer({answer});

        QVERIFY(run(command));

        QVERIFY(!editor->window.isVisible());
        QCOMPARE(editor->dialogs.messageTexts(), QStringList{PromptText});
        QCOMPARE(filesBelow(tmp->path()),
                 writes ? QStringList{QStringLiteral("zkstlend.kst")} : QStringList());
    }
};

QTEST_MAIN(LifecycleTest)
#include "LifecycleTest.moc"
