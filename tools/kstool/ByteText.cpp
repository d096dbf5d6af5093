#include "ByteText.h"

namespace {

constexpr int BytesPerLine = 32;

int hexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    return -1;
}

} // namespace

QStringList hexLines(QByteArrayView bytes) {
    QStringList lines;
    for (qsizetype start = 0; start < bytes.size(); start += BytesPerLine) {
        const QByteArrayView line =
            bytes.sliced(start, std::min<qsizetype>(BytesPerLine, bytes.size() - start));
        lines << QString::fromLatin1(line.toByteArray().toHex(' '));
    }
    return lines;
}

std::optional<QByteArray> fromHex(const QString &text) {
    QByteArray bytes;
    int high = -1;
    for (QChar c : text) {
        if (c.isSpace())
            continue;
        const int value = hexValue(c);
        if (value < 0)
            return std::nullopt;
        if (high < 0) {
            high = value;
        } else {
            bytes += static_cast<char>(high * 16 + value);
            high = -1;
        }
    }
    if (high >= 0)
        return std::nullopt;
    return bytes;
}

QString escapedBytes(QByteArrayView bytes) {
    QString text;
    for (char byte : bytes) {
        const auto u = static_cast<unsigned char>(byte);
        if (u == '\\')
            text += QStringLiteral("\\\\");
        else if (u >= 0x20 && u < 0x7F)
            text += QLatin1Char(byte);
        else
            text += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
    }
    return text;
}

std::optional<QByteArray> unescapedBytes(const QString &text) {
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c != QLatin1Char('\\')) {
            if (c.unicode() > 0xFF)
                return std::nullopt;
            bytes += static_cast<char>(c.unicode());
            continue;
        }
        if (i + 1 < text.size() && text[i + 1] == QLatin1Char('\\')) {
            bytes += '\\';
            i += 1;
        } else if (i + 3 < text.size() && text[i + 1] == QLatin1Char('x') &&
                   hexValue(text[i + 2]) >= 0 && hexValue(text[i + 3]) >= 0) {
            bytes += static_cast<char>(hexValue(text[i + 2]) * 16 + hexValue(text[i + 3]));
            i += 3;
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}
