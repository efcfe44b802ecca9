#include <VarnelSettings/UserDefaults.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/PrivateFiles.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Varnel {

namespace {
constexpr qint64 sizeLimit = 1'048'576;
}

UserDefaults::UserDefaults(const QString& path)
    : m_path(path) {
    restrictToOwner(path);
    if (readRegularFile(path, sizeLimit)) {
        m_settings.emplace(path, QSettings::IniFormat);
        m_settings->allKeys(); // a section is not looked into, and its faults not noticed, before it is asked for
    }
    m_isDamaged = !m_settings || m_settings->status() != QSettings::NoError;
}

std::optional<QByteArray> UserDefaults::data(const QString& key) const {
    if (const auto unsaved = m_unsaved.constFind(key); unsaved != m_unsaved.constEnd()) {
        return *unsaved;
    }
    const QVariant value = m_settings ? m_settings->value(key) : QVariant();
    return value.typeId() == QMetaType::QByteArray ? std::optional(value.toByteArray()) : std::nullopt;
}

bool UserDefaults::contains(const QString& key) const {
    return m_unsaved.contains(key) || (m_settings && m_settings->contains(key));
}

Result<void> UserDefaults::setData(const QString& key, const QByteArray& bytes) {
    m_unsaved.insert(key, bytes);
    const Result<void> written = write();
    const QString failed = written ? QString() : written.error().localizedDescription();
    if (!written && failed != m_loggedFailure) {
        qCWarning(lcApp, "The settings could not be written: %s", qUtf8Printable(failed));
    }
    m_loggedFailure = failed;
    return written;
}

Result<void> UserDefaults::write() {
    // Made here because the settings class would make the folder with the mode of the umask.
    if (const Result<void> made = createPrivateFolder(QFileInfo(m_path).absolutePath()); !made) {
        return made;
    }
    if (m_isDamaged && QFileInfo::exists(m_path)) {
        if (const Result<void> kept = keepAsDamaged(m_path); !kept) {
            return kept;
        }
    }
    if (!m_settings) {
        QFile::remove(m_path);
        m_settings.emplace(m_path, QSettings::IniFormat);
    }
    // An object of its own over the same values: a status that was bad once would stay so.
    QSettings settings(m_path, QSettings::IniFormat);
    for (auto value = m_unsaved.constBegin(); value != m_unsaved.constEnd(); ++value) {
        settings.setValue(value.key(), *value);
    }
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        return failure(
            FileError{QCoreApplication::translate("FileError", "The file %1 cannot be replaced.").arg(m_path)});
    }
    m_unsaved.clear();
    restrictToOwner(m_path);
    if (std::exchange(m_isDamaged, false)) {
        qCWarning(lcApp, "The settings file could not be understood and is kept as %s",
                  qUtf8Printable(damagedPath(m_path)));
    }
    return {};
}

} // namespace Varnel
