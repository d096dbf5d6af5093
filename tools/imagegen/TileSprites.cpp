#include "TileSprites.h"

#include "TextLines.h"

namespace {

// The id of a "# <id>: <name>" line, or -1 when the comment is an ordinary one.
int headerId(const QByteArray &line) {
    qsizetype i = 1;
    while (i < line.size() && line[i] == ' ')
        ++i;
    const qsizetype digitsStart = i;
    while (i < line.size() && line[i] >= '0' && line[i] <= '9')
        ++i;
    if (i == digitsStart || i >= line.size() || line[i] != ':' || i - digitsStart > 4)
        return -1;
    return line.mid(digitsStart, i - digitsStart).toInt();
}

} // namespace

std::optional<TileSprites> parseTileSprites(const QByteArray &text, SourceError &error) {
    TileSprites result;
    int current = -1; // tile whose rows are being read
    int rows = 0;
    int currentHeaderLine = 0;
    const QList<QByteArray> lines = textLines(text);

    auto fail = [&error](int line, const QString &message) {
        error = {line, message};
        return std::nullopt;
    };

    for (int n = 0; n < lines.size(); ++n) {
        const QByteArray &line = lines[n];
        const int lineNumber = n + 1;
        if (line.isEmpty())
            continue;
        if (line.startsWith('#')) {
            const int id = headerId(line);
            if (id < 0)
                continue;
            if (current >= 0 && rows < TileSprites::Size)
                return fail(lineNumber, QStringLiteral("tile %1 has %2 rows, expected %3")
                                            .arg(current)
                                            .arg(rows)
                                            .arg(TileSprites::Size));
            if (id != current + 1)
                return fail(
                    lineNumber,
                    QStringLiteral("expected tile %1, found tile %2").arg(current + 1).arg(id));
            if (id >= TileSprites::Count)
                return fail(lineNumber, QStringLiteral("tile %1 is beyond the last tile, %2")
                                            .arg(id)
                                            .arg(TileSprites::Count - 1));
            current = id;
            rows = 0;
            currentHeaderLine = lineNumber;
            continue;
        }
        if (current < 0)
            return fail(lineNumber, QStringLiteral("sprite row before the first \"# 0:\" line"));
        if (rows == TileSprites::Size)
            return fail(lineNumber, QStringLiteral("tile %1 has more than %2 rows")
                                        .arg(current)
                                        .arg(TileSprites::Size));
        if (line.size() != TileSprites::Size)
            return fail(lineNumber, QStringLiteral("row of %1 characters, expected %2")
                                        .arg(line.size())
                                        .arg(TileSprites::Size));
        std::uint8_t bits = 0;
        for (int x = 0; x < TileSprites::Size; ++x) {
            const char c = line[x];
            if (c != 'X' && c != '.')
                return fail(lineNumber, QStringLiteral("character '%1' in column %2; only 'X' "
                                                       "(black) and '.' (white) are allowed")
                                            .arg(QChar::fromLatin1(c))
                                            .arg(x + 1));
            if (c == 'X')
                bits |= std::uint8_t(0x80 >> x);
        }
        result.sprites[current][rows++] = bits;
    }

    if (current >= 0 && rows < TileSprites::Size)
        return fail(currentHeaderLine, QStringLiteral("tile %1 has %2 rows, expected %3")
                                           .arg(current)
                                           .arg(rows)
                                           .arg(TileSprites::Size));
    if (current < 0)
        return fail(0, QStringLiteral("no tiles: the file has no \"# 0:\" line"));
    if (current != TileSprites::Count - 1)
        return fail(0, QStringLiteral("the file ends after tile %1; tiles run to %2")
                           .arg(current)
                           .arg(TileSprites::Count - 1));
    return result;
}
