#include "levels/TypedLengthLimit.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>

TypedLengthLimit::TypedLengthLimit(QLineEdit *edit, int limit)
    : QObject(edit), edit_(edit), limit_(limit) {
    edit->installEventFilter(this);
    // A drop inserts text without a key or a paste; the fields take no drops.
    edit->setAcceptDrops(false);
}

int TypedLengthLimit::room() const {
    const qsizetype kept = edit_->text().size() - edit_->selectedText().size();
    return static_cast<int>(qMax<qsizetype>(0, limit_ - kept));
}

void TypedLengthLimit::paste(QClipboard::Mode mode) {
    const QString text = QApplication::clipboard()->text(mode);
    if (!insertLimited(text))
        edit_->insert(text);
}

// Inserts what fits; true when the caller's own insertion must not run.
bool TypedLengthLimit::insertLimited(const QString &text) {
    if (text.size() <= room())
        return false;
    if (room() > 0)
        edit_->insert(text.left(room()));
    return true;
}

bool TypedLengthLimit::contextMenu(const QPoint &globalPos) {
    QMenu *menu = edit_->createStandardContextMenu();
    for (QAction *action : menu->actions()) {
        // The paste item is the one connected to the field's paste slot, or, where Qt names the
        // items, the one named after its icon; neither changes with the language.
        if (action->objectName() != QLatin1String("edit-paste") &&
            !disconnect(action, SIGNAL(triggered()), edit_, SLOT(paste())))
            continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, [this] { paste(QClipboard::Clipboard); });
    }
    menu->exec(globalPos);
    delete menu;
    return true;
}

bool TypedLengthLimit::eventFilter(QObject *watched, QEvent *event) {
    if (watched != edit_ || edit_->isReadOnly() || !edit_->isEnabled())
        return false;
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key == QKeySequence::Paste)
            return insertLimited(QApplication::clipboard()->text());
        const QString text = key->text();
        // Control keys (backspace, return, Ctrl+letter) carry control characters, not text.
        if (text.isEmpty() || !text.front().isPrint())
            return false;
        return insertLimited(text);
    }
    case QEvent::InputMethod: {
        auto *input = static_cast<QInputMethodEvent *>(event);
        const QString commit = input->commitString();
        if (commit.size() > room())
            input->setCommitString(commit.left(room()), input->replacementStart(),
                                   input->replacementLength());
        return false;
    }
    case QEvent::MouseButtonRelease:
        // Where the window system has a selection, the middle button pastes it as QLineEdit
        // does: at the caret the press placed, in place of no selection.
        if (static_cast<QMouseEvent *>(event)->button() != Qt::MiddleButton ||
            !QApplication::clipboard()->supportsSelection())
            return false;
        edit_->deselect();
        paste(QClipboard::Selection);
        return true;
    case QEvent::ContextMenu:
        return contextMenu(static_cast<QContextMenuEvent *>(event)->globalPos());
    default:
        return false;
    }
}
