#include "CommandLine.h"
#include "Commands.h"

#include <cstdio>

namespace {

const OptionSpec *findOption(const QList<OptionSpec> &options, const QString &name) {
    for (const OptionSpec &option : options)
        if (option.name == name || (!option.shortName.isEmpty() && option.shortName == name))
            return &option;
    return nullptr;
}

void write(std::FILE *stream, const QString &text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, bytes.size(), stream);
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments, const QList<OptionSpec> &options) {
    QList<OptionSpec> known = options;
    known.append({QStringLiteral("--help"), QStringLiteral("-h"), false});

    CommandLine line;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (optionsEnded || !argument.startsWith(QLatin1Char('-')) ||
            argument == QLatin1String("-")) {
            line.positional << argument;
            continue;
        }
        if (argument == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        const qsizetype equals = argument.indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? argument : argument.left(equals);
        const OptionSpec *option = findOption(known, name);
        if (!option) {
            line.error = QStringLiteral("unknown option %1").arg(name);
            return line;
        }
        if (line.values.contains(option->name)) {
            line.error = QStringLiteral("%1 given twice").arg(option->name);
            return line;
        }
        if (!option->takesValue) {
            if (equals >= 0) {
                line.error = QStringLiteral("%1 takes no value").arg(option->name);
                return line;
            }
            line.values.insert(option->name, QString());
        } else if (equals >= 0) {
            line.values.insert(option->name, argument.mid(equals + 1));
        } else if (i + 1 < arguments.size()) {
            line.values.insert(option->name, arguments[++i]);
        } else {
            line.error = QStringLiteral("%1 needs a value").arg(option->name);
            return line;
        }
    }
    return line;
}

std::optional<int> wholeNumber(const QString &text, int low, int high) {
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

void printOut(const QString &text) {
    write(stdout, text);
}

void printError(const QString &text) {
    write(stderr, text);
}

int fail(int status, const QString &message) {
    printError(QStringLiteral("kstool: ") + message + QLatin1Char('\n'));
    return status;
}

std::optional<int> scaleOption(const CommandLine &line) {
    const QString name = QStringLiteral("--scale");
    return line.has(name) ? wholeNumber(line.value(name), 1, MaxScale) : 1;
}

int usageError(const QString &command, const QString &message) {
    printError(QStringLiteral("kstool %1: %2\nTry \"kstool %1 --help\".\n").arg(command, message));
    return WrongUsage;
}

ParsedCommand parseCommand(const QString &command, const QStringList &arguments,
                           const QList<OptionSpec> &options, const QString &help) {
    ParsedCommand parsed{CommandLine::parse(arguments, options), std::nullopt};
    if (!parsed.line.error.isEmpty()) {
        parsed.done = usageError(command, parsed.line.error);
    } else if (parsed.line.has(QStringLiteral("--help"))) {
        printOut(help);
        parsed.done = Success;
    }
    return parsed;
}
