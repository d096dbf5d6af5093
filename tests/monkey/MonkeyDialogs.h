#pragma once

#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QMenu>
#include <functional>
#include <random>

// Answers every question of the editor with a choice drawn from the walk's own generator, at
// the moment it is asked, and records the answers so the walk can tell what the user chose.
// The save prompt gets Yes, No or Cancel; every other message its only button, OK. File names
// come from the walk's name makers; a popup gets one of its items or is dismissed; a modal
// window is closed at once.
class MonkeyDialogs : public ScriptedDialogs {
public:
    explicit MonkeyDialogs(std::mt19937 &random) : random_(random) {
        onModal = [](QDialog &dialog) { dialog.reject(); };
    }

    std::function<QString()> makeSaveName;
    std::function<QString()> makeOpenName;

    // What was answered since the last forget().
    QList<QMessageBox::StandardButton> promptAnswers;
    QStringList givenSaveNames; // "" for a cancelled dialog
    QStringList givenOpenNames;
    QStringList popupChoices; // object names; "" for a dismissed popup

    void forget() {
        messages.clear();
        openQuestions.clear();
        saveQuestions.clear();
        popups.clear();
        modalCount = 0;
        promptAnswers.clear();
        givenSaveNames.clear();
        givenOpenNames.clear();
        popupChoices.clear();
    }

    QMessageBox::StandardButton message(const QString &text, const QString &title,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons) override {
        const auto prompt = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        if (buttons == prompt) {
            static constexpr QMessageBox::StandardButton Choices[] = {
                QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
            messageAnswers.enqueue(Choices[pick(3)]);
            promptAnswers.append(messageAnswers.head());
        }
        return ScriptedDialogs::message(text, title, icon, buttons);
    }

    QString saveFileName(const QString &title, const QString &filter, const QString &dir) override {
        givenSaveNames.append(makeSaveName ? makeSaveName() : QString());
        saveAnswers.enqueue(givenSaveNames.last());
        return ScriptedDialogs::saveFileName(title, filter, dir);
    }

    QString openFileName(const QString &title, const QString &filter, const QString &dir) override {
        givenOpenNames.append(makeOpenName ? makeOpenName() : QString());
        openAnswers.enqueue(givenOpenNames.last());
        return ScriptedDialogs::openFileName(title, filter, dir);
    }

    QAction *popup(QMenu &menu, const QPoint &globalPos) override {
        QStringList items;
        for (QAction *action : menu.actions())
            if (!action->isSeparator())
                items.append(action->objectName());
        // One chance in (items + 1) that the user clicks beside the menu.
        const int choice = pick(static_cast<int>(items.size()) + 1);
        popupChoices.append(choice < items.size() ? items[choice] : QString());
        popupAnswers.enqueue(popupChoices.last());
        return ScriptedDialogs::popup(menu, globalPos);
    }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    std::mt19937 &random_;
};
