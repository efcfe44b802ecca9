#pragma once

#include <QLoggingCategory>

namespace Varnel {

/// "Varnel.App": the application controller. State changes at info, failures that the user sees at error.
Q_DECLARE_LOGGING_CATEGORY(lcApp)

/// "Varnel.SEMSAPI": the SEMS client. Attempts at debug. Passwords, tokens and header values are never logged.
Q_DECLARE_LOGGING_CATEGORY(lcSEMSAPI)

} // namespace Varnel
