#pragma once

#include <QString>
#include <cstdint>

// How the text of a number field of the panel reads as a header byte. Accepted: optional blanks,
// an optional sign and decimal digits, then optional blanks. Text of any other form, or a number
// outside the signed 16-bit range, is an invalid character; a number outside 0..255 an invalid
// value. An empty text is an invalid character here: the panel replaces it with "0" first.
struct ByteField {
    enum Outcome { Value, InvalidCharacter, InvalidValue };

    Outcome outcome = InvalidCharacter;
    std::uint8_t value = 0; // meaningful for Value only

    static ByteField read(const QString &text);
};
