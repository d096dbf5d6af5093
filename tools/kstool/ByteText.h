#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

// Text forms of raw bytes for the exported formats.

// Lines of up to 32 two-digit hex bytes separated by blanks.
QStringList hexLines(QByteArrayView bytes);
// Reads hex bytes, ignoring blanks and line breaks; nullopt on any other character or an odd
// digit count.
std::optional<QByteArray> fromHex(const QString &text);

// Printable ASCII stays as it is, a backslash becomes "\\" and every other byte "\xHH", so the
// text survives formats (XML) that cannot carry control characters.
QString escapedBytes(QByteArrayView bytes);
// nullopt when the text holds a character above U+00FF outside an escape or a broken escape.
std::optional<QByteArray> unescapedBytes(const QString &text);
