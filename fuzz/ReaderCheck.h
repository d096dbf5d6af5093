#pragma once

#include <QByteArrayView>
#include <QString>

// What must hold for any bytes at all given to the levelset reader: the levelset it leaves
// keeps the model's invariants, a file read without findings is written back byte for byte
// (tag aside), and whatever was read writes, reads and writes again to the same bytes.
// Returns an empty string when all of this holds, otherwise what broke.
QString readerViolation(QByteArrayView bytes);

// The same check for the fuzzer: prints what broke and aborts.
void checkReader(QByteArrayView bytes);
