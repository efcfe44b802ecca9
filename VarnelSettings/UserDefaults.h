#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

#include <optional>

namespace Varnel {

/// The user's key-value store of this application: one binary value by key, kept across runs in one INI file, each in
/// Qt's `@ByteArray(…)` form.
class UserDefaults final {
public:
    /// Reads the file at `path`, if it is there. Makes nothing.
    explicit UserDefaults(const QString& path);

    /// The bytes under the key; none when there are none. A value written there as plain text counts as none.
    std::optional<QByteArray> data(const QString& key) const;

    /// Replaces the value and writes the file at once, replacing it in one step; its folder is made with mode 0700
    /// where it is missing. A failure to keep it is not reported: the value then lasts as long as this object.
    void setData(const QString& key, const QByteArray& bytes);

private:
    QSettings m_settings;
};

} // namespace Varnel
