#pragma once

#include <QFile>
#include <QTest>

// A file's bytes, none when it cannot be read.
inline QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes a whole file, failing the test that asked when it cannot.
inline void putFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}
