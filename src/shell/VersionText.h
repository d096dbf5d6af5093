#pragma once

#include <QString>

// The version the program is built as: the build's project version, "2.0".
QString applicationVersion();

// "Version 2.0": the major and minor number of a version.
QString versionText(const QString &version = applicationVersion());
