#pragma once

#include <VarnelSettings/UserDefaults.h>

#include <QSettings>

namespace Varnel {

/// The user defaults as one INI file, each value in Qt's `@ByteArray(…)` form. A value written there as plain text
/// counts as absent.
class IniUserDefaults final : public UserDefaults {
public:
    /// Reads the file at `path`, if it is there. Makes nothing.
    explicit IniUserDefaults(const QString& path);

    std::optional<QByteArray> data(const QString& key) const override;

    /// Writes the file at once, replacing it in one step; its folder is made with mode 0700 where it is missing.
    void setData(const QString& key, const QByteArray& bytes) override;

private:
    QSettings m_settings;
};

} // namespace Varnel
