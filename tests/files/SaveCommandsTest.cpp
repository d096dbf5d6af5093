// Save, Save As and the writer's guard and failures, driven through a real main window.

#include "EditorFixture.h"

#include "levelset/LevelsetFile.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

class SaveCommandsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> tmp;
    std::unique_ptr<Editor> editor;

    QString at(const QString &name) const { return tmp->filePath(name); }
    QString untitledTitle() const { return windowTitle(UntitledPath); }

    // Gives the levelset a file by saving it once under a valid name.
    QString saveAsOnce(const QString &name) {
        editor->answerSave(at(name));
        editor->window.mnuFileSaveAs_Click();
        editor->dialogs.messages.clear();
        editor->dialogs.saveQuestions.clear();
        return at(name);
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

    void saveAsWritesTheLowerCaseFileNameInTheChosenFolder() {
        QVERIFY(QDir(tmp->path()).mkdir(QStringLiteral("Levels")));
        editor->levelset().levels[0].tile(3, 1) = 89;
        editor->answerSave(at(QStringLiteral("Levels/ZKSTLAbc.KST")));

        editor->window.mnuFileSaveAs_Click();

        const auto &asked = editor->dialogs.saveQuestions;
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0].title, QStringLiteral("Save As"));
        QCOMPARE(asked[0].filter, DialogFilter);
        QCOMPARE(asked[0].dir, QCoreApplication::applicationDirPath());
        QVERIFY(editor->dialogs.messages.isEmpty());

        // Only the file name changes case: the folder that was chosen is the one written.
        const QString written = at(QStringLiteral("Levels/zkstlabc.kst"));
        QCOMPARE(filesBelow(tmp->path()), QStringList{QStringLiteral("Levels/zkstlabc.kst")});
        const QByteArray bytes = fileBytes(written);
        QCOMPARE(bytes.size(), 164);
        QCOMPARE(bytes.left(7), QByteArray("KST0ABC"));
        QCOMPARE(bytes.at(7), char(1));
        QCOMPARE(bytes.at(83), char(89)); // column 3, row 1 of a 12-column level
        QCOMPARE(bytes, writeLevelset(editor->levelset(), written));

        QCOMPARE(editor->levelset().levelsetPath, written);
        QCOMPARE(editor->title(), QStringLiteral("[") + written + "] - Kestrix: Levelset Editor");
        QCOMPARE(editor->status(), QStringLiteral("Saved ") + written);
    }

    void refusedNamesReopenTheDialog_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("two name characters") << QStringLiteral("zkstlab.kst");
        QTest::newRow("four name characters") << QStringLiteral("zkstlabcd.kst");
        QTest::newRow("no zkstl prefix") << QStringLiteral("abc.kst");
        QTest::newRow("text before the prefix") << QStringLiteral("myzkstlabc.kst");
        QTest::newRow("other extension") << QStringLiteral("zkstlabc.txt");
        QTest::newRow("extension not last") << QStringLiteral("zkstlabc.kst.bak");
        QTest::newRow("valid folder, plain file") << QStringLiteral("zkstlabc.kst/level.kst");
    }
    void refusedNamesReopenTheDialog() {
        QFETCH(QString, name);
        QVERIFY(QDir(tmp->path()).mkpath(QStringLiteral("zkstlabc.kst")));
        editor->answerSave(at(name));
        editor->answerSave(QString()); // cancelled after the message

        editor->window.mnuFileSaveAs_Click();

        QCOMPARE(editor->dialogs.saveQuestions.size(), 2);
        QCOMPARE(editor->dialogs.messages.size(), 1);
        const ScriptedDialogs::Message &m = editor->dialogs.messages[0];
        QCOMPARE(m.text, InvalidNameText);
        QCOMPARE(m.title, ApplicationTitle);
        QCOMPARE(m.icon, QMessageBox::Warning);
        QCOMPARE(m.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(filesBelow(tmp->path()), QStringList());
        QCOMPARE(editor->levelset().levelsetPath, UntitledPath);
        QCOMPARE(editor->title(), untitledTitle());
    }

    void refusedNameThenValidNameWrites() {
        editor->answerSave(at(QStringLiteral("abc.kst")));
        editor->answerSave(at(QStringLiteral("zkstlab.kst")));
        editor->answerSave(at(QStringLiteral("zkstlXY1.kst")));

        editor->window.mnuFileSaveAs_Click();

        QCOMPARE(editor->dialogs.saveQuestions.size(), 3);
        QCOMPARE(editor->dialogs.messageTexts(), QStringList(2, InvalidNameText));
        QCOMPARE(filesBelow(tmp->path()), QStringList{QStringLiteral("zkstlxy1.kst")});
        QCOMPARE(fileBytes(at(QStringLiteral("zkstlxy1.kst"))).left(7), QByteArray("KST0XY1"));
    }

    void saveOfUntitledLevelsetAsksForAName() {
        editor->window.mnuFileSave_Click(); // the dialog is cancelled

        QCOMPARE(editor->dialogs.saveQuestions.size(), 1);
        QCOMPARE(editor->dialogs.saveQuestions[0].title, QStringLiteral("Save As"));
        QVERIFY(editor->dialogs.messages.isEmpty());
        QCOMPARE(filesBelow(tmp->path()), QStringList());
        QCOMPARE(editor->title(), untitledTitle());
    }

    void saveOfNamedLevelsetWritesAtOnce() {
        const QString path = saveAsOnce(QStringLiteral("zkstlone.kst"));
        editor->levelset().levels[0].tile(0, 0) = 42;

        editor->window.mnuFileSave_Click();

        QVERIFY(editor->dialogs.saveQuestions.isEmpty());
        QVERIFY(editor->dialogs.messages.isEmpty());
        QCOMPARE(fileBytes(path).at(52 + 16), char(42));
        QCOMPARE(editor->title(), windowTitle(path));
    }

    void saveAsOfNamedLevelsetAsksAndMovesToTheNewFile() {
        const QString first = saveAsOnce(QStringLiteral("zkstlone.kst"));
        const QByteArray firstBytes = fileBytes(first);
        editor->levelset().levels[0].tile(0, 0) = 42;
        editor->answerSave(at(QStringLiteral("zkstltwo.kst")));

        editor->window.mnuFileSaveAs_Click();

        QCOMPARE(editor->dialogs.saveQuestions.size(), 1);
        QCOMPARE(fileBytes(first), firstBytes);
        const QString second = at(QStringLiteral("zkstltwo.kst"));
        QCOMPARE(fileBytes(second).left(7), QByteArray("KST0TWO"));
        QCOMPARE(fileBytes(second).at(52 + 16), char(42));
        QCOMPARE(editor->title(), windowTitle(second));
    }

    void saveAfterOpenWritesTheLowerCaseFileName() {
        QVERIFY(QDir(tmp->path()).mkdir(QStringLiteral("Levels")));
        const QString opened = at(QStringLiteral("Levels/ZKSTLxyz.KST"));
        Levelset sample;
        fillSample(sample);
        const QByteArray original = writeLevelset(sample, opened);
        QVERIFY(putFile(opened, original));
        editor->answer({QMessageBox::No});
        editor->answerOpen(opened);
        editor->window.mnuFileOpen_Click();
        QCOMPARE(editor->title(), windowTitle(opened));

        editor->window.mnuFileSave_Click();

        QVERIFY(editor->dialogs.saveQuestions.isEmpty());
        const QString written = at(QStringLiteral("Levels/zkstlxyz.kst"));
        QCOMPARE(filesBelow(tmp->path()), (QStringList{QStringLiteral("Levels/ZKSTLxyz.KST"),
                                                       QStringLiteral("Levels/zkstlxyz.kst")}));
        QCOMPARE(fileBytes(opened), original);
        const QByteArray bytes = fileBytes(written);
        QCOMPARE(bytes.left(7), QByteArray("KST0XYZ"));
        QCOMPARE(bytes.mid(7), original.mid(7));
        QCOMPARE(editor->levelset().levelsetPath, written);
        QCOMPARE(editor->title(), windowTitle(written));
    }

    // Every way to a save refuses a levelset whose level 3 holds 11 alien holes.
    void tooManyHolesRefusesEverySave_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("Save") << QStringLiteral("Save");
        QTest::newRow("Save As") << QStringLiteral("Save As");
        QTest::newRow("New, then Yes") << QStringLiteral("New");
        QTest::newRow("close, then Yes") << QStringLiteral("close");
    }
    void tooManyHolesRefusesEverySave() {
        QFETCH(QString, command);
        const QString path = saveAsOnce(QStringLiteral("zkstlold.kst"));
        const QByteArray before = fileBytes(path);
        Levelset &ls = editor->levelset();
        ls.levelCount = 4;
        for (int i = 0; i < 11; ++i)
            ls.levels[2].tile(i, i % 8) = i % 2 ? 69 : 70;
        editor->answerSave(at(QStringLiteral("zkstlnew.kst")));

        bool closeCancelled = false;
        if (command == "Save") {
            editor->window.mnuFileSave_Click();
        } else if (command == "Save As") {
            editor->window.mnuFileSaveAs_Click();
        } else if (command == "New") {
            editor->answer({QMessageBox::Yes});
            editor->window.mnuFileNew_Click();
        } else {
            editor->answer({QMessageBox::Yes});
            editor->window.Form_QueryUnload(closeCancelled);
        }

        const QList<ScriptedDialogs::Message> &shown = editor->dialogs.messages;
        QVERIFY(!shown.isEmpty());
        const ScriptedDialogs::Message &refusal = shown.last();
        QCOMPARE(refusal.text,
                 QStringLiteral("Either too many Alien Holes or Security Guards on Level 3"));
        QCOMPARE(refusal.title, QStringLiteral("Error!"));
        QCOMPARE(refusal.icon, QMessageBox::Critical);
        QCOMPARE(refusal.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(filesBelow(tmp->path()), QStringList{QStringLiteral("zkstlold.kst")});
        QCOMPARE(fileBytes(path), before);

        if (command == "New") { // the refused save does not stop the reset
            QCOMPARE(ls.levelCount, 1);
            QCOMPARE(ls.levelsetPath, UntitledPath);
            QCOMPARE(editor->title(), untitledTitle());
        } else {
            QCOMPARE(ls.levelCount, 4);
            QCOMPARE(ls.levelsetPath, path);
            QCOMPARE(editor->title(), windowTitle(path));
            QVERIFY(!closeCancelled);
        }
    }

    // The platform's own save dialog, answered the way a user would: it offers the levelset
    // filter in the program's folder and replaces an existing file without a question.
    void platformSaveDialogReplacesWithoutAsking() {
        const QString path = at(QStringLiteral("zkstlabc.kst"));
        QVERIFY(putFile(path, "an older levelset"));
        frmMain window;
        window.Form_Load();
        window.show();
        QString title, folder;
        QStringList filters;
        int otherModals = 0;
        int ticks = 0;
        QTimer answerer;
        connect(&answerer, &QTimer::timeout, this, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (auto *dialog = qobject_cast<QFileDialog *>(modal)) {
                title = dialog->windowTitle();
                filters = dialog->nameFilters();
                folder = dialog->directory().absolutePath();
                // Typed as a user types it; selectFile() would race the folder's loading.
                auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
                // A question, or a dialog that will not take the name: give up, never hang.
                if (!name || otherModals > 0 || ++ticks > 100) {
                    dialog->reject();
                    return;
                }
                name->setText(path);
                static_cast<QDialog *>(dialog)->accept(); // as the Save button does
            } else if (modal) {
                ++otherModals;
                modal->close();
            }
        });
        answerer.start(20);

        window.mnuFileSaveAs_Click();

        answerer.stop();
        QCOMPARE(title, QStringLiteral("Save As"));
        QCOMPARE(filters, QStringList{QStringLiteral("KST Levelsets (zkstl*.kst)")});
        QCOMPARE(folder, QDir(QCoreApplication::applicationDirPath()).absolutePath());
        QCOMPARE(otherModals, 0);
        QCOMPARE(fileBytes(path), writeLevelset(window.levelset, path));
        QCOMPARE(window.windowTitle(), windowTitle(path));
    }

    // A write that fails leaves whatever was on disk, and the status bar names the failure.
    void failedWriteKeepsTheOldFile_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("exists");
        QTest::newRow("missing folder") << QStringLiteral("missing/zkstlabc.kst") << false;
        QTest::newRow("through a regular file") << QStringLiteral("plain/zkstlabc.kst") << false;
        // The atomic write's temporary neighbour would pass the 255-byte name limit.
        QTest::newRow("temporary name too long")
            << QStringLiteral("zkstlabc") + QString(240, QLatin1Char('a')) + ".kst" << true;
    }
    void failedWriteKeepsTheOldFile() {
        QFETCH(QString, name);
        QFETCH(bool, exists);
        QVERIFY(putFile(at(QStringLiteral("plain")), "not a folder"));
        const QString path = at(name);
        Levelset sample;
        fillSample(sample);
        const QByteArray old = exists ? writeLevelset(sample, path) : QByteArray();
        if (exists)
            QVERIFY(putFile(path, old));
        const QStringList filesBefore = filesBelow(tmp->path());
        editor->answer({QMessageBox::No});
        editor->answerOpen(path);
        editor->window.mnuFileOpen_Click();
        editor->levelset().levels[0].tile(0, 0) = 42;

        editor->window.mnuFileSave_Click();

        QCOMPARE(editor->dialogs.messages.size(), 1); // only the prompt: the failure is quiet
        QCOMPARE(filesBelow(tmp->path()), filesBefore);
        QCOMPARE(fileBytes(path), old);
        const QString prefix = QStringLiteral("Could not write ") + path + ": ";
        QVERIFY2(editor->status().startsWith(prefix), qPrintable(editor->status()));
        QVERIFY(editor->status().size() > prefix.size());
        QCOMPARE(editor->title(), windowTitle(path));
    }
};

QTEST_MAIN(SaveCommandsTest)
#include "SaveCommandsTest.moc"
