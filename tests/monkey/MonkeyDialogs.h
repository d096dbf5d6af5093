#pragma once

#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QMenu>
#include <functional>
#include <random>

// Answers every question at the moment it is asked with a choice drawn from the walk's own
// generator, so a seed replays the same walk, and records the answers since the last forget().
// The save prompt gets Yes, No or Cancel, other messages OK; a popup gets one of its items or is
// dismissed (""); a modal window is closed at once.
class MonkeyDialogs : public ScriptedDialogs {
public:
    explicit MonkeyDialogs(std::mt19937 &random) : random_(random) {
        onModal = [](QDialog &dialog) { dialog.reject(); };
    }

    std::function<QString()> makeSaveName;
    std::function<QString()> makeOpenName;

    QList<QMessageBox::StandardButton> promptAnswers;
    QStringList saveNames; // "" for a cancelled dialog
    QStringList openNames;
    QStringList popupChoices;

    void forget() {
        messages.clear();
        openQuestions.clear();
        saveQuestions.clear();
        popups.clear();
        modalCount = 0;
        promptAnswers.clear();
        saveNames.clear();
        openNames.clear();
        popupChoices.clear();
    }

    QMessageBox::StandardButton message(const QString &text, const QString &title,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons) override {
        if (buttons == (QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
            constexpr QMessageBox::StandardButton Choices[] = {QMessageBox::Yes, QMessageBox::No,
                                                               QMessageBox::Cancel};
            promptAnswers.append(Choices[pick(3)]);
            messageAnswers.enqueue(promptAnswers.last());
        }
        return ScriptedDialogs::message(text, title, icon, buttons);
    }

    QString saveFileName(const QString &title, const QString &filter, const QString &dir) override {
        saveNames.append(makeSaveName());
        saveAnswers.enqueue(saveNames.last());
        return ScriptedDialogs::saveFileName(title, filter, dir);
    }

    QString openFileName(const QString &title, const QString &filter, const QString &dir) override {
        openNames.append(makeOpenName());
        openAnswers.enqueue(openNames.last());
        return ScriptedDialogs::openFileName(title, filter, dir);
    }

    QAction *popup(QMenu &menu, const QPoint &globalPos) override {
        QStringList items;
        for (QAction *action : menu.actions())
            if (!action->isSeparator())
                items.append(action->objectName());
        const int choice = pick(static_cast<int>(items.size()) + 1); // + a click beside it
        popupChoices.append(choice < items.size() ? items[choice] : QString());
        popupAnswers.enqueue(popupChoices.last());
        return ScriptedDialogs::popup(menu, globalPos);
    }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    std::mt19937 &random_;
};
