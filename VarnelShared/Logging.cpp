#include <VarnelShared/Logging.h>

#include <VarnelShared/Text.h>

namespace Varnel {

Q_LOGGING_CATEGORY(lcApp, "Varnel.App", QtInfoMsg)
Q_LOGGING_CATEGORY(lcSEMSAPI, "Varnel.SEMSAPI", QtInfoMsg)

QString logText(const Error& error) {
    return firstCharacters(error.localizedDescription(), 1000);
}

} // namespace Varnel
