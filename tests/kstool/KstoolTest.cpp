// kstool as users run it: the real program, built beside the tests, on real files.
#include "levelset/LevelsetFile.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <random>

namespace {

struct Run {
    int exitCode = -1; // -1 when the program crashed or hung
    QString out, err;
};

// An empty folder of its own where kstool runs.
struct Folder : QTemporaryDir {
    void write(const QString &name, const QByteArray &bytes) const {
        putFile(filePath(name), bytes);
    }
    QByteArray read(const QString &name) const { return fileBytes(filePath(name)); }
    QImage image(const QString &name) const {
        return QImage(filePath(name)).convertToFormat(QImage::Format_RGB32);
    }
    // Arguments split at blanks; "fsize=N" first makes writes fail at N bytes, as a full disk.
    Run run(const QString &arguments, const QString &program = KSTOOL_PATH) const {
        QProcess process;
        process.setWorkingDirectory(path());
        const rlim_t limit = arguments.section(' ', 0, 0).section("fsize=", 1).toULong();
        if (limit > 0)
            process.setChildProcessModifier([limit] { limitFileSize(limit); });
        process.start(program, arguments.section(' ', limit > 0).split(' ', Qt::SkipEmptyParts));
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
};

// Levels of three sizes, odd passcodes, reserved bytes, values no editor sets, objects, doors.
const QString Varied =
    "3 @8=17 @9=250 @10=ABC123 @16=low\\q @42=1 1(3,1)=89 1(11,7)=168 1(0,0)=69 2.height=20 "
    "2.width=32 2.time=255 2.levelType=2 2.alienType=0 2.startX=40 2(0,19)=168 2(1,19)=169 "
    "2(2,19)=170 2(3,19)=171 3.width=13 3.height=9 3(12,8)=177";

// A file in a few words, read left to right: N default levels from the editor's writer, then
// L.field=V (a header value of level L from 1, named as in the JSON form), L(x,y)=V (a cell),
// L(x,y)*N=V (N cells from there in row order; V "i" counts them), @OFF=V (the byte or text V
// at an offset), +TEXT, -N, :N (TEXT added, N bytes cut off, the first N kept), s#RE#TO# (each
// match replaced). Instead of N: varied; noise (1 MiB, count byte 200, first level 20 x 40);
// 'TEXT'; o.json:R, o-1.tmx:R or o-2.tmx:R, a file of recipe R's export ('_' for blanks).
QByteArray file(QString recipe) {
    static const QRegularExpression substitution("s#([^#]*)#([^#]*)#"),
        edit(R"(^(\d)(?:\.(\w+)|\((\d+),(\d+)\)\*?(\d*))=(\w+)$)");
    static const QStringList fields{
        "height",  "width",    "objectives", "time",      "putX",    "putY",    "takeX",  "takeY",
        "putType", "takeType", "levelType",  "alienType", "finishX", "finishY", "startX", "startY"};
    const auto replacements = substitution.globalMatch(recipe);
    QStringList tokens = recipe.remove(substitution).split(' ', Qt::SkipEmptyParts);
    if (tokens[0] == "varied")
        tokens = Varied.split(' ') + tokens.mid(1);
    const QString base = tokens.takeFirst(), exported = base.section(':', 0, 0);
    QByteArray bytes = base.startsWith('\'') ? base.mid(1).chopped(1).toLatin1() : "";
    if (base.contains(':')) {
        const Folder folder;
        folder.write("a", file(base.section(':', 1).replace('_', ' ')));
        folder.run("export a -o o." + exported.section('.', 1));
        bytes = folder.read(exported);
    }
    std::mt19937 random(7);
    for (int i = 0; base == "noise" && i < 1 << 20; ++i)
        bytes += char(i == 7 ? 200 : i == 52 ? 40 : i == 53 ? 20 : random());
    Levelset levelset;
    levelset.levelCount = std::uint8_t(base.toInt());
    for (const QString &token : tokens) {
        const QRegularExpressionMatch match = edit.match(token);
        LevelRecord &level = levelset.levels[std::max(match.captured(1).toInt() - 1, 0)];
        const int value = match.captured(6).toInt(), width = level.width();
        if (match.capturedLength(2) > 0)
            level.header[fields.indexOf(match.captured(2))] = value;
        const int first = match.captured(4).toInt() * width + match.captured(3).toInt();
        for (int i = 0; match.capturedLength(3) > 0 && i < qMax(match.captured(5).toInt(), 1); ++i)
            level.tile((first + i) % width, (first + i) / width) =
                match.captured(6) == "i" ? i % 178 : value;
    }
    if (base[0].isDigit())
        bytes = writeLevelset(levelset, "/levels/zkstlabc.kst");
    for (const QString &token : tokens) {
        const int number = token.section('=', 0, 0).mid(1).toInt();
        bool isByte = false;
        const int value = token.section('=', 1).toInt(&isByte);
        const QByteArray text = token.section('=', 1).toLatin1();
        if (token[0] == '@')
            bytes.replace(number, isByte ? 1 : text.size(), isByte ? QByteArray(1, value) : text);
        bytes = token[0] == '+'   ? bytes + token.mid(1).toLatin1()
                : token[0] == '-' ? bytes.chopped(number)
                : token[0] == ':' ? bytes.left(number)
                                  : bytes;
    }
    for (const QRegularExpressionMatch &match : replacements) {
        const QRegularExpression from(match.captured(1),
                                      QRegularExpression::DotMatchesEverythingOption);
        bytes = QString(bytes).replace(from, match.captured(2)).toUtf8();
    }
    return bytes;
}

// "name=recipe; ..." as files by name; "name=*" is a file of any content, given as empty, and
// "name='gone'" one that is no longer there.
QMap<QString, QByteArray> files(const QString &list) {
    QMap<QString, QByteArray> all;
    for (const QString &item : list.split("; ", Qt::SkipEmptyParts))
        all[item.section('=', 0, 0)] = item.endsWith("=*") ? "" : file(item.section('=', 1));
    return all;
}

} // namespace

class KstoolTest : public QObject {
    Q_OBJECT
private slots:
    // A case a line: files | command | exit status | standard output | part of standard error
    // (none when empty) | files written; and nothing else is written, nothing left behind.
    void commands_data() {
        QTest::addColumn<QStringList>("row");
        QFile cases(KSTOOL_CASES);
        QVERIFY(cases.open(QIODevice::ReadOnly));
        QStringList lines = QString(cases.readAll()).split('\n');
        for (const QString command :
             {"check", "info", "render", "export", "import", "sheet", "diff", "merge", "thumbnail"})
            lines << QString("| %1 --help | 0 | ...Usage: kstool %1").arg(command);
        for (const QString &line : lines) {
            QStringList row = line.startsWith('#') ? QStringList() : line.split('|');
            for (QString &column : row)
                column = column.trimmed().replace("\\n", "\n");
            if (row.size() == 2) { // an edited export imported over an earlier file
                const QString in = row[0].section(':', 0, 0),
                              taken = row[1].startsWith('=') ? "0" : "1";
                row =
                    QString("%1=%2; zkstlout.kst='earlier'|import %1 -o zkstlout.kst|%3||%4|%5")
                        .arg(in, row[0], taken, taken == "0" ? "" : "kstool: " + in + ": " + row[1],
                             taken == "0" ? "zkstlout.kst" + row[1] : "")
                        .split('|');
            }
            if (row.size() > 2)
                QTest::newRow(qPrintable(line)) << row + QStringList{"", ""};
        }
    }
    void commands() {
        QFETCH(QStringList, row);
        const QString &out = row[3], &err = row[4];
        QMap<QString, QByteArray> expected = files(row[0]);
        const Folder folder;
        for (auto [name, bytes] : expected.asKeyValueRange())
            folder.write(name, bytes);
        const Run run = folder.run(row[1]);
        QCOMPARE(run.exitCode, row[2].toInt());
        if (out.startsWith("...")) // each line of it somewhere in the output
            for (const QString &line : out.mid(3).split('\n'))
                QVERIFY2(run.out.contains(line), qPrintable(line));
        else
            QCOMPARE(run.out, out.isEmpty() ? out : out + '\n');
        QVERIFY2(err.isEmpty() ? run.err.isEmpty() : run.err.contains(err), qPrintable(run.err));
        expected.insert(files(row[5]));
        expected.removeIf([](auto file) { return file.value() == "gone"; });
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), expected.keys());
        for (auto [name, bytes] : expected.asKeyValueRange())
            QVERIFY2(bytes.isEmpty() || folder.read(name) == bytes, qPrintable(name));
    }

    // JSON carries every file byte for byte, and its text is what git's textconv reads; Tiled
    // maps, one per level, carry every file that holds a complete level, also when Tiled has
    // read and written them.
    void roundTrips() {
        const QString tiled = QStandardPaths::findExecutable("tiled");
        qputenv("QT_QPA_PLATFORM", "offscreen"); // Tiled's command-line export needs no display
        const QStringList jsonOnly{"''", "1 :30", "1 -10", "1 @7=0", "1 @53=33", "noise"};
        for (const QString &recipe :
             jsonOnly + QStringList{"1", "varied +xy", "8 8.width=32 8.height=32 8(0,0)*1024=i",
                                    "8 @7=9", "1 @7=255", "1 @52=0", "1 +xyz", "3 3(0,0)*11=69"})
            for (const QString format : {"json", "tmx"}) {
                const Folder folder;
                const QByteArray bytes = file(recipe);
                folder.write("a", bytes);
                const bool carried = format == "json" || !jsonOnly.contains(recipe);
                const Run run = folder.run("export a -o o." + format);
                QCOMPARE(run.exitCode + run.err.contains("holds no complete level"), 2 * !carried);
                if (format == "json")
                    QCOMPARE(folder.run("export a --stdout").out.toUtf8(), folder.read("o.json"));
                QCOMPARE(folder.run("import o." + format + " -o zkstlbbb.kst").exitCode, !carried);
                QVERIFY2(folder.read("zkstlbbb.kst") == (carried ? bytes : ""), qPrintable(recipe));
                if (format == "json" || !carried)
                    continue;
                const QByteArray picture =
                    R"(<image source="o-tileset.png" width="128" height="512"/>)";
                QVERIFY(folder.read("o-1.tmx").contains(picture)); // where Tiled finds the tiles
                QCOMPARE(folder.image("o-tileset.png"), Tileset::image());
                if (tiled.isEmpty())
                    continue;
                for (int n = 1; QFile::exists(folder.filePath(QString("o-%1.tmx").arg(n))); ++n)
                    QCOMPARE(folder.run(QString("--export-map o-%1.tmx t-%1.tmx").arg(n), tiled)
                                 .exitCode,
                             0);
                QCOMPARE(folder.run("import t.tmx -o zkstlccc.kst").exitCode, 0);
                QVERIFY2(folder.read("zkstlccc.kst") == bytes, qPrintable(recipe));
            }
        if (tiled.isEmpty())
            QSKIP("tiled is not on PATH");
    }

    // Levels as the editor paints them, side by side, enlarged K x K, markers on the grid only;
    // thumbnails of the first level's cells, from 8 pixels a cell up the view's picture scaled.
    void pictures() {
        const Folder folder;
        // Level 1 has a wall outside its size; level 2's start would land on level 3.
        const QByteArray bytes = file("3 1(3,1)=89 1(5,2)=200 1(11,7)=176 1(12,0)=89 2(0,0)=89 "
                                      "2.startX=40 2.startY=3 3.width=32 3.height=32");
        folder.write("a", bytes);
        const auto view = [&](int level) { // as the editor's view paints it
            Levelset levelset;
            readLevelset(levelset, bytes);
            QImage image;
            drawLevel(levelset.levels[level], image);
            return image;
        };
        for (const QString options :
             {"render a -o all.png", "render a -o m.png --markers", "thumbnail a -o t.png",
              "render a -o m3.png --markers --scale 3", "render a -o m1.png --markers --level 1",
              "thumbnail a -o t80.png --size 1024", "sheet -o s.png"})
            QCOMPARE(folder.run(options).exitCode, 0);
        const QImage all = folder.image("all.png"), marked = folder.image("m.png");
        QCOMPARE(all.size(), QSize(3 * 512 + 2 * 16, 512));
        for (int level = 0; level < 3; ++level)
            QCOMPARE(all.copy(528 * level, 0, 512, 512), view(level));
        QCOMPARE(all.pixel(520, 100), qRgb(64, 64, 64));
        QCOMPARE(folder.image("m3.png"), marked.scaled(marked.size() * 3));
        QCOMPARE(folder.image("m1.png"), marked.copy(0, 0, 512, 512));
        QCOMPARE(folder.image("t.png"), view(0).copy(0, 0, 192, 128).scaled(96, 64));
        QCOMPARE(folder.image("t80.png"), view(0).copy(0, 0, 192, 128).scaled(960, 640));
        // Start (0, 0), put (1, 0), take (2, 0), finish (11, 7): squares inside their cells in
        // the editor's colours, the tile inside them; nothing where level 2's start would land.
        const unsigned pixels[][3] = {
            {5, 0, 0x80ff80},   {15, 8, 0x80ff80},    {5, 2, 0xffffff}, {16, 8, 0x8080ff},
            {46, 15, 0x0000c0}, {176, 127, 0x00c000}, {184, 120, 0},    {1056 + 117, 48, 0xffffff}};
        for (const auto &[x, y, colour] : pixels)
            QCOMPARE(marked.pixel(x, y) & 0xffffff, colour);
        QCOMPARE(folder.image("s.png").size(), QSize(1712, 2352)); // the tile sheet
        // Cells across and down, the size asked for, the thumbnail's width and height.
        const int rows[][5] = {{32, 32, 128, 128, 128}, {32, 32, 256, 256, 256},
                               {32, 32, 32, 32, 32},    {32, 20, 100, 64, 40},
                               {13, 9, 200, 104, 72},   {12, 32, 512, 192, 512},
                               {5, 3, 128, 80, 48}};
        for (const auto &[width, height, size, pictureWidth, pictureHeight] : rows) {
            folder.write("a", file(QString("2 1.width=%1 1.height=%2").arg(width).arg(height)));
            QCOMPARE(folder.run(QString("thumbnail a -o t.png --size %1").arg(size)).exitCode, 0);
            QCOMPARE(folder.image("t.png").size(), QSize(pictureWidth, pictureHeight));
        }
        // diff's picture: every changed cell outlined in magenta and no other; a removed level
        // shown as it was.
        folder.write("a", file("3 3(1,1)=89"));
        folder.write("b", file("2 @10=ABC123 1(0,0)=75 1(3,4)=75 1(11,7)=75 2.time=7"));
        for (int scale : {1, 3}) {
            QCOMPARE(folder.run(QString("diff a b -o c.png --scale %1").arg(scale)).exitCode, 1);
            const QImage image = folder.image("c.png");
            QCOMPARE(image.width(), (3 * 512 + 2 * 16) * scale);
            for (int i = 0; i < 3 * 32 * 32; ++i) {
                const auto magenta = [&](int x, int y) {
                    const QPoint cell(i / 1024 * 528 + i % 32 * 16, i % 1024 / 32 * 16);
                    return image.pixel((cell + QPoint(x, y)) * scale) == qRgb(255, 0, 255);
                };
                QCOMPARE(magenta(8, 0) && magenta(0, 8) && magenta(15, 15),
                         i == 0 || i == 4 * 32 + 3 || i == 7 * 32 + 11);
            }
            QCOMPARE(image.pixel(QPoint(2 * 528 + 24, 24) * scale), qRgb(0, 0, 0));
        }
    }
};

QTEST_GUILESS_MAIN(KstoolTest)
#include "KstoolTest.moc"
