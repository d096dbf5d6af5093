#include "ReaderCheck.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    checkReader(QByteArrayView(data, qsizetype(size)));
    return 0;
}
