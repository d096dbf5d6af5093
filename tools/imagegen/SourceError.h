#pragma once

#include <QString>

// Why a text source was refused: the 1-based line it happened on (0 when the whole file is at
// fault) and what was wrong, so the build can point the artist at the exact place.
struct SourceError {
    int line = 0;
    QString message;

    QString describe(const QString &fileName) const {
        return line > 0 ? QStringLiteral("%1:%2: %3").arg(fileName).arg(line).arg(message)
                        : QStringLiteral("%1: %2").arg(fileName, message);
    }
};
