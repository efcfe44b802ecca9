#include "EndToEndTest.h"

#include <QLoggingCategory>

namespace Varnel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class SignInEndToEnd : public EndToEndTest {};

TEST_F(SignInEndToEnd, TheTokenAPIComesFirstAndItsOlderPathNext) {
    EXPECT_EQ(signIn().value().apiBaseURL, simulator.baseURL());
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken"));
    EXPECT_THAT(http.timeouts, ElementsAre(std::chrono::seconds(12)));

    simulator.log().clear();
    answer(u"*/v1/OpenApi/*"_s, 500);
    answer(u"*GetToken"_s, 200, uR"({"data":{"access_token":"t1"}})"_s);
    EXPECT_EQ(signIn().value(), (SEMSSession{SEMSAuthMode::openAPI, u"t1"_s, {}, {}, simulator.baseURL(), {}}));
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/api/OpenApi/GetToken"));
}

TEST_F(SignInEndToEnd, AnAnswerWithoutATokenLeadsToThePortal) {
    answer(u"*GetToken"_s, 200, uR"({"token":""})"_s);
    // "timestamp" is absent in the reply, so the header's own is the one that was read under "ts".
    answer(u"*CrossLogin"_s, 200,
           uR"({"data":{"token":"t2","uid":"u","ts":17,"region":"eu"},)"
           uR"("api":"http://eu.test/api/v9/","components":{"api":"http://10.0.0.1:82/"}})"_s);
    const QString header = uR"({"uid":"u","timestamp":17,"token":"t2","client":"web","version":"v2.0.4",)"
                           uR"("language":"en","ts":17,"region":"eu"})"_s;
    EXPECT_EQ(signIn().value(),
              (SEMSSession{SEMSAuthMode::legacyPortal, u"t2"_s, u"u"_s, 17, QUrl(u"http://eu.test/api/"_s), header}));
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/v2/Common/CrossLogin"));
}

TEST_F(SignInEndToEnd, WhenAllFailsTheErrorTellsEveryAttempt) {
    client = std::make_shared<SEMSAPIClient>(base(u"own"_s), http, time, endpoints);
    answer(u"/default/api/v2/*"_s, 200, uR"({"data":{},"token":"top"})"_s);
    answer(u"/default/*"_s, 200, u"[]"_s);
    answer(u"*"_s, 500, u"oops"_s);
    const QString origin = simulator.baseURL().toString(QUrl::RemovePath);
    EXPECT_EQ(QString::fromStdString(errorOf(signIn())).remove(origin).toStdString(),
              "Sign in failed. OpenAPI: SEMS API returned HTTP 500: oops | Portal API: Sign in failed. "
              "/own/api/v2/Common/CrossLogin: SEMS API returned HTTP 500: oops | "
              "/own/api/v1/Common/CrossLogin: SEMS API returned HTTP 500: oops | "
              "/default/api/v2/Common/CrossLogin: Authentication failed. Check account/password and endpoint region. | "
              "/default/api/v1/Common/CrossLogin: Unexpected response from SEMS API. | "
              "/alternate/api/v2/Common/CrossLogin: SEMS API returned HTTP 500: oops | "
              "/alternate/api/v1/Common/CrossLogin: SEMS API returned HTTP 500: oops");
}

TEST_F(SignInEndToEnd, LaterCallsGoToTheRegionThatThePortalNames) {
    simulator.behaviour().region = u"eu"_s;
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    EXPECT_TRUE(reading(session));
    EXPECT_THAT(asked(), ElementsAre("POST /eu/api/v2/PowerStation/GetMonitorDetailByPowerstationId"));
    // What the portal returned beside the six fixed members is carried on.
    EXPECT_THAT(sent(simulator.log().requests().front()), testing::HasSubstr(R"("language":"en","userName":"demo"})"));
}

TEST_F(SignInEndToEnd, CallsMayRunBesideEachOtherAndOutliveTheirClient) {
    mayOverlap = true;
    auto one = client->signIn(account, u"wrong"_s);
    auto other = client->signIn(account, u"wrong"_s);
    client.reset();
    EXPECT_FALSE(await(std::move(one)));
    EXPECT_FALSE(await(std::move(other)));
    EXPECT_EQ(asked().size(), 16U);
    EXPECT_EQ(simulator.log().maximumInFlight(), 2) << "which is how the check after the other tests would see it";
}

TEST_F(SignInEndToEnd, NoSecretReachesALogOrAnErrorEvenWhenTheServerEchoesIt) {
    const SEMSSession token = signedIn(SEMSAuthMode::openAPI);
    const SEMSSession portal = signedIn(SEMSAuthMode::legacyPortal);
    const auto echo = [this](const QString& secrets) {
        simulator.behaviour().faults.clear();
        answer(u"*v1*"_s, 500, secrets);
        answer(u"*"_s, 200, QString::fromUtf8(serializedJSON({{"hasError", true}, {"msg", toUtf8(secrets)}})));
    };

    static QString logged;
    QLoggingCategory::setFilterRules(u"Varnel.*.debug=true"_s);
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& message) { logged += message + u'\n'; });
    const QString address = simulator.baseURL().toString().replace(u"//"_s, u"//user:URLPASS@"_s);
    client = std::make_shared<SEMSAPIClient>(QUrl(address), http, time, endpoints);
    echo(uR"(p&ss wörd"1 p&ss wörd\"1 p%26ss+w%C3%B6rd%221 p&amp;ss wörd&quot;1 )"_s + account);
    std::string errors = errorOf(signIn());
    echo(token.token);
    errors += errorOf(reading(token, {}));
    echo(*portal.legacyTokenHeader + portal.token);
    errors += errorOf(reading(portal));
    qInstallMessageHandler(previous);
    QLoggingCategory::setFilterRules(QString());

    EXPECT_EQ(logged.count(u"Endpoint attempt failed for "_s), 8 + 8 + 4);
    logged += QString::fromStdString(errors);
    for (const QString& secret : {u"URLPASS"_s, account, u"ss w"_s, u"ss+w"_s, token.token, portal.token}) {
        EXPECT_FALSE(logged.contains(secret)) << logged.toStdString();
    }
}

} // namespace
} // namespace Varnel
