#pragma once

#include <QByteArray>
#include <QList>

// The lines of a text source with their trailing blanks and carriage returns removed, so files
// saved with Windows line ends or stray trailing spaces read the same as clean ones.
inline QList<QByteArray> textLines(const QByteArray &text) {
    QList<QByteArray> lines = text.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray &line : lines) {
        qsizetype end = line.size();
        while (end > 0 && (line[end - 1] == ' ' || line[end - 1] == '\t' || line[end - 1] == '\r'))
            --end;
        line.truncate(end);
    }
    return lines;
}
