#include "MonkeyShared.h"
#include "analysis/HolesAndGuards.h"
#include "shell/frmMain.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>

// The course the file commands must take with the answers the user gave: the prompt, the save
// dialog until a name follows the rule, the check that refuses a crowded level, the writer, and
// Open reading back what a save wrote.

using namespace monkey;

namespace {
const QString InvalidNameText = QStringLiteral(
    "Invalid file name! Must be of the format: zkstl???.kst, where ??? is the Levelset name.");
} // namespace

QString MonkeyWalk::checkFileCommand(Command command, const Before &before) {
    const frmMain &w = *window_;
    const bool prompts = command != Command::Save && command != Command::SaveAs;
    QMessageBox::StandardButton answer = QMessageBox::No;
    if (prompts) {
        if (dialogs_.promptAnswers.size() != 1)
            return QStringLiteral("the save prompt was asked %1 times")
                .arg(dialogs_.promptAnswers.size());
        answer = dialogs_.promptAnswers[0];
    } else if (!dialogs_.promptAnswers.isEmpty()) {
        return QStringLiteral("a save asked whether to save");
    }

    QString fault;
    if (answer == QMessageBox::Yes || !prompts)
        fault = expectSave(before.levelset, command == Command::SaveAs, !prompts);
    if (!fault.isEmpty())
        return fault;

    if (saveNamesUsed_ != dialogs_.givenSaveNames.size())
        return QStringLiteral("the save dialog was shown %1 times, %2 expected")
            .arg(dialogs_.givenSaveNames.size())
            .arg(saveNamesUsed_);
    const auto messagesWith = [this](auto matches) {
        int found = 0;
        for (const auto &m : dialogs_.messages)
            found += matches(m);
        return found;
    };
    const int invalid = messagesWith(
        [](const auto &m) { return m.text == InvalidNameText && m.icon == QMessageBox::Warning; });
    const int refused = messagesWith([](const auto &m) {
        return m.title == QStringLiteral("Error!") && m.icon == QMessageBox::Critical;
    });
    if (invalid != invalidNameMessages_ || refused != refusals_ ||
        dialogs_.messages.size() != invalid + refused + (prompts ? 1 : 0))
        return QStringLiteral("%1 invalid-name and %2 refusal messages of %3, expected %4 and %5")
            .arg(invalid)
            .arg(refused)
            .arg(dialogs_.messages.size())
            .arg(invalidNameMessages_)
            .arg(refusals_);

    const bool cancelled = prompts && answer == QMessageBox::Cancel;
    const Levelset &now = w.levelset;
    if (cancelled || !prompts) {
        if (!sameStoredContent(now, before.levelset) ||
            now.currentLevel != before.levelset.currentLevel)
            return QStringLiteral("the levelset changed although nothing was to replace it");
        return {};
    }

    if (command == Command::Exit || command == Command::Close) {
        if (w.isVisible())
            return QStringLiteral("the window stayed open after %1").arg(buttonName(answer));
        count(QStringLiteral("reopened"));
        openWindow();
        return {};
    }

    if (command == Command::New) {
        expectedPath_ = UntitledPath;
        if (!sameStoredContent(now, Levelset()) || now.levels != Levelset().levels)
            return QStringLiteral("New left something of the old levelset");
        return {};
    }

    // Open
    if (dialogs_.givenOpenNames.size() != 1)
        return QStringLiteral("the open dialog was shown %1 times")
            .arg(dialogs_.givenOpenNames.size());
    const QString opened = dialogs_.givenOpenNames[0];
    if (opened.isEmpty()) {
        if (!sameStoredContent(now, before.levelset))
            return QStringLiteral("a cancelled Open changed the levelset");
        return {};
    }
    expectedPath_ = opened;
    count(QStringLiteral("opened"));
    if (now.currentLevel != 0)
        return QStringLiteral("Open left level %1 current").arg(now.currentLevel);
    const QFileInfo file(opened);
    if (!file.isFile()) {
        if (!sameStoredContent(now, Levelset()))
            return QStringLiteral("opening %1, which is no file, did not leave a fresh levelset")
                .arg(opened);
        return {};
    }
    // A file this walk saved reads back to exactly what was saved.
    if (folder_.writtenBySave(opened)) {
        QFile saved(opened);
        saved.open(QIODevice::ReadOnly);
        QByteArray expected = saved.readAll();
        // Showing the first level selects its options, which store a foreign level type as 1
        // and a foreign alien type as 4.
        constexpr int LevelType = LevelsetFilePrologueSize + LevelRecord::LevelType;
        constexpr int AlienType = LevelsetFilePrologueSize + LevelRecord::AlienType;
        const QByteArray reread = writeLevelset(now, opened);
        if (expected.size() > AlienType && reread.size() > AlienType) {
            const auto levelType = static_cast<std::uint8_t>(expected[LevelType]);
            const auto alienType = static_cast<std::uint8_t>(expected[AlienType]);
            if (levelType > 1 && reread[LevelType] == 1)
                expected[LevelType] = 1;
            if (alienType != 3 && alienType != 4 && reread[AlienType] == 4)
                expected[AlienType] = 4;
        }
        if (reread != expected)
            return QStringLiteral("%1 did not read back as it was saved").arg(opened);
    }
    return {};
}

// The course of Save (or Save As) for the levelset as it was before the command.
QString MonkeyWalk::expectSave(const Levelset &before, bool forceDialog, bool statusShown) {
    QString target;
    if (!forceDialog && expectedPath_ != UntitledPath) {
        target = MonkeyFolder::writtenForm(expectedPath_);
    } else {
        for (;;) {
            if (saveNamesUsed_ >= dialogs_.givenSaveNames.size())
                return QStringLiteral("the save dialog was not shown again");
            const QString name = dialogs_.givenSaveNames[saveNamesUsed_++];
            if (name.isEmpty())
                return {};
            if (folder_.followsNameRule(name)) {
                target = MonkeyFolder::writtenForm(name);
                break;
            }
            ++invalidNameMessages_;
        }
    }
    if (checkHolesAndGuards(before) != 0) {
        ++refusals_;
        count(QStringLiteral("save refused"));
        return {};
    }
    expectedPath_ = target;
    const MonkeyFolder::SaveOutcome outcome =
        folder_.noteSave(target, writeLevelset(before, target));
    count(outcome.written ? QStringLiteral("saved") : QStringLiteral("save failed"));
    if (!outcome.fault.isEmpty())
        return outcome.fault;
    const QString status = window_->statusText->text();
    if (statusShown && outcome.written && status != QStringLiteral("Saved ") + target)
        return QStringLiteral("status \"%1\" after saving %2").arg(status, target);
    if (statusShown && !outcome.written && !status.startsWith(QStringLiteral("Could not write ")))
        return QStringLiteral("status \"%1\" after failing to save %2").arg(status, target);
    return {};
}
