#include "Files.h"

#include "levelset/ReplaceFile.h"

#include <QFile>

std::optional<QByteArray> readWholeFile(const QString &path, QString &reason) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        reason = QStringLiteral("cannot read: %1").arg(file.errorString());
        return std::nullopt;
    }
    if (file.size() > MaxInputSize) {
        reason = QStringLiteral("%1 bytes is far too large for a levelset file; not read")
                     .arg(file.size());
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        reason = QStringLiteral("cannot read: %1").arg(file.errorString());
        return std::nullopt;
    }
    return bytes;
}

QString writeWholeFile(const QString &path, const QByteArray &bytes) {
    const ReplaceResult result = replaceFile(path, bytes);
    return result.ok() ? QString()
                       : QStringLiteral("cannot write %1: %2").arg(path, result.failure);
}
