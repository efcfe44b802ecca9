#include <VarnelSecurity/Linux/FileKeychain.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/PrivateFiles.h>

#include <QFile>

#include <cstdio>

namespace Varnel {

namespace {
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

FileKeychain::FileKeychain(const QString& path)
    : m_path(path) {}

KeychainStatus FileKeychain::add(const KeychainQuery& query, const QByteArray& data) {
    Items items;
    const KeychainStatus status = load(items);
    if (status == keychainDecodeError && !moveAside()) {
        return keychainInputOutputError;
    }
    if (status != keychainSuccess && status != keychainDecodeError) {
        return status;
    }
    items[{query.service, query.account}] = data;
    return write(items);
}

KeychainMatch FileKeychain::copyMatching(const KeychainQuery& query) {
    Items items;
    if (const KeychainStatus status = load(items); status != keychainSuccess) {
        return {status, {}};
    }
    const auto found = items.find({query.service, query.account});
    return found == items.end() ? KeychainMatch() : KeychainMatch{keychainSuccess, found->second};
}

KeychainStatus FileKeychain::deleteMatching(const KeychainQuery& query) {
    Items items;
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

KeychainStatus FileKeychain::load(Items& items) const {
    QFile file(m_path);
    if (!file.exists()) {
        return keychainSuccess;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return keychainInputOutputError;
    }
    const Result<JSON> parsed = parseJSON(file.readAll());
    if (!parsed || !parsed->is_object() || !parsed->contains("items") || !parsed->at("items").is_array()) {
        return keychainDecodeError;
    }
    for (const JSON& item : parsed->at("items")) {
        const auto service = textMember(item, "service");
        const auto account = textMember(item, "account");
        const auto data = textMember(item, "data");
        const auto bytes =
            QByteArray::fromBase64Encoding(data.value_or(QString()).toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
        if (!service || !account || !data || !bytes) {
            items.clear();
            return keychainDecodeError;
        }
        items[{*service, *account}] = *bytes;
    }
    return keychainSuccess;
}

KeychainStatus FileKeychain::write(const Items& items) const {
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
    return writeFileAtomically(m_path, serializedJSON(root)) ? keychainSuccess : keychainInputOutputError;
}

bool FileKeychain::moveAside() const {
    const QString aside = m_path + QStringLiteral(".corrupt");
    return std::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(aside).constData()) == 0;
}

} // namespace Varnel
