#pragma once

#include <QString>

// "Version 2.0": the application's version, major and minor number.
QString versionText();
