#pragma once

#include <VarnelShared/JSON.h>

#include <QByteArray>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the service says: files of simulator/replies, filled in.
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
    std::optional<bool> acceptsPassword = {}; ///< of a sign-in; none where the password was not judged
};

/// The content of a file in simulator/replies, which is built into the program. A missing file is fatal.
QByteArray replyFile(const char* name);

/// A JSON file of simulator/replies with the members of the object `values` in the place of its placeholders:
/// - a text that is nothing but "${name}" becomes the value, "${name}" within a text becomes the value as text;
/// - a member "${name?}" is left out where there is no such value;
/// - an array element with a member "$each": "name" stands for one such element for each object of the list `name`,
///   whose members count before those around it.
/// A placeholder without a value is fatal: file and code belong together.
JSON filledReply(const char* name, const JSON& values = JSON::object());

Reply jsonReply(const JSON& body);

/// The data in the frame that is around every success.
Reply success(JSON data);

/// A refusal as the service tells it: a code, number or text, and hasError false nevertheless.
Reply refusal(const JSON& code, const std::string& message);

/// A breakdown inside the service: hasError is true and there is no data. An empty message is left out.
Reply breakdown(const std::string& message);

} // namespace Varnel::Simulator
