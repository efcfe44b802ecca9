#pragma once

#include <VarnelShared/Result.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
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

        /// How long the service asked not to be asked again, with this status (429 or 503) or with one before it in the
        /// same call; a day at most.
        std::optional<std::chrono::seconds> retryAfter = std::nullopt;

        bool operator==(const NetworkStatus&) const = default;
    };
    struct API {
        QString message; ///< the service's own, in whatever language it chose
        bool operator==(const API&) const = default;
    };
    struct AllSignInStrategiesFailed {
        QStringList lines; ///< one per failed attempt, in order

        /// False when every attempt of the portal failed in a way that `isTransient`: then nothing says that the
        /// password is wrong.
        bool wasJudged = true;
        std::optional<std::chrono::seconds> retryAfter = std::nullopt; ///< the longest of the attempts
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
    static SEMSAPIError networkStatus(int statusCode, const QString& body,
                                      std::optional<std::chrono::seconds> retryAfter = std::nullopt) {
        return {NetworkStatus{statusCode, body, retryAfter}};
    }
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

/// Whether the call may well succeed later as it is: there was no connection, the service was overloaded or broken (429
/// or 500 and above), or somebody else answered in its place, as the login page of a hotel does (a redirection away
/// from the origin, a body that is not JSON). For a sign-in: whether nothing judged the password.
bool isTransient(const Error& error);

/// How long the service asked not to be asked again; none when it did not.
std::optional<std::chrono::seconds> retryAfterOf(const Error& error);

/// Whether an error of any module is this case.
template <typename Case>
bool isCase(const Error& error) {
    const auto* known = error.as<SEMSAPIError>();
    return known != nullptr && known->is<Case>();
}

} // namespace Varnel
