#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// A levelset file is at most 8,372 bytes; anything past this cap is surely something else and
// is not loaded into memory.
inline constexpr qint64 MaxInputSize = 16 * 1024 * 1024;

// The whole file, or nullopt with reason set ("cannot read: No such file or directory").
std::optional<QByteArray> readWholeFile(const QString &path, QString &reason);

// Replaces the file at path in one piece: on failure any old file is left as it was. Returns
// an empty string, or "cannot write <path>: <reason>".
QString writeWholeFile(const QString &path, const QByteArray &bytes);
