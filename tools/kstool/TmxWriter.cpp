#include "TmxFormat.h"

#include "ByteText.h"
#include "DrawingModule.h"
#include "Files.h"
#include "HeaderFields.h"

#include "analysis/TileCatalogue.h"
#include "view/Tileset.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamWriter>

namespace {

constexpr int FirstGid = 1;

QString mapBase(const QString &output) {
    return output.endsWith(QLatin1String(".tmx"), Qt::CaseInsensitive) ? output.chopped(4) : output;
}

void writeProperty(QXmlStreamWriter &xml, const QString &name, int value) {
    xml.writeEmptyElement(QStringLiteral("property"));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("int"));
    xml.writeAttribute(QStringLiteral("value"), QString::number(value));
}

void writeProperty(QXmlStreamWriter &xml, const QString &name, const QString &value) {
    xml.writeEmptyElement(QStringLiteral("property"));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("value"), value);
}

// The levelset-wide bytes ride on the first map; a count is written only when the maps do not
// explain it, so adding a map in Tiled needs no second edit.
void writeLevelsetProperties(QXmlStreamWriter &xml, const LevelsetDump &dump) {
    writeProperty(xml, QStringLiteral("tag"), escapedBytes(dump.tag));
    writeProperty(xml, QStringLiteral("reserved1"), dump.reserved1);
    writeProperty(xml, QStringLiteral("reserved2"), dump.reserved2);
    if (dump.levelCount != dump.levels.size())
        writeProperty(xml, QStringLiteral("levelCount"), dump.levelCount);
    for (int level = std::max<int>(2, dump.levels.size() + 1); level <= LevelsetDump::MaxLevels;
         ++level)
        writeProperty(xml, QStringLiteral("passcode%1").arg(level),
                      escapedBytes(dump.passcodes[level - 2]));
    if (!dump.trailing.isEmpty()) {
        // Several lines: Tiled keeps multi-line values as the element's text.
        xml.writeStartElement(QStringLiteral("property"));
        xml.writeAttribute(QStringLiteral("name"), QStringLiteral("trailing"));
        xml.writeCharacters(hexLines(dump.trailing).join(QLatin1Char('\n')));
        xml.writeEndElement();
    }
}

QString csvCells(const LevelDump &level) {
    QStringList rows;
    for (int y = 0; y < level.height(); ++y) {
        QStringList row;
        for (int x = 0; x < level.width(); ++x)
            row << QString::number(level.cell(x, y) + FirstGid);
        rows << row.join(QLatin1Char(','));
    }
    return QLatin1Char('\n') + rows.join(QStringLiteral(",\n")) + QLatin1Char('\n');
}

QByteArray levelToTmx(const LevelsetDump &dump, int index, const QString &tilesetFile) {
    const LevelDump &level = dump.levels[index];
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("map"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.8"));
    xml.writeAttribute(QStringLiteral("orientation"), QStringLiteral("orthogonal"));
    xml.writeAttribute(QStringLiteral("renderorder"), QStringLiteral("right-down"));
    xml.writeAttribute(QStringLiteral("width"), QString::number(level.width()));
    xml.writeAttribute(QStringLiteral("height"), QString::number(level.height()));
    xml.writeAttribute(QStringLiteral("tilewidth"), QString::number(Tileset::CellSize));
    xml.writeAttribute(QStringLiteral("tileheight"), QString::number(Tileset::CellSize));
    xml.writeAttribute(QStringLiteral("infinite"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("nextlayerid"), QStringLiteral("2"));
    xml.writeAttribute(QStringLiteral("nextobjectid"), QStringLiteral("1"));

    xml.writeStartElement(QStringLiteral("properties"));
    for (int i = 0; i < LevelRecord::HeaderSize; ++i)
        if (i != LevelRecord::Width && i != LevelRecord::Height)
            writeProperty(xml, QLatin1String(HeaderFieldNames[i]), level.header[i]);
    if (index > 0)
        writeProperty(xml, QStringLiteral("passcode"), escapedBytes(dump.passcodes[index - 1]));
    else
        writeLevelsetProperties(xml, dump);
    xml.writeEndElement();

    xml.writeStartElement(QStringLiteral("tileset"));
    xml.writeAttribute(QStringLiteral("firstgid"), QString::number(FirstGid));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("kestrix"));
    xml.writeAttribute(QStringLiteral("tilewidth"), QString::number(Tileset::CellSize));
    xml.writeAttribute(QStringLiteral("tileheight"), QString::number(Tileset::CellSize));
    xml.writeAttribute(QStringLiteral("tilecount"),
                       QString::number(Tileset::Columns * Tileset::Rows));
    xml.writeAttribute(QStringLiteral("columns"), QString::number(Tileset::Columns));
    xml.writeEmptyElement(QStringLiteral("image"));
    xml.writeAttribute(QStringLiteral("source"), tilesetFile);
    xml.writeAttribute(QStringLiteral("width"),
                       QString::number(Tileset::CellSize * Tileset::Columns));
    xml.writeAttribute(QStringLiteral("height"),
                       QString::number(Tileset::CellSize * Tileset::Rows));
    xml.writeEndElement();

    xml.writeStartElement(QStringLiteral("layer"));
    xml.writeAttribute(QStringLiteral("id"), QStringLiteral("1"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("level"));
    xml.writeAttribute(QStringLiteral("width"), QString::number(level.width()));
    xml.writeAttribute(QStringLiteral("height"), QString::number(level.height()));
    xml.writeStartElement(QStringLiteral("data"));
    xml.writeAttribute(QStringLiteral("encoding"), QStringLiteral("csv"));
    xml.writeCharacters(csvCells(level));
    xml.writeEndElement();
    xml.writeEndElement();

    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

} // namespace

QString tmxMapPath(const QString &output, int levelNumber) {
    return mapBase(output) + QStringLiteral("-%1.tmx").arg(levelNumber);
}

QString tmxTilesetPath(const QString &output) {
    return mapBase(output) + QStringLiteral("-tileset.png");
}

QString tmxExportProblem(const LevelsetDump &dump) {
    if (dump.levels.isEmpty())
        return QStringLiteral("holds no complete level, so there is no map to write; "
                              "export to .json keeps it");
    for (int index = 0; index < dump.levels.size(); ++index) {
        const LevelDump &level = dump.levels[index];
        for (int y = 0; y < level.height(); ++y)
            for (int x = 0; x < level.width(); ++x)
                if (!isPlaceableTile(level.cell(x, y)))
                    return QStringLiteral(
                               "level %1, cell (%2, %3) holds tile id %4, which a map "
                               "cannot bring back (ids 0..177); export to .json keeps it")
                        .arg(index + 1)
                        .arg(x)
                        .arg(y)
                        .arg(level.cell(x, y));
    }
    return QString();
}

QString exportTmx(const LevelsetDump &dump, const QString &output) {
    const QString tilesetPath = tmxTilesetPath(output);
    QString error = writeTilesetPng(tilesetPath);
    if (!error.isEmpty())
        return error;

    const QString tilesetFile = QFileInfo(tilesetPath).fileName();
    for (int index = 0; index < dump.levels.size(); ++index) {
        error = writeWholeFile(tmxMapPath(output, index + 1), levelToTmx(dump, index, tilesetFile));
        if (!error.isEmpty())
            return error;
    }
    // Maps of an earlier, longer export would otherwise be read back as levels.
    for (int number = dump.levels.size() + 1; number <= LevelsetDump::MaxLevels; ++number)
        QFile::remove(tmxMapPath(output, number));
    return QString();
}
