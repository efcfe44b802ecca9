#pragma once

#include <VarnelShared/JSON.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel {

/// The walks through a parsed reply that every search stands on. Keys given as "normalised" are lower-cased and
/// without "_"; a tree is nested `jsonNestingLimit` levels at most, so that recursion is safe.

/// A member found in a tree: its value and the object that holds it. Both null when there is none.
struct SEMSJSONMember {
    const JSON* value = nullptr;
    const JSON* context = nullptr;

    explicit operator bool() const { return value != nullptr; }
};

/// Whether a key is the wanted one in normalised form.
bool matchesKey(std::string_view key, std::string_view normalizedKey);

/// The key lower-cased, every "_" removed. Only ASCII letters fold: no key that is looked for has others.
std::string normalizedKey(std::string_view key);

/// The text with its ASCII letters lower-cased.
std::string lowercased(std::string_view text);

/// Depth first: an object's own members come before anything below them, then each member's value in document order;
/// arrays by element. The first member that has the key and whose value is accepted wins; one that is not accepted
/// is passed over.
SEMSJSONMember firstMember(const JSON& tree, std::string_view normalizedKey, bool (*accepts)(const JSON& value));

/// Whether an array of this name lists inverters.
bool namesInverters(std::string_view key);

/// What `firstMember` finds. Where that stands inside an element of an array of inverters: what stands at the same
/// place in each of its elements, in document order. Empty when there is none.
std::vector<SEMSJSONMember> firstMemberOfEveryInverter(const JSON& tree, std::string_view normalizedKey,
                                                       bool (*accepts)(const JSON& value));

/// The first member with the key whatever its value, in the same order.
const JSON* firstValue(const JSON& tree, std::string_view normalizedKey);

/// What `firstValue` finds for each of the keys, by one walk: null where it finds none.
std::vector<const JSON*> firstValues(const JSON& tree, std::span<const std::string_view> normalizedKeys);

/// The object's own first member with the key whose value is accepted, nothing below it; null when there is none or
/// `object` is no object.
const JSON* ownValue(const JSON& object, std::string_view normalizedKey, bool (*accepts)(const JSON& value));

/// As above, whatever the value.
const JSON* ownValue(const JSON& object, std::string_view normalizedKey);

} // namespace Varnel
