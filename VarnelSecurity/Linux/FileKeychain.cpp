#include <VarnelSecurity/Linux/FileKeychain.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/PrivateFiles.h>

#include <utility>

namespace Varnel {

namespace {
constexpr qint64 sizeLimit = 1'048'576;

/// The text of a member; none when there is no such member or it is no text.
std::optional<QString> textMember(const JSON& object, const char* key) {
    if (!object.is_object()) {
        return std::nullopt;
    }
    const auto member = object.find(key);
    const bool isText = member != object.end() && member->is_string();
    return isText ? std::optional(textOf(*member)) : std::nullopt;
}
} // namespace

std::optional<KeychainItems> decodeKeychainItems(const QByteArray& content) {
    const Result<JSON> parsed = parseJSON(content);
    if (!parsed || !parsed->is_object() || !parsed->contains("items") || !parsed->at("items").is_array()) {
        return std::nullopt;
    }
    KeychainItems items;
    for (const JSON& item : parsed->at("items")) {
        const auto service = textMember(item, "service");
        const auto account = textMember(item, "account");
        const auto data = textMember(item, "data");
        const auto bytes =
            QByteArray::fromBase64Encoding(data.value_or(QString()).toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
        if (!service || !account || !data || !bytes) {
            return std::nullopt;
        }
        items[{*service, *account}] = *bytes;
    }
    return items;
}

QByteArray encodeKeychainItems(const KeychainItems& items) {
    JSON list = JSON::array();
    for (const auto& [key, data] : items) {
        JSON item = JSON::object();
        item["account"] = toUtf8(key.second);
        item["data"] = data.toBase64().toStdString();
        item["service"] = toUtf8(key.first);
        list.push_back(std::move(item));
    }
    JSON root = JSON::object();
    root["items"] = std::move(list);
    return serializedJSON(root);
}

FileKeychain::FileKeychain(const QString& path)
    : m_path(path) {}

KeychainStatus FileKeychain::add(const KeychainQuery& query, const QByteArray& data) {
    const std::lock_guard lock(m_mutex);
    KeychainItems items;
    const bool isDamaged = load(items) != keychainSuccess;
    if (isDamaged && !keepAsDamaged(m_path)) {
        return keychainInputOutputError;
    }
    items[{query.service, query.account}] = data;
    const KeychainStatus written = write(items);
    if (isDamaged && written == keychainSuccess) {
        qCWarning(lcApp, "The password file could not be understood and is kept as %s",
                  qUtf8Printable(damagedPath(m_path)));
    }
    return written;
}

KeychainMatch FileKeychain::copyMatching(const KeychainQuery& query) {
    const std::lock_guard lock(m_mutex);
    KeychainItems items;
    if (const KeychainStatus status = load(items); status != keychainSuccess) {
        return {status, {}};
    }
    const auto found = items.find({query.service, query.account});
    return found == items.end() ? KeychainMatch() : KeychainMatch{keychainSuccess, found->second};
}

KeychainStatus FileKeychain::deleteMatching(const KeychainQuery& query) {
    const std::lock_guard lock(m_mutex);
    KeychainItems items;
    if (const KeychainStatus status = load(items); status != keychainSuccess) {
        return status;
    }
    if (items.erase({query.service, query.account}) == 0) {
        return keychainItemNotFound;
    }
    return write(items);
}

QCoro::Task<bool> FileKeychain::unlock(KeychainQuery /*query*/, KeychainAccess /*access*/) {
    co_return true;
}

QCoro::Task<void> FileKeychain::runPatiently(std::function<void()> function) {
    function();
    co_return;
}

KeychainStatus FileKeychain::load(KeychainItems& items) const {
    restrictToOwner(m_path);
    const Result<std::optional<QByteArray>> content = readRegularFile(m_path, sizeLimit);
    if (!content) {
        return keychainInputOutputError;
    }
    if (!*content) {
        return keychainSuccess;
    }
    std::optional<KeychainItems> decoded = decodeKeychainItems(**content);
    if (!decoded) {
        items.clear();
        return keychainDecodeError;
    }
    items = std::move(*decoded);
    return keychainSuccess;
}

KeychainStatus FileKeychain::write(const KeychainItems& items) const {
    return writeFileAtomically(m_path, encodeKeychainItems(items)) ? keychainSuccess : keychainInputOutputError;
}

} // namespace Varnel
