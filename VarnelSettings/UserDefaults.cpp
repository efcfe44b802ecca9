#include <VarnelSettings/UserDefaults.h>

#include <VarnelShared/PrivateFiles.h>

#include <QFileInfo>

namespace Varnel {

UserDefaults::UserDefaults(const QString& path)
    : m_settings(path, QSettings::IniFormat) {}

std::optional<QByteArray> UserDefaults::data(const QString& key) const {
    const QVariant value = m_settings.value(key);
    return value.typeId() == QMetaType::QByteArray ? std::optional(value.toByteArray()) : std::nullopt;
}

void UserDefaults::setData(const QString& key, const QByteArray& bytes) {
    m_settings.setValue(key, bytes);
    // Made here because the settings class would make the folder with the mode of the umask.
    if (createPrivateFolder(QFileInfo(m_settings.fileName()).absolutePath())) {
        m_settings.sync();
    }
}

} // namespace Varnel
