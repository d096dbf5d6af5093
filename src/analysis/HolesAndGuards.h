#pragma once

#include <QString>

struct Levelset;

// A level may hold at most 10 alien holes (both hole ids together) and 5 security guards;
// a save is refused while any level in use holds more.
inline constexpr int MaxAlienHoles = 10;
inline constexpr int MaxSecurityGuards = 5;
inline const QString HolesAndGuardsTitle = QStringLiteral("Error!");

// 0 when every level in use keeps both limits, otherwise the 1-based number of the first level
// that breaks one. Cells outside a level's width and height are not looked at.
int checkHolesAndGuards(const Levelset &levelset);

// "Either too many Alien Holes or Security Guards on Level " + level
QString holesAndGuardsMessage(int level);
