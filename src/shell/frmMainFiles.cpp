#include "shell/frmMain.h"

#include "analysis/HolesAndGuards.h"
#include "dialogs/Dialogs.h"
#include "levelset/LevelsetFile.h"
#include "levelset/LevelsetName.h"

#include <QCoreApplication>

// The file commands, the close request and saveLevelset.

namespace {

const QString LevelsetFilter = QStringLiteral("KST Levelsets (zkstl*.kst)|zkstl*.kst");

enum class PromptAnswer { Save, Discard, Cancel };

// "Save current Levelset?" before New, Open and closing. A box closed without a button counts
// as Cancel, so nothing is thrown away that the user did not choose to lose.
PromptAnswer askToSave(Dialogs &dialogs) {
    switch (dialogs.message(QStringLiteral("Save current Levelset?"), ApplicationTitle,
                            QMessageBox::NoIcon,
                            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
    case QMessageBox::Yes:
        return PromptAnswer::Save;
    case QMessageBox::No:
        return PromptAnswer::Discard;
    default:
        return PromptAnswer::Cancel;
    }
}

// Both dialogs start in the folder that holds the program.
QString dialogFolder() {
    return QCoreApplication::applicationDirPath();
}

// Shows the save dialog until it yields a name that follows the levelset name rule; returns the
// path to write, or an empty text when the user cancels.
QString chooseSavePath(Dialogs &dialogs) {
    for (;;) {
        const QString chosen =
            dialogs.saveFileName(QStringLiteral("Save As"), LevelsetFilter, dialogFolder());
        if (chosen.isEmpty())
            return {};
        if (isValidLevelsetFileName(chosen))
            return saveFormOfPath(chosen);
        dialogs.message(QStringLiteral("Invalid file name! Must be of the format: zkstl???.kst, "
                                       "where ??? is the Levelset name."),
                        ApplicationTitle, QMessageBox::Warning, QMessageBox::Ok);
    }
}

} // namespace

void frmMain::mnuFileNew_Click() {
    const PromptAnswer answer = askToSave(dialogs());
    if (answer == PromptAnswer::Cancel)
        return;
    if (answer == PromptAnswer::Save)
        mnuFileSave_Click(); // whatever came of it, the levelset is replaced
    newLevelset();
}

void frmMain::mnuFileOpen_Click() {
    const PromptAnswer answer = askToSave(dialogs());
    if (answer == PromptAnswer::Cancel)
        return;
    if (answer == PromptAnswer::Save)
        mnuFileSave_Click();

    // Opening takes the name as the dialog gives it: no name rule, no change of case.
    const QString path =
        dialogs().openFileName(QStringLiteral("Open"), LevelsetFilter, dialogFolder());
    if (path.isEmpty())
        return;

    newLevelset();
    levelset.levelsetPath = path;
    setWindowTitle(::windowTitle(path));
    // A file that cannot be opened leaves the fresh levelset under the chosen path, so that a
    // later Save creates it there.
    const std::optional<ReadReport> report = readLevelsetFile(levelset, path);
    if (!report)
        setStatusText(QStringLiteral("Could not open ") + path);
    else if (report->clean())
        setStatusText(QStringLiteral("Opened ") + path);
    else
        setStatusText(QStringLiteral("Opened ") + path + QStringLiteral(": ") + report->summary());

    levelset.currentLevel = 0;
    drawLevel(levelset.currentLevel);
    updateLevelLabel();
    loadLevel(levelset.currentLevel);
}

void frmMain::mnuFileSave_Click() {
    // A levelset that has a file is written back to that very file at once: no dialog, and no
    // name rule, since an opened file may have any name.
    if (levelset.levelsetPath != UntitledPath) {
        saveLevelset(resavePath(levelset.levelsetPath));
        return;
    }
    mnuFileSaveAs_Click();
}

void frmMain::mnuFileSaveAs_Click() {
    const QString path = chooseSavePath(dialogs());
    if (!path.isEmpty())
        saveLevelset(path);
}

void frmMain::Form_QueryUnload(bool &cancel) {
    const PromptAnswer answer = askToSave(dialogs());
    if (answer == PromptAnswer::Cancel) {
        cancel = true;
        return;
    }
    if (answer == PromptAnswer::Save)
        mnuFileSave_Click(); // the window closes whatever came of the save
}

void frmMain::saveLevelset(const QString &path) {
    if (const int level = checkHolesAndGuards(levelset); level != 0) {
        dialogs().message(holesAndGuardsMessage(level), HolesAndGuardsTitle, QMessageBox::Critical,
                          QMessageBox::Ok);
        return;
    }

    levelset.levelsetPath = path;
    setWindowTitle(::windowTitle(path));

    // The write is atomic: on failure the file on disk is as it was, and only the status bar
    // tells the user, so a failed save is never mistaken for a done one.
    const ReplaceResult result = saveLevelsetFile(levelset, path);
    if (!result.ok())
        setStatusText(QStringLiteral("Could not write %1: %2").arg(path, result.failure));
    else if (result.inPlace)
        setStatusText(QStringLiteral("Saved %1 in place: its folder takes no new file").arg(path));
    else
        setStatusText(QStringLiteral("Saved ") + path);
}
