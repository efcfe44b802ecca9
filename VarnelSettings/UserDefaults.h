#pragma once

#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QMap>
#include <QSettings>
#include <QString>

#include <optional>

namespace Varnel {

/// The user's key-value store of this application: one binary value by key, kept across runs in one INI file, each in
/// Qt's `@ByteArray(…)` form.
///
/// A file that is no such file, is no regular file or is larger than 1 MiB is read as far as it can be understood and
/// kept as "….damaged" when it is first written over. A write that fails is logged once per cause.
class UserDefaults final {
public:
    /// Reads the file at `path`, if it is there, and takes others' rights from it and its folder. Makes nothing.
    explicit UserDefaults(const QString& path);

    /// The bytes under the key; none when there are none. A value written there as plain text counts as none.
    std::optional<QByteArray> data(const QString& key) const;

    /// Whether there is a value of any kind under the key.
    bool contains(const QString& key) const;

    /// Replaces the value and writes the file at once, replacing it in one step; its folder is made with mode 0700
    /// where it is missing. Fails with `FileError`: the value then lasts as long as this object, and the next call
    /// tries to write it again with its own.
    Result<void> setData(const QString& key, const QByteArray& bytes);

    /// The file holds something that its reader could not understand, and is to be kept when it is next written over.
    void markDamaged() { m_isDamaged = true; }

private:
    Result<void> write();

    const QString m_path;
    std::optional<QSettings> m_settings; ///< none while something stands there that is not to be read
    QMap<QString, QByteArray> m_unsaved;
    bool m_isDamaged = false;
    QString m_loggedFailure;
};

} // namespace Varnel
