#include <VarnelSEMS/SEMSJSONTree.h>

#include <algorithm>

namespace Varnel {

namespace {
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// As `normalizedKey(key) == wanted`, without making the text: it runs once per member and key of every search.
bool matches(std::string_view key, std::string_view wanted) {
    std::size_t matched = 0;
    for (const char c : key) {
        if (c == '_') {
            continue;
        }
        if (matched == wanted.size() || lower(c) != wanted[matched]) {
            return false;
        }
        ++matched;
    }
    return matched == wanted.size();
}

bool acceptsAll(const JSON& /*value*/) {
    return true;
}
} // namespace

std::string lowercased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string normalizedKey(std::string_view key) {
    std::string result = lowercased(key);
    std::erase(result, '_');
    return result;
}

SEMSJSONMember firstMember(const JSON& tree, std::string_view normalizedKey, bool (*accepts)(const JSON& value)) {
    if (const auto* object = tree.get_ptr<const JSON::object_t*>()) {
        for (const auto& [key, value] : *object) {
            if (matches(key, normalizedKey) && accepts(value)) {
                return {&value, &tree};
            }
        }
        for (const auto& [key, value] : *object) {
            if (const SEMSJSONMember hit = firstMember(value, normalizedKey, accepts)) {
                return hit;
            }
        }
    } else if (const auto* array = tree.get_ptr<const JSON::array_t*>()) {
        for (const JSON& element : *array) {
            if (const SEMSJSONMember hit = firstMember(element, normalizedKey, accepts)) {
                return hit;
            }
        }
    }
    return {};
}

const JSON* firstValue(const JSON& tree, std::string_view normalizedKey) {
    return firstMember(tree, normalizedKey, acceptsAll).value;
}

const JSON* ownValue(const JSON& object, std::string_view normalizedKey, bool (*accepts)(const JSON& value)) {
    if (const auto* members = object.get_ptr<const JSON::object_t*>()) {
        for (const auto& [key, value] : *members) {
            if (matches(key, normalizedKey) && accepts(value)) {
                return &value;
            }
        }
    }
    return nullptr;
}

const JSON* ownValue(const JSON& object, std::string_view normalizedKey) {
    return ownValue(object, normalizedKey, acceptsAll);
}

} // namespace Varnel
