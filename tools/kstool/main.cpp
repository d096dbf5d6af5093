// kstool: the editor's command-line companion. It reads and writes levelset files with the
// editor's own reader, writer and drawing code.
#include "CommandLine.h"
#include "Commands.h"

namespace {

struct Command {
    const char *name;
    int (*run)(const QStringList &);
    const char *summary;
};

const Command Commands[] = {
    {"check", runCheck, "report what the editor's reader would stop at or repair"},
    {"info", runInfo, "show a levelset's tag, levels, settings and counts"},
    {"render", runRender, "paint levels to a PNG as the editor shows them"},
    {"export", runExport, "write a levelset as JSON or as Tiled maps"},
    {"import", runImport, "write a levelset from JSON or Tiled maps"},
    {"sheet", runSheet, "draw the tileset reference sheet"},
    {"thumbnail", runThumbnail, "paint a levelset's first level as a file manager preview"},
    {"diff", runDiff, "show what changed between two levelsets, also as a picture"},
    {"merge", runMerge, "merge two levelsets' changes to a common base (a git merge driver)"},
};

QString help() {
    QString text = QStringLiteral("Usage: kstool COMMAND [ARGUMENTS]\n"
                                  "\n"
                                  "The Kestrix levelset editor's command-line companion.\n"
                                  "\n"
                                  "Commands:\n");
    for (const Command &command : Commands)
        text += QStringLiteral("  %1%2\n")
                    .arg(QLatin1String(command.name), -11)
                    .arg(QLatin1String(command.summary));
    text += QStringLiteral("\n"
                           "\"kstool COMMAND --help\" describes a command.\n"
                           "\n"
                           "Exit status: 0 success, 1 a problem found in the input (or a file\n"
                           "that cannot be read or written), 2 wrong usage. diff and merge exit\n"
                           "as diff(1) does: 0 no difference or a clean merge, 1 different or\n"
                           "in conflict, 2 trouble.\n");
    return text;
}

} // namespace

int main(int argc, char *argv[]) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (arguments.isEmpty()) {
        printError(help());
        return WrongUsage;
    }
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        printOut(help());
        return Success;
    }
    if (name == QLatin1String("--version")) {
        printOut(QStringLiteral("kstool " KST_VERSION "\n"));
        return Success;
    }
    for (const Command &command : Commands) {
        if (name != QLatin1String(command.name))
            continue;
        return command.run(arguments);
    }
    return fail(WrongUsage,
                QStringLiteral("unknown command \"%1\"\nTry \"kstool --help\".").arg(name));
}
