#pragma once

#include <QClipboard>
#include <QObject>

class QLineEdit;

// Limits the characters a user can type, paste or compose into a line edit, while text set
// from code keeps every character (a passcode is always shown with all six). QLineEdit's own
// maximum length would cut both. Insertions that would pass the limit are cut to the room left;
// with no room left they are refused.
class TypedLengthLimit : public QObject {
    Q_OBJECT
public:
    // Installs itself on the edit, which owns it.
    TypedLengthLimit(QLineEdit *edit, int limit);

    int limit() const { return limit_; }
    // How many characters can still be inserted in place of the current selection.
    int room() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool insertLimited(const QString &text);
    void paste(QClipboard::Mode mode);
    bool contextMenu(const QPoint &globalPos);

    QLineEdit *edit_;
    int limit_;
};
