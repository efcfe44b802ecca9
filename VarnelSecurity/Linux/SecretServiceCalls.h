#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <stop_token>

namespace Varnel::SecretServiceCalls {

// The blocking calls behind `SecretServiceKeychain`, each over a connection of its own: opening one costs a few
// milliseconds and survives a restart of the service. They belong on a thread other than the main one and end early
// when `stop` is requested, as far as the service lets them. None but `ask` ever puts a question to the user.

KeychainStatus store(const std::stop_token& stop, const KeychainQuery& query, const QByteArray& data);
KeychainMatch read(const std::stop_token& stop, const KeychainQuery& query);
KeychainStatus remove(const std::stop_token& stop, const KeychainQuery& query);

/// Whether the access would do without the user; `keychainInteractionNotAllowed` when not.
KeychainStatus check(const std::stop_token& stop, const KeychainQuery& query, KeychainAccess access);

/// Has the user unlock, or make, what the access needs, for as long as that takes; false when it still is not there.
/// Never ended early: withdrawing a prompt brings the keyring daemon down, with everybody's secrets locked again.
bool ask(const KeychainQuery& query, KeychainAccess access);

} // namespace Varnel::SecretServiceCalls
