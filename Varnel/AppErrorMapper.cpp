#include <Varnel/AppErrorMapper.h>

#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelShared/Text.h>
#include <VarnelShared/URLError.h>

#include <QCoreApplication>

#include <optional>

namespace Varnel::AppErrorMapper {

namespace {

constexpr int longestAnswer = 200; ///< it may be the page of a gateway

QString byContext(AppErrorContext context, const QString& signIn, const QString& polling) {
    switch (context) {
    case AppErrorContext::signIn:
        return signIn;
    case AppErrorContext::polling:
        break;
    }
    return polling;
}

/// None for a code that has no line of its own.
std::optional<QString> transportMessage(URLError::Code code) {
    switch (code) {
    case URLError::Code::notConnectedToInternet:
    case URLError::Code::networkConnectionLost:
        return QCoreApplication::translate("AppErrorMapper",
                                           "Offline. Check your internet connection and try Refresh.");
    case URLError::Code::cannotFindHost:
    case URLError::Code::cannotConnectToHost:
    case URLError::Code::dnsLookupFailed:
        return QCoreApplication::translate("AppErrorMapper",
                                           "SEMS endpoint is unreachable. Check Base URL in Profile.");
    case URLError::Code::timedOut:
        return QCoreApplication::translate("AppErrorMapper", "SEMS request timed out. Try Refresh in a moment.");
    case URLError::Code::cancelled:
    case URLError::Code::secureConnectionFailed:
    case URLError::Code::dataTooLarge:
    case URLError::Code::badURL:
    case URLError::Code::unknown:
        break;
    }
    return std::nullopt;
}

QString rejectedMessage(AppErrorContext context) {
    return byContext(
        context,
        QCoreApplication::translate("AppErrorMapper", "Sign-in rejected. Check account credentials and endpoint."),
        QCoreApplication::translate("AppErrorMapper", "Session rejected by SEMS. Open Settings and reconnect."));
}

QString credentialsMessage(AppErrorContext context) {
    return byContext(
        context,
        QCoreApplication::translate("AppErrorMapper", "Sign-in failed. Check email/password in Profile and reconnect."),
        QCoreApplication::translate("AppErrorMapper",
                                    "Session expired or credentials changed. Open Settings and reconnect."));
}

/// The message of each case; the cases without a line of their own show their description.
struct ServiceMessage {
    const SEMSAPIError& error;
    AppErrorContext context;

    QString operator()(const SEMSAPIError::NetworkStatus& status) const {
        const int code = status.statusCode;
        if (code == 401 || code == 403) {
            return rejectedMessage(context);
        }
        if (code == 429) {
            return QCoreApplication::translate("AppErrorMapper",
                                               "SEMS rate limit reached. Please wait a moment and retry.");
        }
        if (code >= 500) {
            return QCoreApplication::translate("AppErrorMapper",
                                               "SEMS service is temporarily unavailable. Try again shortly.");
        }
        if (code >= 400) {
            return QCoreApplication::translate("AppErrorMapper", "SEMS request failed (HTTP %1).").arg(code);
        }
        return error.localizedDescription();
    }
    QString operator()(const SEMSAPIError::AllSignInStrategiesFailed& /*failed*/) const {
        return credentialsMessage(context);
    }
    QString operator()(const SEMSAPIError::AuthenticationFailed& /*failed*/) const {
        return credentialsMessage(context);
    }
    QString operator()(const SEMSAPIError::NoPowerStation& /*none*/) const {
        return QCoreApplication::translate(
            "AppErrorMapper", "No power station found. Verify account access or set Station ID in Profile.");
    }
    QString operator()(const SEMSAPIError::InvalidConfiguration& /*invalid*/) const { return ownDescription(); }
    QString operator()(const SEMSAPIError::API& /*api*/) const { return ownDescription(); }
    QString operator()(const SEMSAPIError::InvalidResponse& /*invalid*/) const { return ownDescription(); }
    QString operator()(const SEMSAPIError::NoInstantPower& /*none*/) const { return ownDescription(); }

    QString ownDescription() const { return error.localizedDescription(); }
};

} // namespace

QString userFacingMessage(const Error& error, AppErrorContext context) {
    if (const auto* transport = error.as<URLError>()) {
        if (const std::optional<QString> message = transportMessage(transport->code)) {
            return *message;
        }
    }
    if (const auto* service = error.as<SEMSAPIError>()) {
        return std::visit(ServiceMessage{*service, context}, service->kind);
    }
    return byContext(context, QCoreApplication::translate("AppErrorMapper", "Sign in failed: %1"),
                     QCoreApplication::translate("AppErrorMapper", "Polling failed: %1"))
        .arg(error.localizedDescription());
}

QString answers(const Error& error) {
    const auto* service = error.as<SEMSAPIError>();
    const auto* failed = service ? std::get_if<SEMSAPIError::AllSignInStrategiesFailed>(&service->kind) : nullptr;
    QStringList lines;
    for (const QString& family : failed ? failed->lines : QStringList()) {
        for (const QString& answer : family.split(QStringLiteral(" | "))) { // the portal was asked at several addresses
            lines += firstCharacters(answer, longestAnswer);
        }
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace Varnel::AppErrorMapper
