#include <VarnelSEMS/FormEncoding.h>

#include <QByteArrayList>

namespace Varnel {

namespace {
bool standsForItself(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

QString describedValue(const JSON& value) {
    return value.is_string() ? textOf(value) : QString::fromUtf8(serializedJSON(value));
}
} // namespace

QByteArray formURLEncoded(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    QByteArray encoded;
    encoded.reserve(3 * bytes.size());
    for (const char byte : bytes) {
        if (standsForItself(byte)) {
            encoded += byte;
        } else if (byte == ' ') {
            encoded += '+';
        } else {
            encoded += '%' + QByteArray(1, byte).toHex().toUpper();
        }
    }
    return encoded;
}

QByteArray formURLEncodedData(const JSON& fields) {
    QByteArrayList pairs;
    for (const auto& [key, value] : fields.items()) {
        pairs += formURLEncoded(QString::fromStdString(key)) + '=' + formURLEncoded(describedValue(value));
    }
    return pairs.join('&');
}

} // namespace Varnel
