// The save prompt, New, Open and the close request, driven through a real main window.

#include "FileSession.h"

namespace {

enum class Command { New, Open, Close, Exit };

// Runs a command the way the user reaches it; for closing, whether the window closed.
bool run(FileSession &s, Command command) {
    switch (command) {
    case Command::New:
        s.window.mnuFileNew_Click();
        return false;
    case Command::Open:
        s.window.mnuFileOpen_Click();
        return false;
    case Command::Close:
        return s.window.close();
    case Command::Exit:
        s.window.mnuFileExit_Click();
        return !s.window.isVisible();
    }
    return false;
}

} // namespace

class LifecycleTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // The prompt before every command that would drop the levelset: Cancel there, or in Open's
    // dialog after No, changes nothing; Yes saves a named levelset in place and asks a name for
    // an untitled one (cancelled here); New resets and a close goes on whatever came of that.
    void promptComesFirst_data() {
        QTest::addColumn<Command>("command");
        QTest::addColumn<bool>("named");
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        const auto row = [](const char *tag, Command command, bool named, auto answer) {
            QTest::newRow(tag) << command << named << answer;
        };
        row("New, Cancel", Command::New, true, QMessageBox::Cancel);
        row("Open, Cancel", Command::Open, true, QMessageBox::Cancel);
        row("close, Cancel", Command::Close, true, QMessageBox::Cancel);
        row("Exit, Cancel", Command::Exit, true, QMessageBox::Cancel);
        row("Open, No, dialog cancelled", Command::Open, true, QMessageBox::No);
        row("New, No", Command::New, true, QMessageBox::No);
        row("New, Yes, untitled", Command::New, false, QMessageBox::Yes);
        row("New, Yes, named", Command::New, true, QMessageBox::Yes);
        row("close, No", Command::Close, true, QMessageBox::No);
        row("close, Yes, named", Command::Close, true, QMessageBox::Yes);
        row("close, Yes, untitled", Command::Close, false, QMessageBox::Yes);
        row("Exit, No", Command::Exit, true, QMessageBox::No);
        row("Exit, Yes, named", Command::Exit, true, QMessageBox::Yes);
    }
    void promptComesFirst() {
        QFETCH(Command, command);
        QFETCH(bool, named);
        QFETCH(QMessageBox::StandardButton, answer);
        FileSession s;
        const QString path = named ? s.at("zkstlabc.kst") : UntitledPath;
        s.showSampleAtLevel5(path);
        s.answer({answer});
        const QString other = s.writeSample("zkstloth.kst", 2);
        if (answer == QMessageBox::Cancel)
            s.dialogs.openAnswers.enqueue(other);
        const bool closing = command == Command::Close || command == Command::Exit;

        QCOMPARE(run(s, command), closing && answer != QMessageBox::Cancel);

        QCOMPARE(s.dialogs.messages.size(), 1);
        const ScriptedDialogs::Message &prompt = s.dialogs.messages[0];
        QCOMPARE(prompt.text, PromptText);
        QCOMPARE(prompt.title, "Kestrix: Levelset Editor");
        QCOMPARE(prompt.icon, QMessageBox::NoIcon);
        QCOMPARE(prompt.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QCOMPARE(s.dialogs.openQuestions.size(),
                 command == Command::Open && answer == QMessageBox::No ? 1 : 0);
        for (const ScriptedDialogs::FileQuestion &asked : s.dialogs.openQuestions) {
            QCOMPARE(asked.title, "Open");
            QCOMPARE(asked.filter, DialogFilter);
            QCOMPARE(asked.dir, QCoreApplication::applicationDirPath());
        }
        const bool saves = answer == QMessageBox::Yes;
        QCOMPARE(s.dialogs.saveQuestions.size(), saves && !named ? 1 : 0);
        const QStringList written = saves && named ? QStringList{"zkstlabc.kst"} : QStringList();
        QCOMPARE(s.files(), written + QStringList{"zkstloth.kst"});
        if (saves && named) // the levelset as it was before the command
            QCOMPARE(fileBytes(path).mid(7), stored(sample()).mid(7));

        const bool reset = command == Command::New && answer != QMessageBox::Cancel;
        QCOMPARE(stored(s.levelset()), stored(reset ? Levelset() : sample()));
        QCOMPARE(s.levelset().currentLevel, reset ? 0 : 4);
        QCOMPARE(s.levelset().levelsetPath, reset ? UntitledPath : path);
        QCOMPARE(s.title(), windowTitle(s.levelset().levelsetPath));
        QCOMPARE(s.label(), reset ? "Level: 1 / 1" : "Level: 5 / 5");
    }

    // Open resets, then shows the file's first level under the path as chosen, with no name
    // rule and no change of case, whatever the prompt's answer.
    void openShowsTheFirstLevelOfTheFile_data() {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<int>("saveDialogs");
        QTest::newRow("No") << QMessageBox::No << 0;
        QTest::newRow("Yes, save dialog cancelled") << QMessageBox::Yes << 1;
    }
    void openShowsTheFirstLevelOfTheFile() {
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(int, saveDialogs);
        FileSession s;
        const QString path = s.writeSample("Some Levels.BIN", 3);
        QVERIFY(!path.isEmpty());
        s.showSampleAtLevel5(UntitledPath);
        s.levelset().levels[4].tile(0, 0) = 99; // a level the file does not cover
        s.answer({answer});
        s.dialogs.openAnswers.enqueue(path);

        s.window.mnuFileOpen_Click();

        QCOMPARE(s.dialogs.saveQuestions.size(), saveDialogs);
        QCOMPARE(stored(s.levelset()), stored(sample(3)));
        QCOMPARE(s.levelset().levels[4].tile(0, 0), 0);
        QCOMPARE(s.levelset().currentLevel, 0);
        QCOMPARE(s.levelset().levelsetPath, path);
        QCOMPARE(s.title(), windowTitle(path));
        QCOMPARE(s.label(), "Level: 1 / 3");
        QCOMPARE(s.status(), "Opened " + path);
        QCOMPARE(s.files(), QStringList{"Some Levels.BIN"});
    }

    void openReportsWhatTheReaderRepaired() {
        FileSession s;
        const QString path = s.at("zkstlcut.kst");
        QVERIFY(putFile(path, writeLevelset(sample(), path).left(100)));
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(path);

        s.window.mnuFileOpen_Click();

        QVERIFY2(s.status().startsWith("Opened " + path + ": "), qPrintable(s.status()));
        QCOMPARE(s.levelset().levelCount, 5);
        QCOMPARE(s.label(), "Level: 1 / 5");
    }

    void openOfAMissingFileNamesItForTheNextSave() {
        FileSession s;
        const QString path = s.at("zkstlnew.kst");
        s.showSampleAtLevel5(UntitledPath);
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(path);

        s.window.mnuFileOpen_Click();

        QCOMPARE(stored(s.levelset()), stored(Levelset()));
        QCOMPARE(s.title(), windowTitle(path));
        QCOMPARE(s.status(), "Could not open " + path);
        QCOMPARE(s.files(), QStringList());

        s.window.mnuFileSave_Click();

        QVERIFY(s.dialogs.saveQuestions.isEmpty());
        QCOMPARE(fileBytes(path), writeLevelset(Levelset(), path));
    }
};

QTEST_MAIN(LifecycleTest)
#include "LifecycleTest.moc"
