#include <VarnelSettings/AppSettingsStore.h>

namespace Varnel {

namespace {
QString settingsKey() {
    return QStringLiteral("varnel.settings.v1");
}
} // namespace

AppSettingsStore::AppSettingsStore(UserDefaults& defaults)
    : m_defaults(defaults) {}

AppSettings AppSettingsStore::load() const {
    const std::optional<QByteArray> stored = m_defaults.data(settingsKey());
    return stored ? decodeAppSettings(*stored).value_or(AppSettings::defaults()) : AppSettings::defaults();
}

void AppSettingsStore::save(const AppSettings& settings) {
    m_defaults.setData(settingsKey(), encodeAppSettings(settings));
}

} // namespace Varnel
