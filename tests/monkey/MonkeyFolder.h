#pragma once

#include <QByteArray>
#include <QMap>
#include <QSet>
#include <QString>
#include <QTemporaryDir>
#include <random>

// The temporary folder a walk saves into and opens from, and the bytes every file in it must
// hold: the foreign files put there at the start, and for each path a save wrote exactly what
// the writer produced. Other content, a file too many or a file missing is a fault.
// "sub", "Upper" and "zkstlold" are writable folders; "missing" does not exist and "plain.kst"
// is a regular file, so every save below either of them fails.
class MonkeyFolder {
public:
    explicit MonkeyFolder(std::mt19937 &random);

    bool isValid() const { return dir_.isValid(); }
    QString root() const { return dir_.path(); }

    // A name for the save dialog: mostly following the levelset name rule in any mix of case,
    // some breaking it, a few cancelling (""); whether it follows the rule is known by making.
    QString saveName();
    bool followsNameRule(const QString &name) const { return ruleFollowers_.contains(name); }
    // A name for the open dialog: mostly an existing file, else a missing one, a folder, a path
    // through a regular file, or "" to cancel.
    QString openName();
    // On this system a save lower-cases the file name only.
    static QString writtenForm(const QString &path);

    // Takes note of a save the editor should have attempted; a fault when the file is neither
    // as it was nor the new bytes, or when the outcome contradicts the folder.
    struct SaveOutcome {
        bool written = false;
        QString fault;
    };
    SaveOutcome noteSave(const QString &target, const QByteArray &bytes);
    bool writtenBySave(const QString &path) const { return saved_.contains(path); }

    // The first difference between the folder and what it must hold, or "".
    QString check() const;

private:
    void putFile(const QString &name, const QByteArray &bytes);
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    std::mt19937 &random_;
    QTemporaryDir dir_;
    QMap<QString, QByteArray> expected_;
    QSet<QString> saved_;
    QSet<QString> ruleFollowers_;
};
