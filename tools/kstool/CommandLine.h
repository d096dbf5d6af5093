#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

// Exit statuses shared by every command.
enum ExitStatus { Success = 0, InputProblem = 1, WrongUsage = 2 };
// diff and merge exit as diff(1) does: 0 the same or merged cleanly, 1 different or in
// conflict, 2 trouble (wrong usage among it).
enum ComparisonStatus { Different = 1, Conflicted = 1, Trouble = 2 };

struct OptionSpec {
    QString name;      // "--output"
    QString shortName; // "-o", or empty
    bool takesValue = false;
};

// One command's arguments after its name: options (in any place, "--name=value" or
// "--name value"), then the rest in order. "--" ends the options.
struct CommandLine {
    QStringList positional;
    QHash<QString, QString> values; // by the option's long name; flags map to an empty value
    QString error;                  // why the arguments are wrong, or empty

    bool has(const QString &name) const { return values.contains(name); }
    QString value(const QString &name) const { return values.value(name); }

    // --help and -h are always known.
    static CommandLine parse(const QStringList &arguments, const QList<OptionSpec> &options);
};

// A command's arguments parsed with its options. After --help there is nothing to run, and
// neither after wrong usage: the help is printed or the error reported (usageError, in
// Commands.h), and done holds the exit status the command returns.
struct ParsedCommand {
    CommandLine line;
    std::optional<int> done;
};
ParsedCommand parseCommand(const QString &command, const QStringList &arguments,
                           const QList<OptionSpec> &options, const QString &help);
// A decimal number from low to high, or nullopt.
std::optional<int> wholeNumber(const QString &text, int low, int high);

// Writes text to standard output or standard error as UTF-8.
void printOut(const QString &text);
void printError(const QString &text);
// "kstool: " + message on standard error, and the status to return.
int fail(int status, const QString &message);

// The --scale option of the commands that draw: 1 when not given, nullopt when it is not a
// whole number from 1 to MaxScale.
inline constexpr int MaxScale = 8;
std::optional<int> scaleOption(const CommandLine &line);
inline const QString ScaleError =
    QStringLiteral("--scale takes a whole number from 1 to %1").arg(MaxScale);
