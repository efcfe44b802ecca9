#pragma once

#include <VarnelSettings/UserDefaults.h>

#include <VarnelShared/AppSettings.h>

#include <optional>

namespace Varnel {

/// Loads and saves the settings record as one value of the user defaults, "varnel.settings.v1": the bytes of
/// `encodeAppSettings`. An incompatible layout to come takes a new key. The only writer of that value, and of the one
/// beside it, "varnel.signedOut", which tells whether the user has signed out.
class AppSettingsStore final {
public:
    /// `defaults` must outlive the store.
    explicit AppSettingsStore(UserDefaults& defaults);

    /// The stored record. The defaults when there is none or it cannot be decoded; such a value stays untouched
    /// until the next save.
    AppSettings load() const;

    /// Fails with `FileError` when the record could not be written: it lasts until the program ends then, and the next
    /// change tries again. The failure is in the log already. A file whose record could not be decoded is kept as
    /// "….damaged".
    Result<void> save(const AppSettings& settings);

    /// Whether the user signed out last and has not connected since, in an earlier run too. Anything but the value
    /// written here counts as no.
    bool isSignedOut() const;

    /// Fails as `save` does.
    Result<void> setSignedOut(bool isSignedOut);

private:
    std::optional<AppSettings> stored() const;

    UserDefaults& m_defaults;
};

} // namespace Varnel
