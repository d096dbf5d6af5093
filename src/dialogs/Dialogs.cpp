#include "dialogs/Dialogs.h"

#include <QDialog>
#include <QFileDialog>
#include <QMenu>

namespace {

// "KST Levelsets (zkstl*.kst)|zkstl*.kst" -> "KST Levelsets (zkstl*.kst)": Qt reads the
// patterns from the parentheses of the description.
QString qtFilter(const QString &filter) {
    const qsizetype bar = filter.indexOf(QLatin1Char('|'));
    if (bar < 0)
        return filter;
    const QString description = filter.left(bar);
    const QString pattern = filter.mid(bar + 1);
    return description.contains(QLatin1Char('('))
               ? description
               : description + QStringLiteral(" (") + pattern + QLatin1Char(')');
}

} // namespace

QMessageBox::StandardButton PlatformDialogs::message(const QString &text, const QString &title,
                                                     QMessageBox::Icon icon,
                                                     QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, title, text, buttons, owner_);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QString PlatformDialogs::openFileName(const QString &title, const QString &filter,
                                      const QString &dir) {
    return QFileDialog::getOpenFileName(owner_, title, dir, qtFilter(filter));
}

QString PlatformDialogs::saveFileName(const QString &title, const QString &filter,
                                      const QString &dir) {
    // The editor confirms nothing before replacing a file.
    return QFileDialog::getSaveFileName(owner_, title, dir, qtFilter(filter), nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

QAction *PlatformDialogs::popup(QMenu &menu, const QPoint &globalPos) {
    return menu.exec(globalPos);
}

void PlatformDialogs::showModal(QDialog &dialog) {
    dialog.exec();
}
