#include <simulator/Envelope.h>

namespace Varnel::Simulator {

namespace {
/// The address is one of the service's own; it is no base for calls, although it stands under "api".
JSON components() {
    return {{"para", nullptr},
            {"langVer", 241},
            {"timeSpan", 0},
            {"api", "http://127.0.0.1:82/api/v3/PowerStation/GetMonitorDetailByPowerstationId"},
            {"msgSocketAdr", nullptr}};
}
} // namespace

JSON successEnvelope(JSON data) {
    return {{"language", "en"}, {"function", nullptr},     {"hasError", false},         {"msg", "success"},
            {"code", "0"},      {"data", std::move(data)}, {"components", components()}};
}

JSON failureEnvelope(const std::string& code, const std::string& message) {
    JSON codeValue = code;
    if (const Result<JSON> number = parseJSON(code); number && number->is_number_integer()) {
        codeValue = *number;
    }
    return {{"language", "en"},  {"function", nullptr}, {"hasError", false},         {"msg", message},
            {"code", codeValue}, {"data", nullptr},     {"components", components()}};
}

JSON faultEnvelope(const std::string& message) {
    JSON envelope = {{"language", "en"}, {"hasError", true}, {"code", "innerexception"}, {"data", ""}};
    if (!message.empty()) {
        envelope["msg"] = message;
    }
    return envelope;
}

Reply jsonReply(const JSON& body) {
    return {.body = serializedJSON(body)};
}

} // namespace Varnel::Simulator
