#pragma once

#include <simulator/ServiceRequest.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/RawValueEnum.h>

#include <algorithm>
#include <chrono>
#include <type_traits>

/// Records read from JSON objects and written to them, by a table of their members.
namespace Varnel::Simulator {

/// What an unusable value fails with.
inline Failure wrong(const QString& expectation) {
    return failure(SimulatorError{expectation});
}

/// One member of a JSON object and the field of `Owner` it stands for.
template <typename Owner>
struct Member {
    const char* name;
    Result<void> (*assign)(Owner&, const JSON&);
    JSON (*json)(const Owner&); ///< null where the member is an order rather than a state
};

/// Specialised for each record with an array `list` of its members.
template <typename Record>
struct Members;

/// How a type is written in JSON; here that of a record. What an object leaves out stays as it is.
template <typename T>
struct Value {
    static Result<void> assign(T& record, const JSON& object) {
        if (!object.is_object()) {
            return wrong(QStringLiteral("a JSON object is expected"));
        }
        for (const auto& [key, value] : object.items()) {
            const Result<void> applied = assignMember(record, key, value);
            if (!applied) {
                const QString why = applied.error().localizedDescription();
                return wrong(QStringLiteral("%1: %2").arg(QString::fromStdString(key), why));
            }
        }
        return {};
    }

    static JSON json(const T& record) {
        JSON object = JSON::object();
        for (const Member<T>& member : Members<T>::list) {
            if (member.json) {
                object[member.name] = member.json(record);
            }
        }
        return object;
    }

private:
    static Result<void> assignMember(T& record, const std::string& key, const JSON& value) {
        const auto& list = Members<T>::list;
        const auto member =
            std::find_if(std::begin(list), std::end(list), [&key](const auto& each) { return key == each.name; });
        return member == std::end(list) ? wrong(QStringLiteral("there is no such setting"))
                                        : member->assign(record, value);
    }
};

template <>
struct Value<QString> {
    static Result<void> assign(QString& field, const JSON& value) {
        if (!value.is_string()) {
            return wrong(QStringLiteral("a text is expected"));
        }
        field = textOf(value);
        return {};
    }
    static JSON json(const QString& field) { return toUtf8(field); }
};

template <>
struct Value<bool> {
    static Result<void> assign(bool& field, const JSON& value) {
        if (!value.is_boolean()) {
            return wrong(QStringLiteral("true or false is expected"));
        }
        field = value.get<bool>();
        return {};
    }
    static JSON json(bool field) { return field; }
};

template <>
struct Value<double> {
    static Result<void> assign(double& field, const JSON& value) {
        if (!value.is_number()) {
            return wrong(QStringLiteral("a number is expected"));
        }
        field = value.get<double>();
        return {};
    }
    static JSON json(double field) { return field; }
};

template <int smallest, int largest>
Result<void> assignBounded(int& field, const JSON& value) {
    if (!value.is_number_integer() || value.get<double>() < smallest || value.get<double>() > largest) {
        return wrong(QStringLiteral("an integer from %1 to %2 is expected").arg(smallest).arg(largest));
    }
    field = value.get<int>();
    return {};
}

/// Counts and sizes: none is negative or larger than a million.
template <>
struct Value<int> {
    static Result<void> assign(int& field, const JSON& value) { return assignBounded<0, 1000000>(field, value); }
    static JSON json(int field) { return field; }
};

/// A time of day, none as null.
template <>
struct Value<QTime> {
    static Result<void> assign(QTime& field, const JSON& value) {
        field = QTime::fromString(textOf(value), QStringLiteral("H:mm"));
        if (!field.isValid() && !value.is_null()) {
            return wrong(QStringLiteral("a time such as 12:30 is expected"));
        }
        return {};
    }
    static JSON json(QTime field) {
        return field.isValid() ? JSON(toUtf8(field.toString(QStringLiteral("H:mm")))) : JSON(nullptr);
    }
};

template <typename Count, typename Period>
struct Value<std::chrono::duration<Count, Period>> {
    static Result<void> assign(std::chrono::duration<Count, Period>& field, const JSON& value) {
        using Number = std::conditional_t<std::is_floating_point_v<Count>, double, int>;
        Number number = 0;
        const Result<void> assigned = Value<Number>::assign(number, value);
        field = std::chrono::duration<Count, Period>(number);
        return assigned;
    }
    static JSON json(std::chrono::duration<Count, Period> field) { return field.count(); }
};

template <typename E>
    requires std::is_enum_v<E>
struct Value<E> {
    static Result<void> assign(E& field, const JSON& value) {
        const std::optional<E> found = fromRawValue<E>(textOf(value));
        if (!found) {
            QStringList names;
            for (const auto& entry : allCases<E>()) {
                names << QString::fromUtf8(entry.rawValue);
            }
            return wrong(QStringLiteral("one of %1 is expected").arg(names.join(QStringLiteral(", "))));
        }
        field = *found;
        return {};
    }
    static JSON json(E field) { return toUtf8(rawValue(field)); }
};

template <typename T>
struct Value<std::optional<T>> {
    static Result<void> assign(std::optional<T>& field, const JSON& value) {
        if (value.is_null()) {
            field.reset();
            return {};
        }
        return Value<T>::assign(field.emplace(), value);
    }
    static JSON json(const std::optional<T>& field) { return field ? Value<T>::json(*field) : JSON(nullptr); }
};

template <typename List>
    requires requires(List list) { list.push_back(list.front()); }
struct Value<List> {
    static Result<void> assign(List& field, const JSON& value) {
        if (!value.is_array()) {
            return wrong(QStringLiteral("a list is expected"));
        }
        field.clear();
        for (const JSON& element : value) {
            typename List::value_type item{};
            if (const Result<void> assigned = Value<typename List::value_type>::assign(item, element); !assigned) {
                return assigned;
            }
            field.push_back(std::move(item));
        }
        return {};
    }
    static JSON json(const List& field) {
        JSON array = JSON::array();
        for (const auto& item : field) {
            array.push_back(Value<typename List::value_type>::json(item));
        }
        return array;
    }
};

/// The member `name` of a field, which is reached from `Owner` by a path of pointers to members.
template <typename Owner, auto... path>
constexpr Member<Owner> member(const char* name) {
    return {name,
            [](Owner& owner, const JSON& value) {
                return Value<std::remove_cvref_t<decltype((owner.*....*path))>>::assign((owner.*....*path), value);
            },
            [](const Owner& owner) {
                return Value<std::remove_cvref_t<decltype((owner.*....*path))>>::json((owner.*....*path));
            }};
}

} // namespace Varnel::Simulator
