#pragma once

#include <VarnelSettings/UserDefaults.h>

#include <VarnelShared/AppSettings.h>

namespace Varnel {

/// Loads and saves the settings record as one value of the user defaults, "varnel.settings.v1": the bytes of
/// `encodeAppSettings`. An incompatible layout to come takes a new key. The only writer of that value.
class AppSettingsStore final {
public:
    /// `defaults` must outlive the store.
    explicit AppSettingsStore(UserDefaults& defaults);

    /// The stored record. The defaults when there is none or it cannot be decoded; such a value stays untouched
    /// until the next save.
    AppSettings load() const;

    void save(const AppSettings& settings);

private:
    UserDefaults& m_defaults;
};

} // namespace Varnel
