#pragma once

#include <QMessageBox>
#include <QString>

class QDialog;
class QMenu;
class QPoint;
class QWidget;

// The questions the editor asks its user; a test answers them from a script.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual QMessageBox::StandardButton message(const QString &text, const QString &title,
                                                QMessageBox::Icon icon,
                                                QMessageBox::StandardButtons buttons) = 0;
    // The filter is in the "description|pattern" form.
    virtual QString openFileName(const QString &title, const QString &filter,
                                 const QString &dir) = 0;
    virtual QString saveFileName(const QString &title, const QString &filter,
                                 const QString &dir) = 0;
    virtual QAction *popup(QMenu &menu, const QPoint &globalPos) = 0; // null when dismissed
    virtual void showModal(QDialog &dialog) = 0;
};

// The platform's own boxes, dialogs and menus, modal to the given owner window.
class PlatformDialogs : public Dialogs {
public:
    explicit PlatformDialogs(QWidget *owner) : owner_(owner) {}

    QMessageBox::StandardButton message(const QString &text, const QString &title,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons) override;
    QString openFileName(const QString &title, const QString &filter, const QString &dir) override;
    QString saveFileName(const QString &title, const QString &filter, const QString &dir) override;
    QAction *popup(QMenu &menu, const QPoint &globalPos) override;
    void showModal(QDialog &dialog) override;

private:
    QWidget *owner_;
};
