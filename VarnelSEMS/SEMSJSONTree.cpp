#include <VarnelSEMS/SEMSJSONTree.h>

#include <algorithm>
#include <bitset>
#include <span>

namespace Varnel {

namespace {
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool acceptsAll(const JSON& /*value*/) {
    return true;
}

class FirstValues {
public:
    explicit FirstValues(std::span<const std::string_view> keys)
        : m_keys(keys)
        , m_found(keys.size(), nullptr)
        , m_missing(keys.size()) {
        m_lastLetters.set('_');
        for (const std::string_view key : keys) {
            m_lastLetters.set(lastLetter(key));
        }
    }

    void walk(const JSON& tree) {
        if (const auto* object = tree.get_ptr<const JSON::object_t*>()) {
            for (const auto& [key, value] : *object) {
                note(key, value);
            }
            for (auto member = object->begin(); m_missing > 0 && member != object->end(); ++member) {
                walk(member->second);
            }
        } else if (const auto* array = tree.get_ptr<const JSON::array_t*>()) {
            for (auto element = array->begin(); m_missing > 0 && element != array->end(); ++element) {
                walk(*element);
            }
        }
    }

    std::vector<const JSON*> take() { return std::move(m_found); }

private:
    static std::size_t lastLetter(std::string_view key) {
        return key.empty() ? 0 : static_cast<unsigned char>(lower(key.back()));
    }

    void note(std::string_view key, const JSON& value) {
        if (!m_lastLetters.test(lastLetter(key))) {
            return; // which is nearly every member
        }
        for (std::size_t i = 0; i < m_keys.size(); ++i) {
            if (m_found[i] == nullptr && matchesKey(key, m_keys[i])) {
                m_found[i] = &value;
                --m_missing;
            }
        }
    }

    std::span<const std::string_view> m_keys;
    std::vector<const JSON*> m_found;
    std::size_t m_missing;
    std::bitset<256> m_lastLetters; ///< of the keys; "_" always, since it does not count
};

/// One step down from a value to one that it holds.
struct Step {
    const std::string* name = nullptr; ///< of the member; null for an element
    std::size_t index = 0;             ///< of the element
    bool isInverter = false;           ///< the element is one of a list of inverters
};

/// The steps from the tree down to the target, the last one first; false when it is not there. What stands in an array
/// within an array of inverters is an inverter too.
bool findSteps(const JSON& tree, bool listsInverters, const JSON* target, std::vector<Step>& steps) {
    if (&tree == target) {
        return true;
    }
    if (const auto* object = tree.get_ptr<const JSON::object_t*>()) {
        for (const auto& [key, value] : *object) {
            const bool areInverters = value.is_array() && namesInverters(key);
            if (value.is_structured() && findSteps(value, areInverters, target, steps)) {
                steps.push_back({&key, 0, false});
                return true;
            }
        }
    } else if (const auto* array = tree.get_ptr<const JSON::array_t*>()) {
        for (std::size_t i = 0; i < array->size(); ++i) {
            if (findSteps((*array)[i], listsInverters, target, steps)) {
                steps.push_back({nullptr, i, listsInverters});
                return true;
            }
        }
    }
    return false;
}

/// Follows the steps, into every element where one leads to an inverter, and notes the objects at their ends.
void follow(const JSON& tree, std::span<const Step> steps, std::vector<const JSON*>& ends) {
    if (steps.empty()) {
        ends.push_back(&tree);
        return;
    }
    const Step& step = steps.back();
    const auto rest = steps.first(steps.size() - 1);
    if (step.name && tree.is_object()) {
        if (const auto below = tree.find(*step.name); below != tree.end()) {
            follow(*below, rest, ends);
        }
    } else if (!step.name && step.isInverter && tree.is_array()) {
        std::for_each(tree.begin(), tree.end(), [&](const JSON& element) { follow(element, rest, ends); });
    } else if (!step.name && tree.is_array() && step.index < tree.size()) {
        follow(tree[step.index], rest, ends);
    }
}
} // namespace

/// As `normalizedKey(key) == wanted`, without making the text: it runs once per member and key of every search. From
/// the end, where keys that begin alike differ.
bool matchesKey(std::string_view key, std::string_view wanted) {
    std::size_t left = wanted.size();
    for (auto c = key.rbegin(); c != key.rend(); ++c) {
        if (*c == '_') {
            continue;
        }
        if (left == 0 || lower(*c) != wanted[left - 1]) {
            return false;
        }
        --left;
    }
    return left == 0;
}

bool namesInverters(std::string_view key) {
    return normalizedKey(key).find("inverter") != std::string::npos;
}

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
            if (matchesKey(key, normalizedKey) && accepts(value)) {
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

std::vector<SEMSJSONMember> firstMemberOfEveryInverter(const JSON& tree, std::string_view normalizedKey,
                                                       bool (*accepts)(const JSON& value)) {
    const SEMSJSONMember first = firstMember(tree, normalizedKey, accepts);
    std::vector<Step> steps;
    if (first) {
        findSteps(tree, false, first.context, steps);
    }
    if (std::none_of(steps.begin(), steps.end(), [](const Step& step) { return step.isInverter; })) {
        return first ? std::vector{first} : std::vector<SEMSJSONMember>();
    }
    std::vector<const JSON*> objects;
    follow(tree, steps, objects);
    std::vector<SEMSJSONMember> members;
    for (const JSON* object : objects) {
        if (const JSON* value = ownValue(*object, normalizedKey, accepts)) {
            members.push_back({value, object});
        }
    }
    return members;
}

const JSON* firstValue(const JSON& tree, std::string_view normalizedKey) {
    return firstMember(tree, normalizedKey, acceptsAll).value;
}

std::vector<const JSON*> firstValues(const JSON& tree, std::span<const std::string_view> normalizedKeys) {
    FirstValues search(normalizedKeys);
    search.walk(tree);
    return search.take();
}

const JSON* ownValue(const JSON& object, std::string_view normalizedKey, bool (*accepts)(const JSON& value)) {
    if (const auto* members = object.get_ptr<const JSON::object_t*>()) {
        for (const auto& [key, value] : *members) {
            if (matchesKey(key, normalizedKey) && accepts(value)) {
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
