#include <VarnelShared/Logging.h>

namespace Varnel {

Q_LOGGING_CATEGORY(lcApp, "Varnel.App", QtInfoMsg)
Q_LOGGING_CATEGORY(lcSEMSAPI, "Varnel.SEMSAPI", QtInfoMsg)

} // namespace Varnel
