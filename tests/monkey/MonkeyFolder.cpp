#include "MonkeyFolder.h"

#include "levelset/Levelset.h"
#include "levelset/LevelsetFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace {

// Folders below the root, and how a save into each must end.
struct Folder {
    const char *name;
    int weight;
};
constexpr Folder SaveFolders[] = {
    {"", 8}, {"sub", 4}, {"Upper", 2}, {"zkstlold", 2}, {"missing", 2}, {"plain.kst", 2},
};

// Few distinct name characters, so saves often land on a file written before.
const QString NameCharacters = QStringLiteral("aB1\u00e9_ ");

const char *const BrokenNames[] = {
    "zkstlab.kst", "zkstlabcd.kst", "abc.kst", "zkstlabc.txt", "zkstlabc.kst.bak", "xzkstlabc.kst",
};

QByteArray readAll(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A levelset another program might have written: lower-case passcodes, a foreign level type
// and alien type, positions outside the level, reserved bytes in use.
Levelset foreignLevelset() {
    Levelset levelset;
    levelset.levelCount = 3;
    levelset.reserved1 = 0xA5;
    levelset.reserved2 = 0x01;
    levelset.storePasscode(0, QStringLiteral("lower"));
    levelset.storePasscode(1, QStringLiteral("MiXeD9"));
    for (int i = 0; i < 3; ++i) {
        LevelRecord &level = levelset.levels[i];
        level.header[LevelRecord::Width] = static_cast<std::uint8_t>(14 + 6 * i);
        level.header[LevelRecord::Height] = static_cast<std::uint8_t>(9 + 7 * i);
        level.header[LevelRecord::LevelType] = static_cast<std::uint8_t>(2 * i);
        level.header[LevelRecord::AlienType] = static_cast<std::uint8_t>(i == 1 ? 0 : 3);
        level.header[LevelRecord::FinishX] = 31;
        level.header[LevelRecord::PutType] = 177;
        level.header[LevelRecord::TakeType] = static_cast<std::uint8_t>(200 + i);
        for (int x = 0; x < LevelRecord::GridSize; ++x)
            for (int y = 0; y < LevelRecord::GridSize; ++y)
                level.tile(x, y) = static_cast<std::uint8_t>((3 * x + y + i) % 40);
    }
    return levelset;
}

} // namespace

MonkeyFolder::MonkeyFolder(std::mt19937 &random) : random_(random) {
    if (!dir_.isValid())
        return;
    const QDir rootDir(root());
    for (const char *name : {"sub", "Upper", "zkstlold"})
        rootDir.mkdir(QLatin1StringView(name));
    putForeignFiles();
}

void MonkeyFolder::putFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    expected_[path] = bytes;
}

void MonkeyFolder::putForeignFiles() {
    const QString r = root() + u'/';
    const QByteArray sample = writeLevelset(foreignLevelset(), QStringLiteral("zkstlfor.kst"));

    QByteArray tagless = sample;
    tagless.replace(0, 7, "garbage");
    QByteArray countZero = sample.left(52);
    countZero[7] = 0;
    QByteArray countNine = sample;
    countNine[7] = 9;
    QByteArray tooWide = sample;
    tooWide[52 + LevelRecord::Width] = 40;

    putFile(r + QStringLiteral("zkstlfor.kst"), sample);
    putFile(r + QStringLiteral("ZKSTLTag.kst"), tagless);
    putFile(r + QStringLiteral("zkstlsho.kst"), sample.left(sample.size() / 2));
    putFile(r + QStringLiteral("zkstlze0.kst"), countZero);
    putFile(r + QStringLiteral("zkstlni9.kst"), countNine);
    putFile(r + QStringLiteral("zkstlwid.kst"), tooWide);
    putFile(r + QStringLiteral("zkstltrl.kst"), sample + QByteArray(9000, '\x7f'));
    putFile(r + QStringLiteral("sub/levels.bin"), sample);
    putFile(r + QStringLiteral("plain.kst"), "not a folder");
    // The name is as long as a file name may be, less a little: the saving's temporary
    // neighbour, whose name is longer still, may not be creatable.
    putFile(r + QString(243, u'l') + QStringLiteral("zkstllng.kst"), sample);
}

QString MonkeyFolder::saveName() {
    if (pick(12) == 0)
        return {};
    int total = 0;
    for (const Folder &folder : SaveFolders)
        total += folder.weight;
    int choice = pick(total);
    const Folder *folder = SaveFolders;
    while (choice >= folder->weight)
        choice -= (folder++)->weight;
    QString path = root() + u'/';
    if (*folder->name)
        path += QLatin1StringView(folder->name) + u'/';

    const bool valid = pick(4) != 0;
    if (valid) {
        QString name = QStringLiteral("zkstl");
        for (int i = 0; i < 3; ++i)
            name += NameCharacters[pick(static_cast<int>(NameCharacters.size()))];
        name += QStringLiteral(".kst");
        for (QChar &c : name)
            if (pick(3) == 0)
                c = c.toUpper();
        path += name;
    } else {
        path += QLatin1StringView(BrokenNames[pick(std::size(BrokenNames))]);
    }
    ruleAnswers_.insert(path, valid);
    return path;
}

QString MonkeyFolder::anyExpectedPath() {
    auto it = expected_.cbegin();
    std::advance(it, pick(static_cast<int>(expected_.size())));
    return it.key();
}

QString MonkeyFolder::openName() {
    const QString r = root() + u'/';
    switch (pick(10)) {
    case 0:
        return {};
    case 1: {
        const QFileInfo file(anyExpectedPath());
        return file.path() + u'/' + file.fileName().toUpper();
    }
    case 2:
        return r + QStringLiteral("missing/zkstlxyz.kst");
    case 3:
        return pick(2) ? r + QStringLiteral("sub") : r + QStringLiteral("plain.kst/zkstlabc.kst");
    case 4:
        return r + QStringLiteral("zkstlnew.kst");
    default:
        return anyExpectedPath();
    }
}

QString MonkeyFolder::writtenForm(const QString &path) {
    const qsizetype nameStart = path.lastIndexOf(u'/') + 1;
    return path.left(nameStart) + path.mid(nameStart).toLower();
}

MonkeyFolder::SaveOutcome MonkeyFolder::noteSave(const QString &target, const QByteArray &bytes) {
    SaveOutcome outcome;
    const QFileInfo file(target);
    const bool isFile = file.isFile();
    const QByteArray onDisk = isFile ? readAll(target) : QByteArray();
    const bool existedBefore = expected_.contains(target);
    if (isFile && onDisk == bytes) {
        outcome.written = true;
    } else if (existedBefore ? !(isFile && onDisk == expected_[target]) : isFile) {
        outcome.fault = QStringLiteral("%1 holds neither its old bytes nor the new ones (%2 bytes)")
                            .arg(target)
                            .arg(onDisk.size());
        return outcome;
    }

    const QFileInfo folder(file.path());
    const bool folderWritable = folder.isDir();
    const bool nameRoomy = file.fileName().toUtf8().size() < 200;
    if (outcome.written && !folderWritable)
        outcome.fault = QStringLiteral("%1 was written below a folder that is none").arg(target);
    else if (!outcome.written && folderWritable && nameRoomy && !file.isDir())
        outcome.fault = QStringLiteral("%1 was not written although its folder exists").arg(target);

    if (outcome.written) {
        expected_[target] = bytes;
        saved_.insert(target, true);
    }
    return outcome;
}

QString MonkeyFolder::check() const {
    QStringList present;
    QDirIterator it(root(), QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        present.append(it.next());
    for (const QString &path : present) {
        const auto expected = expected_.constFind(path);
        if (expected == expected_.cend())
            return QStringLiteral("unexpected file %1").arg(path);
        const QByteArray bytes = readAll(path);
        if (bytes != *expected) {
            qsizetype at = 0;
            while (at < bytes.size() && at < expected->size() && bytes[at] == (*expected)[at])
                ++at;
            return QStringLiteral(
                       "%1 differs from its last save at byte %2 (%3 bytes, %4 expected)")
                .arg(path)
                .arg(at)
                .arg(bytes.size())
                .arg(expected->size());
        }
    }
    for (auto it = expected_.cbegin(); it != expected_.cend(); ++it)
        if (!present.contains(it.key()))
            return QStringLiteral("%1 has gone").arg(it.key());
    return {};
}
