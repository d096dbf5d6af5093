// Save, Save As and the writer's guard and failures, driven through a real main window.

#include "FileSession.h"
#include "support/FileSizeLimit.h"

#include <QFileDialog>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

class SaveCommandsTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QApplication::setQuitOnLastWindowClosed(false);
        ::umask(022);
    }

    // The dialog is answered with each name in turn, "" cancelling it; every refused name
    // brings the message and the dialog back (the name rule itself is the model tests' concern).
    // Only the file name changes case: the folder chosen is the one written.
    void saveDialogReopensUntilAValidNameOrCancel_data() {
        QTest::addColumn<bool>("viaSave"); // Save of the untitled levelset rather than Save As
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("tag");
        QTest::newRow("mixed case in a folder") << false << QStringList{"Levels/ZKSTLAbc.KST"}
                                                << "Levels/zkstlabc.kst" << QByteArray("KST0ABC");
        const auto refused = [](const char *tag, const QString &name) {
            QTest::newRow(tag) << false << QStringList{name, ""} << "" << QByteArray();
        };
        refused("two name characters", "zkstlab.kst");
        refused("four name characters", "zkstlabcd.kst");
        refused("no zkstl prefix", "abc.kst");
        refused("valid folder, plain file", "zkstlabc.kst/level.kst");
        QTest::newRow("Save, cancelled at once") << true << QStringList{""} << "" << QByteArray();
        QTest::newRow("two refused, then valid")
            << false << QStringList{"abc.kst", "zkstlab.kst", "zkstlXY1.kst"} << "zkstlxy1.kst"
            << QByteArray("KST0XY1");
    }
    void saveDialogReopensUntilAValidNameOrCancel() {
        QFETCH(bool, viaSave);
        QFETCH(QStringList, answers);
        QFETCH(QString, written);
        QFETCH(QByteArray, tag);
        FileSession s;
        QVERIFY(QDir(s.folder.path()).mkpath("zkstlabc.kst"));
        QVERIFY(QDir(s.folder.path()).mkpath("Levels"));
        s.levelset().levels[0].tile(3, 1) = 89;
        for (const QString &name : answers)
            s.dialogs.saveAnswers.enqueue(name.isEmpty() ? name : s.at(name));

        viaSave ? s.window.mnuFileSave_Click() : s.window.mnuFileSaveAs_Click();

        QCOMPARE(s.dialogs.saveQuestions.size(), answers.size());
        for (const ScriptedDialogs::FileQuestion &asked : s.dialogs.saveQuestions) {
            QCOMPARE(asked.title, "Save As");
            QCOMPARE(asked.filter, DialogFilter);
            QCOMPARE(asked.dir, QCoreApplication::applicationDirPath());
        }
        QCOMPARE(s.dialogs.messages.size(), answers.size() - 1);
        for (const ScriptedDialogs::Message &m : s.dialogs.messages) {
            QCOMPARE(m.text, "Invalid file name! Must be of the format: zkstl???.kst, where ??? "
                             "is the Levelset name.");
            QCOMPARE(m.title, "Kestrix: Levelset Editor");
            QCOMPARE(m.icon, QMessageBox::Warning);
            QCOMPARE(m.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        }
        QCOMPARE(s.files(), written.isEmpty() ? QStringList() : QStringList{written});
        const QString path = written.isEmpty() ? UntitledPath : s.at(written);
        QCOMPARE(s.levelset().levelsetPath, path);
        QCOMPARE(s.title(), windowTitle(path));
        if (written.isEmpty())
            return;
        const QByteArray bytes = fileBytes(path);
        QCOMPARE(bytes.size(), 164);
        QCOMPARE(bytes.left(8), tag + '\1');
        QCOMPARE(bytes.at(83), char(89)); // column 3, row 1 of a 12-column level
        QCOMPARE(bytes, writeLevelset(s.levelset(), path));
        QCOMPARE(s.status(), "Saved " + path);
        // A new file is made as any program makes one (initTestCase sets the mask).
        QCOMPARE(modeOf(path),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    }

    // Save writes a named levelset in place at once; Save As asks and moves it to the new file.
    void saveWritesInPlaceAndSaveAsMovesOn() {
        FileSession s;
        const QString first = s.saveAsOnce("zkstlone.kst");
        s.levelset().levels[0].tile(0, 0) = 42;

        s.window.mnuFileSave_Click();

        QVERIFY(s.dialogs.saveQuestions.isEmpty());
        QVERIFY(s.dialogs.messages.isEmpty());
        const QByteArray firstBytes = fileBytes(first);
        QCOMPARE(firstBytes.at(LevelsetFilePrologueSize + 16), char(42));
        QCOMPARE(s.title(), windowTitle(first));

        s.levelset().levels[0].tile(0, 0) = 43;
        s.dialogs.saveAnswers.enqueue(s.at("zkstltwo.kst"));
        s.window.mnuFileSaveAs_Click();

        QCOMPARE(s.dialogs.saveQuestions.size(), 1);
        QCOMPARE(fileBytes(first), firstBytes);
        const QByteArray second = fileBytes(s.at("zkstltwo.kst"));
        QCOMPARE(second.left(7), QByteArray("KST0TWO"));
        QCOMPARE(second.at(LevelsetFilePrologueSize + 16), char(43));
        QCOMPARE(s.title(), windowTitle(s.at("zkstltwo.kst")));
    }

    // Where names keep their case, lower-casing could name another file: Save rewrites the one
    // opened, and the title goes on naming it.
    void saveAfterOpenRewritesTheOpenedFileNotItsLowerCaseNamesake() {
        FileSession s;
        const QString opened = s.writeSample("ZKSTLxyz.KST");
        const QString namesake = s.writeSample("zkstlxyz.kst", 2);
        const QByteArray namesakeBytes = fileBytes(namesake);
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(opened);
        s.window.mnuFileOpen_Click();
        s.levelset().levels[0].tile(0, 0) = 42;

        s.window.mnuFileSave_Click();

        QVERIFY(s.dialogs.saveQuestions.isEmpty());
        QCOMPARE(fileBytes(namesake), namesakeBytes);
        const QByteArray written = fileBytes(opened);
        QCOMPARE(written.left(7), "KST0XYZ");
        QCOMPARE(written, writeLevelset(s.levelset(), opened));
        QCOMPARE(written.at(LevelsetFilePrologueSize + 16), char(42));
        QCOMPARE(s.levelset().levelsetPath, opened);
        QCOMPARE(s.title(), windowTitle(opened));
        QCOMPARE(s.status(), "Saved " + opened);
    }

    // A save through a symbolic link rewrites the file it leads to and keeps both the link and
    // that file's permissions.
    void saveThroughALinkKeepsTheLinkAndTheMode() {
        FileSession s;
        QVERIFY(QDir(s.folder.path()).mkdir("real"));
        const QString target = s.writeSample("real/zkstlabc.kst");
        const auto mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(target, mode));
        const QString link = s.at("zkstllnk.kst");
        QVERIFY(QFile::link("real/zkstlabc.kst", link));
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(link);
        s.window.mnuFileOpen_Click();
        s.levelset().levels[0].tile(0, 0) = 42;

        s.window.mnuFileSave_Click();

        QCOMPARE(QFileInfo(link).symLinkTarget(), target);
        QCOMPARE(fileBytes(target), writeLevelset(s.levelset(), link));
        QCOMPARE(modeOf(target), mode);
        QCOMPARE(s.files(), (QStringList{"real/zkstlabc.kst", "zkstllnk.kst"}));
    }

    // A writable file in a folder that takes no new file is written directly. Root writes
    // anywhere, so this runs as another user: a copy of this program, run by nobody.
    void writableFileInAClosedFolderIsSavedInPlace() {
        const char *const self = "writableFileInAClosedFolderIsSavedInPlace";
        if (::geteuid() == 0) {
            QTemporaryDir bin;
            const QString copy = bin.filePath("files_save");
            QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
            QVERIFY(QFile::setPermissions(bin.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                          QFile::ExeOwner | QFile::ReadOther |
                                                          QFile::ExeOther));
            QProcess child;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("TMPDIR", QDir::tempPath());
            environment.remove("XDG_RUNTIME_DIR"); // root's own; Qt makes one for nobody
            // The suppressions file may sit in a folder only root can read: nobody gets a copy.
            const QString leakOptions = environment.value("LSAN_OPTIONS");
            const auto suppressions = QRegularExpression("suppressions=([^:]+)").match(leakOptions);
            if (suppressions.hasMatch()) {
                const QString readable = bin.filePath("lsan.supp");
                QVERIFY(QFile::copy(suppressions.captured(1), readable));
                QVERIFY(QFile::setPermissions(readable, QFile::ReadOwner | QFile::ReadOther));
                environment.insert(
                    "LSAN_OPTIONS",
                    QString(leakOptions).replace(suppressions.captured(1), readable));
            }
            child.setProcessEnvironment(environment);
            child.setProcessChannelMode(QProcess::MergedChannels);
            child.start("setpriv",
                        {"--reuid=nobody", "--regid=nogroup", "--clear-groups", "--", copy, self});
            QVERIFY(child.waitForFinished(60000));
            const QString output = QString::fromUtf8(child.readAll());
            QVERIFY2(child.exitCode() == 0 && output.contains(QStringLiteral("PASS   : "
                                                                             "SaveCommandsTest::") +
                                                              self),
                     qPrintable(output));
            return;
        }
        FileSession s;
        const QString path = s.writeSample("zkstlabc.kst");
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(path);
        s.window.mnuFileOpen_Click();
        s.levelset().levels[0].tile(0, 0) = 42;
        const QFile::Permissions open = QFile::permissions(s.folder.path());
        QVERIFY(QFile::setPermissions(s.folder.path(), QFile::ReadOwner | QFile::ExeOwner));

        s.window.mnuFileSave_Click();

        QVERIFY(QFile::setPermissions(s.folder.path(), open));
        QCOMPARE(fileBytes(path), writeLevelset(s.levelset(), path));
        QCOMPARE(s.files(), QStringList{"zkstlabc.kst"});
        QCOMPARE(s.status(), "Saved " + path + " in place: its folder takes no new file");
    }

    // Every way to a save refuses a levelset whose level 3 holds 11 alien holes.
    void tooManyHolesRefusesEverySave_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("Save") << "Save";
        QTest::newRow("Save As") << "Save As";
        QTest::newRow("New, then Yes") << "New";
        QTest::newRow("close, then Yes") << "close";
    }
    void tooManyHolesRefusesEverySave() {
        QFETCH(QString, command);
        FileSession s;
        const QString path = s.saveAsOnce("zkstlold.kst");
        const QByteArray before = fileBytes(path);
        Levelset &ls = s.levelset();
        ls.levelCount = 4;
        for (int i = 0; i < 11; ++i)
            ls.levels[2].tile(i, i % 8) = i % 2 ? 69 : 70;
        s.dialogs.saveAnswers.enqueue(s.at("zkstlnew.kst"));
        s.answer({QMessageBox::Yes});

        bool closeCancelled = false;
        if (command == "Save")
            s.window.mnuFileSave_Click();
        else if (command == "Save As")
            s.window.mnuFileSaveAs_Click();
        else if (command == "New")
            s.window.mnuFileNew_Click();
        else
            s.window.Form_QueryUnload(closeCancelled);

        QVERIFY(!s.dialogs.messages.isEmpty());
        const ScriptedDialogs::Message &refusal = s.dialogs.messages.last();
        QCOMPARE(refusal.text, "Either too many Alien Holes or Security Guards on Level 3");
        QCOMPARE(refusal.title, "Error!");
        QCOMPARE(refusal.icon, QMessageBox::Critical);
        QCOMPARE(refusal.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(s.files(), QStringList{"zkstlold.kst"});
        QCOMPARE(fileBytes(path), before);
        // The refused save does not stop New's reset, nor the close.
        QCOMPARE(ls.levelCount, command == "New" ? 1 : 4);
        QCOMPARE(ls.levelsetPath, command == "New" ? UntitledPath : path);
        QCOMPARE(s.title(), windowTitle(ls.levelsetPath));
        QVERIFY(!closeCancelled);
    }

    // The platform's own save dialog, answered as a user would: it offers the levelset filter
    // in the program's folder and replaces an existing file without a question.
    void platformSaveDialogReplacesWithoutAsking() {
        QTemporaryDir folder;
        const QString path = folder.filePath("zkstlabc.kst");
        QVERIFY(putFile(path, "an older levelset"));
        frmMain window;
        window.Form_Load();
        window.show();
        QString title, shownFolder;
        QStringList filters;
        int otherModals = 0;
        int ticks = 0;
        QTimer answerer;
        connect(&answerer, &QTimer::timeout, this, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (auto *dialog = qobject_cast<QFileDialog *>(modal)) {
                title = dialog->windowTitle();
                filters = dialog->nameFilters();
                shownFolder = dialog->directory().absolutePath();
                // Typed as a user types it: selectFile() would race the folder's loading.
                auto *name = dialog->findChild<QLineEdit *>("fileNameEdit");
                if (!name || otherModals > 0 || ++ticks > 100) { // never hang
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
        QCOMPARE(title, "Save As");
        QCOMPARE(filters, QStringList{"KST Levelsets (zkstl*.kst)"});
        QCOMPARE(shownFolder, QDir(QCoreApplication::applicationDirPath()).absolutePath());
        QCOMPARE(otherModals, 0);
        QCOMPARE(fileBytes(path), writeLevelset(window.levelset, path));
        QCOMPARE(window.windowTitle(), windowTitle(path));
    }

    // A write that fails leaves whatever was on disk, quietly: the status bar names the failure.
    void failedWriteKeepsTheOldFile_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<int>("sizeLimit"); // bytes a file may grow to; 0 for no limit
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing folder") << "missing/zkstlabc.kst" << false << 0 << "";
        QTest::newRow("through a regular file") << "plain/zkstlabc.kst" << false << 0 << "";
        QTest::newRow("target is a folder") << "folder.kst" << false << 0 << "Is a directory";
        // Fails the write at its last flush, where a full disk or a quota fails it.
        QTest::newRow("write cut short") << "zkstlabc.kst" << true << 100 << "File too large";
    }
    void failedWriteKeepsTheOldFile() {
        QFETCH(QString, name);
        QFETCH(bool, exists);
        QFETCH(int, sizeLimit);
        QFETCH(QString, reason);
        FileSession s;
        QVERIFY(QDir(s.folder.path()).mkdir("folder.kst"));
        QVERIFY(putFile(s.at("plain"), "not a folder"));
        const QString path = s.at(name);
        QVERIFY(!exists || !s.writeSample(name).isEmpty());
        const QByteArray old = fileBytes(path);
        const QStringList filesBefore = s.files();
        s.answer({QMessageBox::No});
        s.dialogs.openAnswers.enqueue(path);
        s.window.mnuFileOpen_Click();
        s.levelset().levels[0].tile(0, 0) = 42;

        {
            std::optional<FileSizeLimit> limit;
            if (sizeLimit > 0)
                limit.emplace(sizeLimit);
            s.window.mnuFileSave_Click();
        }

        QCOMPARE(s.dialogs.messages.size(), 1); // the prompt alone
        QCOMPARE(s.files(), filesBefore);
        QCOMPARE(fileBytes(path), old);
        const QString prefix = "Could not write " + path + ": ";
        QVERIFY2(s.status().startsWith(prefix) && s.status().endsWith(reason) &&
                     s.status().size() > prefix.size(),
                 qPrintable(s.status()));
        QCOMPARE(s.title(), windowTitle(path));
    }
};

QTEST_MAIN(SaveCommandsTest)
#include "SaveCommandsTest.moc"
