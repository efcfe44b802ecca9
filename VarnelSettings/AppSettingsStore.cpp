#include <VarnelSettings/AppSettingsStore.h>

namespace Varnel {

namespace {
const QString settingsKey = QStringLiteral("varnel.settings.v1");
const QString signedOutKey = QStringLiteral("varnel.signedOut");
constexpr char yes[] = "true";
constexpr char no[] = "false";
} // namespace

AppSettingsStore::AppSettingsStore(UserDefaults& defaults)
    : m_defaults(defaults) {}

std::optional<AppSettings> AppSettingsStore::stored() const {
    const std::optional<QByteArray> bytes = m_defaults.data(settingsKey);
    const Result<AppSettings> decoded = decodeAppSettings(bytes.value_or(QByteArray()));
    return decoded ? std::optional(*decoded) : std::nullopt;
}

AppSettings AppSettingsStore::load() const {
    return stored().value_or(AppSettings::defaults());
}

Result<void> AppSettingsStore::save(const AppSettings& settings) {
    if (m_defaults.contains(settingsKey) && !stored()) {
        m_defaults.markDamaged();
    }
    return m_defaults.setData(settingsKey, encodeAppSettings(settings));
}

bool AppSettingsStore::isSignedOut() const {
    return m_defaults.data(signedOutKey) == yes;
}

Result<void> AppSettingsStore::setSignedOut(bool isSignedOut) {
    if (!isSignedOut && !m_defaults.contains(signedOutKey)) {
        return {};
    }
    return m_defaults.setData(signedOutKey, isSignedOut ? yes : no);
}

} // namespace Varnel
