#include "levelset/LevelsetName.h"

namespace {

const QString NameMark = QStringLiteral("zkstl");
const QString NameEnd = QStringLiteral(".kst");
constexpr qsizetype NameCharacters = 3;

bool isSeparator(QChar c, PathStyle style) {
    return c == u'/' || (style == PathStyle::Windows && c == u'\\');
}

qsizetype lastSeparator(const QString &path, PathStyle style) {
    for (qsizetype i = path.size() - 1; i >= 0; --i)
        if (isSeparator(path[i], style))
            return i;
    return -1;
}

// QString::toLower and toUpper apply full case mappings ("ß" -> "SS"), which would change how
// many characters a name has; names are converted one UTF-16 unit at a time instead, which
// leaves surrogate pairs as they are.
QString lowerCased(QStringView text) {
    QString result(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        result[i] = text[i].toLower();
    return result;
}

qsizetype characterCount(QStringView text) {
    qsizetype count = 0;
    for (qsizetype i = 0; i < text.size(); ++i, ++count)
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    return count;
}

// The name characters go into a one-byte tag, so an upper case outside Latin-1 is not taken.
QChar upperCasedForTag(QChar c) {
    const QChar upper = c.toUpper();
    return upper.unicode() <= 0xFF ? upper : c;
}

} // namespace

QString levelsetTag(const QString &path) {
    QString tag = QStringLiteral("KST0");
    const qsizetype mark = path.indexOf(NameMark, 0, Qt::CaseSensitive);
    if (mark >= 0) {
        const QStringView following = QStringView(path).mid(mark + NameMark.size());
        qsizetype i = 0;
        for (qsizetype taken = 0; taken < NameCharacters && i < following.size(); ++taken, ++i) {
            if (following[i].isHighSurrogate() && i + 1 < following.size() &&
                following[i + 1].isLowSurrogate())
                tag += following.mid(i++, 2);
            else
                tag += upperCasedForTag(following[i]);
        }
    }
    return tag + QString(LevelsetTagLength - characterCount(tag), u' ');
}

bool isValidLevelsetFileName(const QString &path, PathStyle style) {
    const qsizetype separator = lastSeparator(path, style);
    if (separator < 0)
        return false;
    const QString name = lowerCased(QStringView(path).mid(separator + 1));
    return name.startsWith(NameMark) && name.endsWith(NameEnd) &&
           characterCount(name) == NameMark.size() + NameCharacters + NameEnd.size();
}

QString saveFormOfPath(const QString &path, PathStyle style) {
    if (style == PathStyle::Windows)
        return lowerCased(path);
    const qsizetype nameStart = lastSeparator(path, style) + 1;
    return path.left(nameStart) + lowerCased(QStringView(path).mid(nameStart));
}

QString resavePath(const QString &path, PathStyle style) {
    return style == PathStyle::Windows ? lowerCased(path) : path;
}
