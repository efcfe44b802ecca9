#include <VarnelSEMS/SEMSAPIError.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/URLError.h>

#include <QCoreApplication>

namespace Varnel {

namespace {
struct Description {
    QString operator()(const SEMSAPIError::InvalidConfiguration& error) const { return error.message; }
    QString operator()(const SEMSAPIError::NetworkStatus& error) const {
        const QString status = QString::number(error.statusCode);
        return error.body.isEmpty()
                   ? QCoreApplication::translate("SEMSAPIError", "SEMS API returned HTTP %1.").arg(status)
                   : QCoreApplication::translate("SEMSAPIError", "SEMS API returned HTTP %1: %2")
                         .arg(status, error.body);
    }
    QString operator()(const SEMSAPIError::API& error) const { return error.message; }
    QString operator()(const SEMSAPIError::AllSignInStrategiesFailed& error) const {
        return QCoreApplication::translate("SEMSAPIError", "Sign in failed. %1")
            .arg(error.lines.join(QLatin1String(" | ")));
    }
    QString operator()(const SEMSAPIError::InvalidResponse& /*error*/) const {
        return QCoreApplication::translate("SEMSAPIError", "Unexpected response from SEMS API.");
    }
    QString operator()(const SEMSAPIError::AuthenticationFailed& /*error*/) const {
        return QCoreApplication::translate("SEMSAPIError",
                                           "Authentication failed. Check account/password and endpoint region.");
    }
    QString operator()(const SEMSAPIError::NoPowerStation& /*error*/) const {
        return QCoreApplication::translate("SEMSAPIError", "No power station found for this account.");
    }
    QString operator()(const SEMSAPIError::NoInstantPower& /*error*/) const {
        return QCoreApplication::translate("SEMSAPIError", "Could not find instantaneous power in SEMS response.");
    }
};
} // namespace

QString SEMSAPIError::localizedDescription() const {
    return std::visit(Description(), kind);
}

bool isTransient(const Error& error) {
    if (const auto* known = error.as<SEMSAPIError>()) {
        if (const auto* status = std::get_if<SEMSAPIError::NetworkStatus>(&known->kind)) {
            const int code = status->statusCode;
            return (code >= 300 && code < 400) || code == 429 || code >= 500;
        }
        const auto* signIn = std::get_if<SEMSAPIError::AllSignInStrategiesFailed>(&known->kind);
        return signIn != nullptr && !signIn->wasJudged;
    }
    return error.as<URLError>() != nullptr || error.as<JSONError>() != nullptr;
}

std::optional<std::chrono::seconds> retryAfterOf(const Error& error) {
    if (const auto* known = error.as<SEMSAPIError>()) {
        if (const auto* status = std::get_if<SEMSAPIError::NetworkStatus>(&known->kind)) {
            return status->retryAfter;
        }
        if (const auto* signIn = std::get_if<SEMSAPIError::AllSignInStrategiesFailed>(&known->kind)) {
            return signIn->retryAfter;
        }
    }
    return std::nullopt;
}

} // namespace Varnel
