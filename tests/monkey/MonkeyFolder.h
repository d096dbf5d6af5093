#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QTemporaryDir>
#include <random>

// The temporary folder a walk saves into and opens from, and the bytes every file in it must
// hold: the foreign files put there at the start and, for each path a save wrote, exactly what
// the writer produced for the levelset of that save. Any other content, a file too many or a
// file missing is a fault.
//
// Layout: the root and the folders "sub", "Upper" and "zkstlold" can be written to; "missing"
// does not exist and "plain.kst" is a regular file, so every save below either of them fails.
class MonkeyFolder {
public:
    explicit MonkeyFolder(std::mt19937 &random);

    bool isValid() const { return dir_.isValid(); }
    QString root() const { return dir_.path(); }

    // A name as a user might give it to the save dialog: most follow the levelset name rule in
    // any mix of case, some break it, a few cancel (""). The folder may be unwritable.
    QString saveName();
    // A name for the open dialog: mostly a file that exists, else one that does not, a folder,
    // a path through a regular file, or "" to cancel.
    QString openName();
    // Whether a name that saveName() gave follows the rule; the rule is known by construction.
    bool followsNameRule(const QString &name) const { return ruleAnswers_.value(name); }

    // The file a save to path really writes: on this system only the file name is lower-cased.
    static QString writtenForm(const QString &path);

    // Takes note of a save the editor should have attempted to target with these bytes, and
    // tells what came of it. A fault when the file is neither as it was nor the new bytes, or
    // when the outcome contradicts the folder (a missing folder written, a plain one failing).
    struct SaveOutcome {
        bool written = false;
        QString fault;
    };
    SaveOutcome noteSave(const QString &target, const QByteArray &bytes);

    // Whether the file at path was last written by a save of the walk (not a foreign file).
    bool writtenBySave(const QString &path) const { return saved_.contains(path); }
    bool holdsFile(const QString &path) const { return expected_.contains(path); }

    // The first difference between the folder and what it must hold, or "" when none.
    QString check() const;

    // For the checker's own tests: changes what the folder must hold for a file.
    void expectBytes(const QString &path, const QByteArray &bytes) { expected_[path] = bytes; }

private:
    void putForeignFiles();
    void putFile(const QString &path, const QByteArray &bytes);
    QString anyExpectedPath();
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    std::mt19937 &random_;
    QTemporaryDir dir_;
    QMap<QString, QByteArray> expected_;
    QHash<QString, bool> saved_;
    QHash<QString, bool> ruleAnswers_;
};
