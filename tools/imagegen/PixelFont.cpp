#include "PixelFont.h"

#include "TextLines.h"

std::optional<PixelFont> PixelFont::parse(const QByteArray &text, SourceError &error) {
    PixelFont font;
    const QList<QByteArray> lines = textLines(text);
    char current = 0;
    bool open = false;
    int headerLine = 0;

    auto fail = [&error](int line, const QString &message) {
        error = {line, message};
        return std::nullopt;
    };
    auto unfinished = [&] {
        return QStringLiteral("glyph '%1' has %2 rows, expected %3")
            .arg(QChar::fromLatin1(current))
            .arg(font.glyphs[current].rows.size())
            .arg(Height);
    };

    for (int n = 0; n < lines.size(); ++n) {
        const QByteArray &line = lines[n];
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith("= ")) {
            if (open && font.glyphs[current].rows.size() < Height)
                return fail(n + 1, unfinished());
            const QByteArray name = line.mid(2);
            if (name != "space" && name.size() != 1)
                return fail(n + 1, QStringLiteral("\"= \" must be followed by one character or "
                                                  "\"space\""));
            current = name == "space" ? ' ' : name[0];
            if (font.glyphs.contains(current))
                return fail(
                    n + 1,
                    QStringLiteral("glyph '%1' is defined twice").arg(QChar::fromLatin1(current)));
            font.glyphs[current] = {};
            open = true;
            headerLine = n + 1;
            continue;
        }
        if (!open)
            return fail(n + 1, QStringLiteral("glyph row before the first \"= \" line"));
        Glyph &g = font.glyphs[current];
        if (g.rows.size() == Height)
            return fail(n + 1, QStringLiteral("glyph '%1' has more than %2 rows")
                                   .arg(QChar::fromLatin1(current))
                                   .arg(Height));
        if (!g.rows.isEmpty() && line.size() != g.width)
            return fail(n + 1, QStringLiteral("row of %1 characters, the glyph's first row has %2")
                                   .arg(line.size())
                                   .arg(g.width));
        for (qsizetype x = 0; x < line.size(); ++x)
            if (line[x] != 'X' && line[x] != '.')
                return fail(n + 1, QStringLiteral("character '%1' in column %2; only 'X' and '.' "
                                                  "are allowed")
                                       .arg(QChar::fromLatin1(line[x]))
                                       .arg(x + 1));
        g.width = int(line.size());
        g.rows.append(line);
    }
    if (open && font.glyphs[current].rows.size() < Height)
        return fail(headerLine, unfinished());
    if (font.glyphs.empty())
        return fail(0, QStringLiteral("the font defines no glyph"));
    return font;
}

int PixelFont::width(const QByteArray &text, int scale) const {
    int total = 0;
    for (char c : text)
        if (has(c))
            total += (glyph(c).width + 1) * scale;
    return total > 0 ? total - scale : 0;
}
