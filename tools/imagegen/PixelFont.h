#pragma once

#include "SourceError.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <map>
#include <optional>

// A small bitmap font read from text, so drawn captions look the same on every build machine
// whatever fonts it has installed.
class PixelFont {
public:
    static constexpr int Height = 7;

    struct Glyph {
        int width = 0;
        QList<QByteArray> rows; // Height rows of width characters, 'X' set
    };

    // Reads "= <character>" lines, each followed by Height rows of one width made of 'X' and
    // '.'; "#" lines are comments. "= space" names the blank.
    static std::optional<PixelFont> parse(const QByteArray &text, SourceError &error);

    bool has(char c) const { return glyphs.contains(c); }
    const Glyph &glyph(char c) const { return glyphs.at(c); }

    // Width in pixels of text at the given scale, one blank column between letters.
    int width(const QByteArray &text, int scale) const;

    // Calls plot(x, y) for the top-left corner of every set scale x scale block of text drawn with
    // its top-left corner at (x, y). Characters the font lacks are skipped.
    template <typename Plot>
    void draw(const QByteArray &text, int x, int y, int scale, Plot plot) const {
        for (char c : text) {
            if (!has(c))
                continue;
            const Glyph &g = glyph(c);
            for (int gy = 0; gy < Height; ++gy)
                for (int gx = 0; gx < g.width; ++gx)
                    if (g.rows[gy][gx] == 'X')
                        plot(x + gx * scale, y + gy * scale);
            x += (g.width + 1) * scale;
        }
    }

private:
    std::map<char, Glyph> glyphs;
};
