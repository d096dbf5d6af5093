#include "levels/ByteField.h"

namespace {

bool isBlank(QChar c) {
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

} // namespace

ByteField ByteField::read(const QString &text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;

    bool negative = false;
    if (begin < end && (text[begin] == QLatin1Char('-') || text[begin] == QLatin1Char('+'))) {
        negative = text[begin] == QLatin1Char('-');
        ++begin;
    }
    if (begin == end)
        return {};

    // Digits beyond the 16-bit range stop the count early, so a long run cannot overflow.
    long magnitude = 0;
    for (qsizetype i = begin; i < end; ++i) {
        const QChar c = text[i];
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return {};
        magnitude = magnitude * 10 + (c.unicode() - u'0');
        if (magnitude > 32768)
            return {};
    }
    const long number = negative ? -magnitude : magnitude;
    if (number > 32767)
        return {};
    if (number < 0 || number > 255)
        return {InvalidValue, 0};
    return {Value, static_cast<std::uint8_t>(number)};
}
