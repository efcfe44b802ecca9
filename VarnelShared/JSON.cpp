#include <VarnelShared/JSON.h>

#include <QStringDecoder>

namespace Varnel {

namespace {
/// Scans for nesting before anything is built: the parser itself does not recurse, but copies and walks do.
bool exceedsNestingLimit(QByteArrayView text) {
    int depth = 0;
    bool insideString = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (insideString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                insideString = false;
            }
        } else if (c == '"') {
            insideString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > jsonNestingLimit) {
                return true;
            }
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return false;
}

/// The parser quotes the piece of text that it read last; replies may hold tokens, so that piece is dropped.
QString withoutQuotedText(const char* message) {
    const QString text = QString::fromUtf8(message);
    const qsizetype quote = text.indexOf(QLatin1String("; last read:"));
    return quote < 0 ? text : text.left(quote);
}
} // namespace

Result<JSON> parseJSON(QByteArrayView text) {
    if (exceedsNestingLimit(text)) {
        return failure(
            JSONError{QStringLiteral("The JSON text is nested more than %1 levels deep.").arg(jsonNestingLimit)});
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
