#pragma once

#include "dialogs/Dialogs.h"

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QQueue>
#include <functional>

// Answers the editor's questions from a script and records what was asked. An unscripted
// message gets its first button of OK, Yes, No, Cancel; a file dialog or popup menu is cancelled.
class ScriptedDialogs : public Dialogs {
public:
    struct Message {
        QString text;
        QString title;
        QMessageBox::Icon icon;
        QMessageBox::StandardButtons buttons;
    };

    QList<Message> messages;
    QStringList fileQuestions; // "title|filter|folder" of each file dialog
    int popups = 0, modalCount = 0;

    QQueue<QMessageBox::StandardButton> messageAnswers;
    QQueue<QString> openAnswers;
    QQueue<QString> saveAnswers;
    QQueue<QString> popupAnswers;           // object name of the action to choose, "" dismisses
    std::function<void(QDialog &)> onModal; // runs while the dialog would be shown

    QMessageBox::StandardButton message(const QString &text, const QString &title,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons) override {
        messages.append({text, title, icon, buttons});
        for (auto b : {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel})
            if (messageAnswers.isEmpty() && buttons.testFlag(b))
                return b;
        return messageAnswers.isEmpty() ? QMessageBox::NoButton : messageAnswers.dequeue();
    }
    QString openFileName(const QString &title, const QString &filter, const QString &dir) override {
        fileQuestions << title + '|' + filter + '|' + dir;
        return openAnswers.isEmpty() ? QString() : openAnswers.dequeue();
    }
    QString saveFileName(const QString &title, const QString &filter, const QString &dir) override {
        fileQuestions << title + '|' + filter + '|' + dir;
        return saveAnswers.isEmpty() ? QString() : saveAnswers.dequeue();
    }
    QAction *popup(QMenu &menu, const QPoint &) override {
        ++popups;
        const QString choice = popupAnswers.isEmpty() ? QString() : popupAnswers.dequeue();
        for (QAction *action : menu.actions())
            if (!choice.isEmpty() && action->objectName() == choice)
                return action;
        return nullptr;
    }
    void showModal(QDialog &dialog) override {
        ++modalCount;
        if (onModal)
            onModal(dialog);
    }
};
