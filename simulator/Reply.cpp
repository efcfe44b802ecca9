#include <simulator/Reply.h>

#include <QFile>

#include <map>
#include <optional>

namespace Varnel::Simulator {

namespace {
/// The objects in which a placeholder is looked up, the innermost last.
using Scopes = std::vector<const JSON*>;

constexpr const char* eachKey = "$each";

struct Placeholder {
    std::string name;
    bool isOptional = false;
};

/// The placeholder that is the whole text, or none.
std::optional<Placeholder> wholePlaceholder(const JSON& part) {
    if (!part.is_string()) {
        return std::nullopt;
    }
    const std::string& text = part.get_ref<const std::string&>();
    if (text.size() < 4 || !text.starts_with("${") || text.find('}') != text.size() - 1) {
        return std::nullopt;
    }
    const bool isOptional = text[text.size() - 2] == '?';
    return Placeholder{text.substr(2, text.size() - (isOptional ? 4 : 3)), isOptional};
}

const JSON* found(const std::string& name, const Scopes& scopes) {
    for (auto scope = scopes.rbegin(); scope != scopes.rend(); ++scope) {
        if (const auto member = (*scope)->find(name); member != (*scope)->end()) {
            return &*member;
        }
    }
    return nullptr;
}

const JSON& required(const std::string& name, const Scopes& scopes) {
    const JSON* value = found(name, scopes);
    if (!value) {
        qFatal("A reply file asks for the unknown value %s", name.c_str());
    }
    return *value;
}

std::string filledText(std::string text, const Scopes& scopes) {
    for (auto begin = text.find("${"); begin != std::string::npos; begin = text.find("${", begin)) {
        const auto end = text.find('}', begin);
        const std::string name = text.substr(begin + 2, end - begin - 2);
        const JSON& value = required(name, scopes);
        const std::string piece = value.is_string() ? value.get<std::string>() : value.dump();
        text.replace(begin, end - begin + 1, piece);
        begin += piece.size();
    }
    return text;
}

JSON filled(const JSON& part, const Scopes& scopes);

void addElements(JSON& array, JSON element, const Scopes& scopes) {
    if (!element.is_object() || !element.contains(eachKey)) {
        array.push_back(filled(element, scopes));
        return;
    }
    const auto list = element[eachKey].get<std::string>();
    const JSON& items = required(list, scopes);
    element.erase(eachKey);
    for (const JSON& item : items) {
        Scopes inner = scopes;
        inner.push_back(&item);
        array.push_back(filled(element, inner));
    }
}

JSON filledArray(const JSON& part, const Scopes& scopes) {
    JSON array = JSON::array();
    for (const JSON& element : part) {
        addElements(array, element, scopes);
    }
    return array;
}

JSON filledObject(const JSON& part, const Scopes& scopes) {
    JSON object = JSON::object();
    for (const auto& [key, member] : part.items()) {
        const std::optional<Placeholder> placeholder = wholePlaceholder(member);
        if (!placeholder || !placeholder->isOptional || found(placeholder->name, scopes)) {
            object[key] = filled(member, scopes);
        }
    }
    return object;
}

JSON filled(const JSON& part, const Scopes& scopes) {
    if (part.is_object()) {
        return filledObject(part, scopes);
    }
    if (part.is_array()) {
        return filledArray(part, scopes);
    }
    if (const std::optional<Placeholder> placeholder = wholePlaceholder(part)) {
        return required(placeholder->name, scopes);
    }
    return part.is_string() ? JSON(filledText(part.get<std::string>(), scopes)) : part;
}
} // namespace

QByteArray replyFile(const char* name) {
    QFile file(QStringLiteral(":/replies/") + QString::fromUtf8(name));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("There is no reply file %s", name);
    }
    return file.readAll();
}

JSON filledReply(const char* name, const JSON& values) {
    static std::map<std::string, JSON> parsed;
    auto entry = parsed.find(name);
    if (entry == parsed.end()) {
        Result<JSON> file = parseJSON(replyFile(name));
        if (!file) {
            qFatal("The reply file %s: %s", name, qUtf8Printable(file.error().localizedDescription()));
        }
        entry = parsed.emplace(name, std::move(*file)).first;
    }
    return filled(entry->second, {&values});
}

Reply jsonReply(const JSON& body) {
    return {.body = serializedJSON(body)};
}

Reply success(JSON data) {
    return jsonReply(filledReply("success.json", {{"data", std::move(data)}}));
}

Reply refusal(const JSON& code, const std::string& message) {
    return jsonReply(filledReply("refusal.json", {{"code", code}, {"message", message}}));
}

Reply breakdown(const std::string& message) {
    return jsonReply(filledReply("breakdown.json", message.empty() ? JSON::object() : JSON{{"message", message}}));
}

} // namespace Varnel::Simulator
