#include <VarnelShared/JSON.h>

#include <vector>

#include <QStringDecoder>

namespace Varnel {

namespace {
/// Scans the text before anything is built from it. The parser itself does not recurse, but copies and walks do; and
/// it looks each new member up among those of its object one by one, so that a huge object would take minutes.
class StructureScan {
public:
    bool exceedsLimits(QByteArrayView text) {
        for (const char c : text) {
            if (m_isEscaped) {
                m_isEscaped = false;
            } else if (m_isInsideString) {
                m_isEscaped = c == '\\';
                m_isInsideString = c != '"';
            } else if (!take(c)) {
                return true;
            }
        }
        return false;
    }

private:
    /// False when a limit is exceeded by this character outside any string.
    bool take(char c) {
        switch (c) {
        case '"':
            m_isInsideString = true;
            return true;
        case '{':
        case '[':
            m_members.push_back(0);
            return m_members.size() <= jsonNestingLimit;
        case '}':
        case ']':
            if (!m_members.empty()) {
                m_members.pop_back();
            }
            return true;
        case ':':
            return m_members.empty() || ++m_members.back() <= jsonMemberLimit;
        default:
            return true;
        }
    }

    std::vector<std::size_t> m_members; ///< of each array or object that is open, outermost first
    bool m_isInsideString = false;
    bool m_isEscaped = false;
};

/// The parser quotes the piece of text that it read last; replies may hold tokens, so that piece is dropped.
QString withoutQuotedText(const char* message) {
    const QString text = QString::fromUtf8(message);
    const qsizetype quote = text.indexOf(QLatin1String("; last read:"));
    return quote < 0 ? text : text.left(quote);
}
} // namespace

Result<JSON> parseJSON(QByteArrayView text) {
    if (StructureScan().exceedsLimits(text)) {
        return failure(JSONError{QStringLiteral("The JSON text is nested too deep or has too many members.")});
    }
    try {
        return JSON::parse(text.begin(), text.end());
    } catch (const nlohmann::json::parse_error& error) {
        return failure(JSONError{withoutQuotedText(error.what())});
    } catch (const nlohmann::json::exception&) {
        // A number beyond a double's range; that exception's message quotes the number.
        return failure(JSONError{QStringLiteral("The JSON text holds a number out of range.")});
    }
}

QByteArray serializedJSON(const JSON& value) {
    return QByteArray::fromStdString(value.dump(-1, ' ', false, JSON::error_handler_t::replace));
}

std::optional<std::int64_t> integerOf(const JSON& value) {
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
