#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Varnel {

/// The user's key-value store of this application: one binary value by key, kept across runs. A port.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// The bytes under the key; none when there are none or the value is of another kind.
    virtual std::optional<QByteArray> data(const QString& key) const = 0;

    /// Replaces the value. A failure to keep it is not reported: the value then lasts as long as this object.
    virtual void setData(const QString& key, const QByteArray& bytes) = 0;
};

} // namespace Varnel
