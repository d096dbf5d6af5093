#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "Findings.h"
#include "WholeLevelset.h"

#include <array>

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool merge BASE OURS THEIRS -o OUT\n"
    "\n"
    "Three-way merge of levelset files, usable as a git merge driver:\n"
    "  git config merge.kst.driver \"kstool merge %O %A %B -o %A\"\n"
    "\n"
    "Merges byte by byte over everything a levelset holds: the tag, level count, reserved\n"
    "bytes and passcode characters, and every header byte and every cell of the whole\n"
    "32 x 32 grid of all 8 level records, so that a cell hidden by a smaller size merges\n"
    "too. A value changed on one side only takes that side; changed the same way on both,\n"
    "it takes that; changed differently on both, it is a conflict: OUT keeps OURS's value\n"
    "and the conflict is listed on standard error in kstool diff's words with the three\n"
    "values:\n"
    "\n"
    "  conflict: level 1: cell (3, 4) floor 0 -> ours solid wall 89, theirs white key 55\n"
    "\n"
    "A result in which a level holds more than 10 alien holes or 5 security guards, which\n"
    "the editor refuses to save, is listed the same way:\n"
    "\n"
    "  conflict: level 2 has 11 alien holes, at most 10\n"
    "\n"
    "The tag merges like every other byte and is never taken from OUT's name. OUT is\n"
    "written in one piece, also when it is one of the inputs. An input that cannot be read\n"
    "or that the editor's reader would have to repair (see kstool check) is trouble: OUT is\n"
    "left as it was.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH  the levelset file to write (required)\n"
    "\n"
    "Exit status: 0 merged cleanly, 1 merged with conflicts, 2 trouble (an input that cannot\n"
    "be read or needs repair, OUT cannot be written, wrong usage).\n");

struct Merge {
    WholeLevelset result;
    QStringList conflicts;
};

QList<LevelsetField> everyField() {
    QList<LevelsetField> fields = levelsetWideFields();
    for (int level = 0; level < Levelset::MaxLevels; ++level) {
        fields << headerFields(level);
        for (int y = 0; y < LevelRecord::GridSize; ++y)
            for (int x = 0; x < LevelRecord::GridSize; ++x)
                fields << cellField(level, x, y);
    }
    return fields;
}

Merge merge(const WholeLevelset &base, const WholeLevelset &ours, const WholeLevelset &theirs) {
    Merge merge{ours, {}};
    QList<bool> conflicting(WholeLevelset::Size, false);
    for (int offset = 0; offset < WholeLevelset::Size; ++offset) {
        if (theirs.at(offset) == base.at(offset) || theirs.at(offset) == ours.at(offset))
            continue;
        if (ours.at(offset) == base.at(offset))
            merge.result.bytes[offset] = theirs.bytes[offset];
        else
            conflicting[offset] = true;
    }
    if (conflicting.contains(true))
        for (const LevelsetField &field : everyField())
            if (std::any_of(conflicting.begin() + field.offset,
                            conflicting.begin() + field.offset + field.length,
                            [](bool b) { return b; }))
                merge.conflicts << QStringLiteral("%1 %2 -> ours %3, theirs %4")
                                       .arg(field.title(), field.value(base), field.value(ours),
                                            field.value(theirs));
    merge.conflicts << limitFindings(merge.result.levelset());
    return merge;
}

} // namespace

int runMerge(const QStringList &arguments) {
    const QString command = QStringLiteral("merge");
    const auto [line, done] = parseCommand(
        command, arguments, {{QStringLiteral("--output"), QStringLiteral("-o"), true}}, Help);
    if (done)
        return *done;
    if (line.positional.size() != 3)
        return usageError(command, QStringLiteral("give three levelset files, BASE OURS THEIRS"));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command, QStringLiteral("name the levelset to write with -o OUT"));

    std::array<WholeLevelset, 3> inputs;
    for (int i = 0; i < 3; ++i) {
        const QString &path = line.positional[i];
        QString error;
        const std::optional<ReadFile> file = readWholeLevelset(path, error);
        if (!file)
            return fail(Trouble, error);
        if (!file->repairs.isEmpty())
            return fail(Trouble, QStringLiteral("%1: the editor's reader would repair it (%2); "
                                                "not merged, %3 left as it was")
                                     .arg(path, file->repairs.join(QStringLiteral("; ")), output));
        inputs[i] = file->levelset;
    }
    const Merge result = merge(inputs[0], inputs[1], inputs[2]);
    const QString error = writeWholeFile(output, result.result.file());
    if (!error.isEmpty())
        return fail(Trouble, error);
    if (result.conflicts.isEmpty())
        return Success;
    for (const QString &conflict : result.conflicts)
        printError(QStringLiteral("conflict: ") + conflict + QLatin1Char('\n'));
    const qsizetype count = result.conflicts.size();
    return fail(Conflicted, QStringLiteral("%1 %2 to resolve; the merged file holds ours wherever "
                                           "the two sides conflict")
                                .arg(count)
                                .arg(count == 1 ? "conflict" : "conflicts"));
}
