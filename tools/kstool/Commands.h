#pragma once

#include <QString>
#include <QStringList>

// Each command takes the arguments after its name and returns the exit status.
int runCheck(const QStringList &arguments);
int runInfo(const QStringList &arguments);
int runRender(const QStringList &arguments);
int runExport(const QStringList &arguments);
int runImport(const QStringList &arguments);
int runSheet(const QStringList &arguments);
int runThumbnail(const QStringList &arguments);
int runDiff(const QStringList &arguments);
int runMerge(const QStringList &arguments);

// Reports wrong usage of a command and points at its help; returns WrongUsage.
int usageError(const QString &command, const QString &message);
