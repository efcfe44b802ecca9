#include "EndToEndTest.h"

#include "../Support/Files.h"

namespace Varnel {
namespace {

class AttemptsEndToEnd : public EndToEndTest {
protected:
    /// The log as the files of the attempts folder hold it: a line for each request, below it what else it says when
    /// that is not what the request before said. What differs from session to session is named.
    QByteArray attempts(const SEMSSession& session) {
        std::string text;
        std::string before;
        for (const Simulator::ServiceRequest& request : simulator.log().requests()) {
            const std::string more = sent(request);
            text += (request.method + ' ' + request.target + '\n').toStdString() + (more == before ? "" : more);
            before = more;
        }
        return QByteArray::fromStdString(text)
            .replace(session.legacyTokenHeader.value_or(QStringLiteral("none")).toUtf8(), "<session>")
            .replace(session.token.toUtf8(), "<token>");
    }
};

TEST_F(AttemptsEndToEnd, WhatFailsEverywhereWasTriedInThisOrderAndTheLastErrorCounts) {
    const auto own = std::make_shared<SEMSAPIClient>(base(QStringLiteral("own")), http, time, endpoints);
    using Call = std::function<std::string(const SEMSSession&)>;
    const Call signIn = [&](auto&) { return errorOf(await(own->signIn(account, password))); };
    const Call stations = [&](auto& session) { return errorOf(await(client->fetchPowerStations(session))); };
    const Call detail = [&](auto& session) { return errorOf(reading(session, QStringLiteral(" s&1/é "))); };
    const Call day = [&](auto& session) {
        return errorOf(await(client->fetchTodayOutputSeries(session, QStringLiteral("s&1"))));
    };
    const struct {
        const char* name;
        SEMSAuthMode mode;
        Call call;
    } rows[] = {
        {"sign-in", SEMSAuthMode::openAPI, signIn},
        {"stations-token", SEMSAuthMode::openAPI, stations},
        {"stations-portal", SEMSAuthMode::legacyPortal, stations},
        {"detail-token", SEMSAuthMode::openAPI, detail},
        {"detail-portal", SEMSAuthMode::legacyPortal, detail},
        {"day-token", SEMSAuthMode::openAPI, day},
        {"day-portal", SEMSAuthMode::legacyPortal, day},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        simulator.behaviour().faults.clear();
        const SEMSSession session = signedIn(row.mode);
        answer(QStringLiteral("*"), 404, {}, QStringLiteral("json"));
        answer(QStringLiteral("*"), 401);
        EXPECT_THAT(row.call(session), testing::HasSubstr("Authentication failed."));
        const QString file = QStringLiteral(VARNEL_ATTEMPTS_FOLDER "/%1.txt").arg(QLatin1String(row.name));
        EXPECT_EQ(attempts(session).toStdString(), Testing::contentOf(file).toStdString());
    }
}

TEST_F(AttemptsEndToEnd, AnExpiredSessionCountsWhateverTheLastPathSays) {
    const struct {
        SEMSAuthMode mode;
        QStringList servedPaths; ///< beside those of the sign-in
    } rows[] = {
        {SEMSAuthMode::openAPI, {QStringLiteral("*/api/OpenApi/*Detail/*"), QStringLiteral("*/v1/*ByUser")}},
        {SEMSAuthMode::legacyPortal, {QStringLiteral("*/v1/*Detail*"), QStringLiteral("*/v2/*ForApp")}},
    };
    for (const auto& row : rows) {
        simulator.behaviour().servedPaths =
            row.servedPaths + QStringList{QStringLiteral("*GetToken"), QStringLiteral("*CrossLogin")};
        for (const auto& expiry : allCases<Simulator::Expiry>()) {
            SCOPED_TRACE(testing::Message() << expiry.rawValue << ' ' << qPrintable(row.servedPaths.front()));
            simulator.behaviour().expiry = expiry.value;
            const SEMSSession session = signedIn(row.mode);
            EXPECT_TRUE(reading(session));
            EXPECT_TRUE(await(client->fetchPowerStations(session)));
            simulator.expireSessions();
            EXPECT_TRUE(isCase<SEMSAPIError::AuthenticationFailed>(reading(session).error()));
            const auto stations = await(client->fetchPowerStations(session));
            EXPECT_TRUE(isCase<SEMSAPIError::AuthenticationFailed>(stations.error()));
        }
    }
}

TEST_F(AttemptsEndToEnd, WhatTheServiceAsksToWaitReachesTheCaller) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    answer(QStringLiteral("*OpenApi/Get*"), 429);
    simulator.behaviour().faults.back().retryAfter = QStringLiteral("120");
    answer(QStringLiteral("*"), 503);
    simulator.behaviour().faults.back().retryAfter = QStringLiteral("300");
    EXPECT_EQ(retryAfterOf(reading(session).error()), std::chrono::seconds(120));
    EXPECT_EQ(retryAfterOf(await(client->fetchPowerStations(session)).error()), std::chrono::seconds(120));
    EXPECT_EQ(retryAfterOf(signIn().error()), std::chrono::seconds(300));
    simulator.behaviour().faults.pop_back();
    EXPECT_EQ(retryAfterOf(await(client->signIn(account, QStringLiteral("wrong"))).error()), std::chrono::seconds(120));
}

} // namespace
} // namespace Varnel
