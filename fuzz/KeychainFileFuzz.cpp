#include "Fuzz.h"

#include <VarnelSecurity/Linux/FileKeychain.h>

using namespace Varnel;

/// Reads any bytes as a password file. What comes out is written in a form that reads again as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto items = decodeKeychainItems(Fuzz::bytesOf(data, size))) {
        const auto again = decodeKeychainItems(encodeKeychainItems(*items));
        Fuzz::require(again && *again == *items);
    }
    return 0;
}
