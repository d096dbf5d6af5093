#include "MonkeyFolder.h"

#include "levelset/LevelsetFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace {

QByteArray readAll(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A levelset another program might have written: lower-case passcodes, foreign level and alien
// types, positions outside the level, reserved bytes in use.
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
        for (std::size_t c = 0; c < level.tiles.size(); ++c)
            level.tiles[c] = static_cast<std::uint8_t>((c / 32 * 3 + c % 32 + i) % 40);
    }
    return levelset;
}

// A name as long as a file name may be, less a little: the save's temporary neighbour, whose
// name is longer still, may not be creatable, so the old file staying is a right outcome.
const QString LongName = QString(243, u'l') + QStringLiteral("zkstllng.kst");

} // namespace

MonkeyFolder::MonkeyFolder(std::mt19937 &random) : random_(random) {
    if (!dir_.isValid())
        return;
    for (const char *name : {"sub", "Upper", "zkstlold"})
        QDir(root()).mkdir(QLatin1StringView(name));
    const QByteArray sample = writeLevelset(foreignLevelset(), QStringLiteral("zkstlfor.kst"));
    QByteArray tagless = sample, countZero = sample.left(52), countNine = sample, tooWide = sample;
    tagless.replace(0, 7, "garbage");
    countZero[7] = 0;
    countNine[7] = 9;
    tooWide[52 + LevelRecord::Width] = 40;
    putFile(QStringLiteral("zkstlfor.kst"), sample);
    putFile(QStringLiteral("ZKSTLTag.kst"), tagless);
    putFile(QStringLiteral("zkstlsho.kst"), sample.left(sample.size() / 2));
    putFile(QStringLiteral("zkstlze0.kst"), countZero);
    putFile(QStringLiteral("zkstlni9.kst"), countNine);
    putFile(QStringLiteral("zkstlwid.kst"), tooWide);
    putFile(QStringLiteral("zkstltrl.kst"), sample + QByteArray(9000, '\x7f'));
    putFile(QStringLiteral("sub/levels.bin"), sample);
    putFile(QStringLiteral("plain.kst"), "not a folder");
    putFile(LongName, sample);
}

void MonkeyFolder::putFile(const QString &name, const QByteArray &bytes) {
    const QString path = root() + u'/' + name;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    expected_[path] = bytes;
}

QString MonkeyFolder::saveName() {
    // Weighted folders; few distinct name characters, so saves often land on an earlier file.
    static const char *const Folders[] = {"",    "",      "",         "",        "sub",
                                          "sub", "Upper", "zkstlold", "missing", "plain.kst"};
    static const char *const BrokenNames[] = {"zkstlab.kst",  "zkstlabcd.kst",    "abc.kst",
                                              "zkstlabc.txt", "zkstlabc.kst.bak", "xzkstlabc.kst"};
    static const QString NameCharacters = QStringLiteral("aB1\u00e9_ ");
    if (pick(12) == 0)
        return {};
    QString path = root() + u'/';
    if (const char *folder = Folders[pick(std::size(Folders))]; *folder)
        path += QLatin1StringView(folder) + u'/';
    if (pick(4) == 0)
        return path + QLatin1StringView(BrokenNames[pick(std::size(BrokenNames))]);
    QString name = QStringLiteral("zkstl");
    for (int i = 0; i < 3; ++i)
        name += NameCharacters[pick(static_cast<int>(NameCharacters.size()))];
    name += QStringLiteral(".kst");
    for (QChar &c : name)
        if (pick(3) == 0)
            c = c.toUpper();
    ruleFollowers_.insert(path + name);
    return path + name;
}

QString MonkeyFolder::openName() {
    const QString r = root() + u'/';
    const QString existing = std::next(expected_.cbegin(), pick(int(expected_.size()))).key();
    switch (pick(10)) {
    case 0:
        return {};
    case 1:
        return QFileInfo(existing).path() + u'/' + QFileInfo(existing).fileName().toUpper();
    case 2:
        return r + QStringLiteral("missing/zkstlxyz.kst");
    case 3:
        return pick(2) ? r + QStringLiteral("sub") : r + QStringLiteral("plain.kst/zkstlabc.kst");
    case 4:
        return r + QStringLiteral("zkstlnew.kst");
    default:
        return existing;
    }
}

QString MonkeyFolder::writtenForm(const QString &path) {
    const qsizetype nameStart = path.lastIndexOf(u'/') + 1;
    return path.left(nameStart) + path.mid(nameStart).toLower();
}

MonkeyFolder::SaveOutcome MonkeyFolder::noteSave(const QString &target, const QByteArray &bytes) {
    const QFileInfo file(target);
    const QByteArray onDisk = file.isFile() ? readAll(target) : QByteArray();
    const bool unchanged =
        expected_.contains(target) ? file.isFile() && onDisk == expected_[target] : !file.isFile();
    SaveOutcome outcome{file.isFile() && onDisk == bytes, {}};
    const bool folderWritable = QFileInfo(file.path()).isDir();
    const bool nameRoomy = file.fileName().toUtf8().size() < 200;
    if (!outcome.written && !unchanged)
        outcome.fault = QStringLiteral("%1 holds neither its old bytes nor the new ones (%2 bytes)")
                            .arg(target)
                            .arg(onDisk.size());
    else if (outcome.written && !folderWritable)
        outcome.fault = QStringLiteral("%1 was written below a folder that is none").arg(target);
    else if (!outcome.written && folderWritable && nameRoomy && !file.isDir())
        outcome.fault = QStringLiteral("%1 was not written although its folder exists").arg(target);
    if (outcome.written) {
        expected_[target] = bytes;
        saved_.insert(target);
    }
    return outcome;
}

QString MonkeyFolder::check() const {
    QSet<QString> present;
    QDirIterator it(root(), QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        present.insert(path);
        if (!expected_.contains(path))
            return QStringLiteral("unexpected file %1").arg(path);
        if (readAll(path) != expected_[path])
            return QStringLiteral("%1 differs from its last save").arg(path);
    }
    for (auto it = expected_.cbegin(); it != expected_.cend(); ++it)
        if (!present.contains(it.key()))
            return QStringLiteral("%1 has gone").arg(it.key());
    return {};
}
