#include <VarnelShared/JSON.h>

#include <QHash>
#include <QStringDecoder>

#include <bit>
#include <cmath>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Varnel {

namespace {
using Member = std::pair<std::string, JSON>;

/// As the library inserts, by a comparison with each member before: the cheapest way for a few.
void takeFew(JSON::object_t& object, std::span<Member> from) {
    for (auto& [key, value] : from) {
        object[key] = std::move(value);
    }
}

/// The same in linear time. The table holds the places in the object, from 1, by the hash of the key; it is at most
/// half full, and the hash is seeded, so that no text can be made whose keys collide.
void takeMany(JSON::object_t& object, std::span<Member> from) {
    std::vector<std::uint32_t> table(std::bit_ceil(2 * from.size()));
    const std::size_t mask = table.size() - 1;
    const std::size_t seed = QHashSeed::globalSeed();
    for (auto& [key, value] : from) {
        std::size_t slot = qHash(QByteArrayView(key), seed) & mask;
        while (table[slot] != 0 && object.data()[table[slot] - 1].first != key) {
            slot = (slot + 1) & mask;
        }
        if (table[slot] == 0) {
            object.emplace_back(std::move(key), std::move(value));
            table[slot] = static_cast<std::uint32_t>(object.size());
        } else {
            object.data()[table[slot] - 1].second = std::move(value);
        }
    }
}

JSON objectOf(std::span<Member> members) {
    constexpr std::size_t few = 32;
    JSON tree = JSON::object();
    auto& object = tree.get_ref<JSON::object_t&>();
    object.reserve(members.size());
    members.size() <= few ? takeFew(object, members) : takeMany(object, members);
    return tree;
}

/// The parser's words, without its name for the error before them and the piece of text that it quotes behind them:
/// replies may hold tokens.
QString descriptionOf(const JSON::exception& error) {
    constexpr int numberOverflow = 406; // whose message quotes the number
    if (error.id == numberOverflow) {
        return QStringLiteral("The JSON text holds a number out of range.");
    }
    const QString text = QString::fromUtf8(error.what());
    const QString words = text.section(QLatin1String("] "), 1).section(QLatin1String("; last read:"), 0, 0);
    return words.left(1).toUpper() + words.mid(1) + QLatin1Char('.');
}

/// Builds the tree from the parser's events, which stand here under the parser's names; false ends the parsing. The
/// library's own builder looks each new member up among those before it: one object of 8 MiB would take it minutes.
class TreeBuilder {
public:
    bool null() { return add(nullptr); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(JSON::number_integer_t value) { return add(value); }
    bool number_unsigned(JSON::number_unsigned_t value) { return add(value); }
    bool number_float(JSON::number_float_t value, const std::string& /*text*/) { return add(value); }
    bool string(const std::string& value) { return add(value); }
    bool binary(const JSON::binary_t& /*value*/) { return false; } // no JSON text has any

    bool start_object(std::size_t /*size*/) { return open(JSON::value_t::object); }
    bool key(const std::string& name) {
        m_members.emplace_back(name, nullptr);
        return true;
    }
    bool end_object() {
        const std::size_t first = m_open.back().firstMember;
        m_open.pop_back();
        JSON object = objectOf(std::span(m_members).subspan(first));
        m_members.resize(first);
        return add(std::move(object));
    }

    bool start_array(std::size_t /*size*/) { return open(JSON::value_t::array); }
    bool end_array() {
        JSON array(std::move(m_open.back().elements));
        m_open.pop_back();
        return add(std::move(array));
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*lastRead*/, const JSON::exception& exception) {
        error = descriptionOf(exception);
        return false;
    }

    JSON tree;
    QString error = QStringLiteral("The JSON text is nested too deep.");

private:
    struct Container {
        JSON::value_t type;
        std::size_t firstMember;
        JSON::array_t elements = {};
    };

    bool open(JSON::value_t type) {
        m_open.push_back({type, m_members.size()});
        return m_open.size() <= jsonNestingLimit;
    }

    bool add(JSON value) {
        if (m_open.empty()) {
            tree = std::move(value);
        } else if (m_open.back().type == JSON::value_t::object) {
            m_members.back().second = std::move(value);
        } else {
            m_open.back().elements.push_back(std::move(value));
        }
        return true;
    }

    std::vector<Container> m_open; ///< outermost first
    std::vector<Member> m_members; ///< of every open object, in the order of the text
};
} // namespace

Result<JSON> parseJSON(QByteArrayView text) {
    TreeBuilder builder;
    if (!JSON::sax_parse(text.begin(), text.end(), &builder)) {
        return failure(JSONError{builder.error});
    }
    return std::move(builder.tree);
}

QByteArray serializedJSON(const JSON& value) {
    return QByteArray::fromStdString(value.dump(-1, ' ', false, JSON::error_handler_t::replace));
}

std::optional<std::int64_t> integerOf(const JSON& value) {
    if (value.is_number_float()) {
        constexpr double limit = 9223372036854775808.0; // 2^63
        const double number = value.get<double>();
        const bool isWhole = number == std::trunc(number) && number >= -limit && number < limit;
        return isWhole ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
    }
    const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= INT64_MAX : value.is_number_integer();
    return fits ? std::optional(value.get<std::int64_t>()) : std::nullopt;
}

QString textOf(const JSON& value) {
    const auto* text = value.get_ptr<const JSON::string_t*>();
    if (!text) {
        return {};
    }
    // The QString functions would drop a leading U+FEFF, which inside a document is a character like any other.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(text->data(), static_cast<qsizetype>(text->size())));
}

} // namespace Varnel
