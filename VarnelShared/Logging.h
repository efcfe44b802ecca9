#pragma once

#include <VarnelShared/Result.h>

#include <QLoggingCategory>

namespace Varnel {

/// "Varnel.App": the application controller. State changes at info, failures that the user sees at error.
Q_DECLARE_LOGGING_CATEGORY(lcApp)

/// "Varnel.SEMSAPI": the SEMS client. Attempts at debug. Passwords, tokens and header values are never logged.
Q_DECLARE_LOGGING_CATEGORY(lcSEMSAPI)

/// The error's description for a log line, cut to a thousand characters: it may hold a whole reply, once per poll.
QString logText(const Error& error);

} // namespace Varnel
