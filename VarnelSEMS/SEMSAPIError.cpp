#include <VarnelSEMS/SEMSAPIError.h>

namespace Varnel {

namespace {
struct Description {
    QString operator()(const SEMSAPIError::InvalidConfiguration& error) const { return error.message; }
    QString operator()(const SEMSAPIError::NetworkStatus& error) const {
        const QString status = QStringLiteral("SEMS API returned HTTP ") + QString::number(error.statusCode);
        return error.body.isEmpty() ? status + QLatin1Char('.') : status + QLatin1String(": ") + error.body;
    }
    QString operator()(const SEMSAPIError::API& error) const { return error.message; }
    QString operator()(const SEMSAPIError::AllSignInStrategiesFailed& error) const {
        return QStringLiteral("Sign in failed. ") + error.lines.join(QLatin1String(" | "));
    }
    QString operator()(const SEMSAPIError::InvalidResponse& /*error*/) const {
        return QStringLiteral("Unexpected response from SEMS API.");
    }
    QString operator()(const SEMSAPIError::AuthenticationFailed& /*error*/) const {
        return QStringLiteral("Authentication failed. Check account/password and endpoint region.");
    }
    QString operator()(const SEMSAPIError::NoPowerStation& /*error*/) const {
        return QStringLiteral("No power station found for this account.");
    }
    QString operator()(const SEMSAPIError::NoInstantPower& /*error*/) const {
        return QStringLiteral("Could not find instantaneous power in SEMS response.");
    }
};
} // namespace

QString SEMSAPIError::localizedDescription() const {
    return std::visit(Description(), kind);
}

} // namespace Varnel
