#pragma once

#include <VarnelSecurity/KeychainServices.h>

namespace Varnel {

/// Why a secret could not be saved, read or deleted.
struct KeychainError {
    enum class Kind { unexpectedStatus, encodingFailed, decodingFailed };

    Kind kind;
    KeychainStatus status = keychainSuccess; ///< for `unexpectedStatus` alone

    static KeychainError unexpectedStatus(KeychainStatus status) { return {Kind::unexpectedStatus, status}; }
    static KeychainError encodingFailed() { return {Kind::encodingFailed}; }
    static KeychainError decodingFailed() { return {Kind::decodingFailed}; }

    QString localizedDescription() const;

    bool operator==(const KeychainError&) const = default;
};

} // namespace Varnel
