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
    const QString answers[] = {QString(), QStringLiteral(R"({"code":100001})"), QStringLiteral(R"({"code":"100002"})")};
    const struct {
        SEMSAuthMode mode;
        QString servedDetail;
        QString servedList;
    } rows[] = {
        {SEMSAuthMode::openAPI, QStringLiteral("*/api/OpenApi/*Detail/*"), QStringLiteral("*/v1/*ByUser")},
        {SEMSAuthMode::legacyPortal, QStringLiteral("*/v1/*Detail*"), QStringLiteral("*/v2/*ForApp")},
    };
    for (const auto& row : rows) {
        for (const QString& body : answers) {
            SCOPED_TRACE(body.toStdString());
            simulator.behaviour().faults.clear();
            const SEMSSession session = signedIn(row.mode);
            answer(row.servedDetail, body.isEmpty() ? 401 : 200, body);
            answer(row.servedList, body.isEmpty() ? 401 : 200, body);
            answer(QStringLiteral("*"), 404);
            EXPECT_THAT(errorOf(reading(session)), testing::StartsWith("Authentication failed."));
            EXPECT_THAT(errorOf(await(client->fetchPowerStations(session))), testing::StartsWith("Authentication f"));
            EXPECT_EQ(asked().size(), 4U + 8U);
        }
    }
}

} // namespace
} // namespace Varnel
