#pragma once

#include <QByteArray>

#include <chrono>
#include <utility>
#include <vector>

namespace Varnel::Simulator {

/// How the bytes of a reply go out.
struct Transmission {
    enum class Manner { whole, dripped, cutInHalf, closed, withheld };

    Manner manner = Manner::whole;
    std::chrono::milliseconds delay{0};
    int bytesPerSecond = 0; ///< of `dripped`

    bool operator==(const Transmission&) const = default;
};

/// What is sent back for one request.
struct Reply {
    int status = 200;
    QByteArray contentType = "application/json; charset=utf-8";
    std::vector<std::pair<QByteArray, QByteArray>> headers = {}; ///< beside type and length
    QByteArray body = {};
    Transmission transmission = {};
};

} // namespace Varnel::Simulator
