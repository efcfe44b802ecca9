#pragma once

#include <VarnelShared/Result.h>

#include <QString>
#include <QStringList>

#include <variant>

namespace Varnel {

/// What can go wrong in the SEMS client beside the transport itself: a closed set of cases, some with a payload.
/// Decide over all of them with `std::visit` on `kind`; a new case then fails to compile wherever it must be decided.
struct SEMSAPIError {
    struct InvalidConfiguration {
        QString message;
        bool operator==(const InvalidConfiguration&) const = default;
    };
    struct NetworkStatus {
        int statusCode = 0; ///< the HTTP status, outside 200…299 and neither 401 nor 403
        QString body;       ///< empty when it was not UTF-8 text
        bool operator==(const NetworkStatus&) const = default;
    };
    struct API {
        QString message; ///< the service's own, in whatever language it chose
        bool operator==(const API&) const = default;
    };
    struct AllSignInStrategiesFailed {
        QStringList lines; ///< one per failed attempt, in order
        bool operator==(const AllSignInStrategiesFailed&) const = default;
    };
    struct InvalidResponse {
        bool operator==(const InvalidResponse&) const = default;
    };
    struct AuthenticationFailed {
        bool operator==(const AuthenticationFailed&) const = default;
    };
    struct NoPowerStation {
        bool operator==(const NoPowerStation&) const = default;
    };
    struct NoInstantPower {
        bool operator==(const NoInstantPower&) const = default;
    };
    using Kind = std::variant<InvalidConfiguration, NetworkStatus, API, AllSignInStrategiesFailed, InvalidResponse,
                              AuthenticationFailed, NoPowerStation, NoInstantPower>;

    Kind kind;

    static SEMSAPIError invalidConfiguration(const QString& message) { return {InvalidConfiguration{message}}; }
    static SEMSAPIError networkStatus(int statusCode, const QString& body) { return {NetworkStatus{statusCode, body}}; }
    static SEMSAPIError api(const QString& message) { return {API{message}}; }
    static SEMSAPIError allSignInStrategiesFailed(const QStringList& lines) {
        return {AllSignInStrategiesFailed{lines}};
    }
    static SEMSAPIError invalidResponse() { return {InvalidResponse{}}; }
    static SEMSAPIError authenticationFailed() { return {AuthenticationFailed{}}; }
    static SEMSAPIError noPowerStation() { return {NoPowerStation{}}; }
    static SEMSAPIError noInstantPower() { return {NoInstantPower{}}; }

    template <typename Case>
    bool is() const {
        return std::holds_alternative<Case>(kind);
    }

    QString localizedDescription() const;

    bool operator==(const SEMSAPIError&) const = default;
};

/// Whether an error of any module is this case.
template <typename Case>
bool isCase(const Error& error) {
    const auto* known = error.as<SEMSAPIError>();
    return known != nullptr && known->is<Case>();
}

} // namespace Varnel
