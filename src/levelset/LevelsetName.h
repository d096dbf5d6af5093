#pragma once

#include <QString>

// How a levelset file is named: the tag the writer puts into the file, the name rule a new
// save must pass, and the path form a save writes to.
//
// A "character" here is one Unicode code point, so a name part like "é1x" counts as three.
// Case conversion maps one character to one character, so a path never changes its length.

// Which characters separate folders: "/" on POSIX systems, "\" and "/" on Windows, where file
// names also ignore case.
enum class PathStyle { Posix, Windows };

#ifdef Q_OS_WIN
inline constexpr PathStyle NativePathStyle = PathStyle::Windows;
#else
inline constexpr PathStyle NativePathStyle = PathStyle::Posix;
#endif

inline constexpr int LevelsetTagLength = 7;

// "KST0" + the three characters after the first "zkstl" in path (case-sensitive search),
// upper-cased; blanks pad it to seven characters when fewer follow or when there is no
// "zkstl" at all. A letter whose upper case has no one-byte form stays as it is.
QString levelsetTag(const QString &path);

// The rule a newly chosen save path must pass: its last component, lower-cased, is "zkstl",
// exactly three characters and ".kst", and a separator stands before it.
bool isValidLevelsetFileName(const QString &path, PathStyle style = NativePathStyle);

// The path a newly chosen save name writes to. Where names ignore case the whole path is
// lower-cased; elsewhere only the file name is, because lower-casing a folder could name a
// different folder.
QString saveFormOfPath(const QString &path, PathStyle style = NativePathStyle);

// The path Save rewrites for a levelset that already has one: the very file it was opened from
// or last saved to. Where names ignore case its lower-case form names that file; elsewhere
// lower-casing could name a namesake, so the path is kept exactly as it is.
QString resavePath(const QString &path, PathStyle style = NativePathStyle);
