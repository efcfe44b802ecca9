#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>

namespace Varnel::Fuzz {

/// What must hold whatever the bytes are; the fuzzer reports the input with which it does not.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

inline QString textOf(const std::uint8_t* data, std::size_t size) {
    return QString::fromUtf8(bytesOf(data, size));
}

} // namespace Varnel::Fuzz
