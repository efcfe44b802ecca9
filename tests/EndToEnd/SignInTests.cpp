#include "../Support/Files.h"
#include "EndToEndTest.h"

#include <QLoggingCategory>

namespace Varnel {
namespace {

using testing::ElementsAre;

class SignInEndToEnd : public EndToEndTest {};

TEST_F(SignInEndToEnd, TheTokenAPIComesFirstAndItsOlderPathNext) {
    EXPECT_EQ(signIn().value().apiBaseURL, simulator.baseURL());
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken"));
    EXPECT_THAT(http.timeouts, ElementsAre(std::chrono::seconds(12)));

    simulator.log().clear();
    answer(QStringLiteral("*/v1/OpenApi/*"), 500);
    answer(QStringLiteral("*GetToken"), 200, QStringLiteral(R"({"data":{"access_token":"t1"}})"));
    EXPECT_EQ(signIn().value(),
              (SEMSSession{SEMSAuthMode::openAPI, QStringLiteral("t1"), {}, {}, simulator.baseURL(), {}}));
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/api/OpenApi/GetToken"));
}

TEST_F(SignInEndToEnd, AnAnswerWithoutATokenLeadsToThePortal) {
    answer(QStringLiteral("*GetToken"), 200, QStringLiteral(R"({"token":""})"));
    // What the reply's data holds beside the header's own six members is added to them and replaces none.
    answer(
        QStringLiteral("*CrossLogin"), 200,
        QStringLiteral(R"({"data":{"access_token":"t\"2","token":null,"uid":"u","ts":17,"language":"de","zone":[1]},)"
                       R"("api":"http://eu.test/api/v9/","components":{"api":"http://10.0.0.1:82/"}})"));
    const QString header =
        QStringLiteral(R"({"uid":"u","timestamp":17,"token":"t\"2","client":"web",)"
                       R"("version":"v2.0.4","language":"en","access_token":"t\"2","ts":17,"zone":[1]})");
    EXPECT_EQ(signIn().value(), (SEMSSession{SEMSAuthMode::legacyPortal, QStringLiteral("t\"2"), QStringLiteral("u"),
                                             17, QUrl(QStringLiteral("http://eu.test/api/")), header}));
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/v2/Common/CrossLogin"));
}

TEST_F(SignInEndToEnd, ATokenThatNoHeaderMayHoldIsNone) {
    answer(QStringLiteral("*GetToken"), 200, QStringLiteral(R"({"data":{"token":"t\n1"}})"));
    answer(QStringLiteral("*v2*CrossLogin"), 200, QStringLiteral(R"({"data":{"token":"t\u007f\n2","x":"\u0000"}})"));
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    EXPECT_NE(session.token, QString()) << "the portal's stands in a JSON text, which can hold any";
    simulator.behaviour().faults.clear();
    EXPECT_EQ(errorOf(reading(session)), "Authentication failed. Check account/password and endpoint region.")
        << "sent, and refused";
}

TEST_F(SignInEndToEnd, AnAddressOfAnotherKindIsInvalidAndNobodyIsAsked) {
    for (const char* address : {"javascript:alert(1)", "file:///etc/api/", "mailto:me@example.org", "localhost:8080",
                                "data:,x", "https:", "//example.org/api/", ""}) {
        client = std::make_shared<SEMSAPIClient>(QUrl(QString::fromLatin1(address)), http, time, endpoints);
        EXPECT_EQ(errorOf(signIn()), "Invalid SEMS base URL.") << address;
    }
    EXPECT_EQ(asked().size(), 0U);
}

TEST_F(SignInEndToEnd, WhenAllFailsTheErrorTellsEveryAttempt) {
    client = std::make_shared<SEMSAPIClient>(base(QStringLiteral("own")), http, time, endpoints);
    answer(QStringLiteral("/default/api/v2/*"), 200, QStringLiteral(R"({"data":{},"token":"top"})"));
    answer(QStringLiteral("/default/*"), 200, QStringLiteral("[]"));
    answer(QStringLiteral("*"), 500, QStringLiteral("oops"));
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

TEST_F(SignInEndToEnd, TheErrorTellsWhetherThePortalJudgedThePassword) {
    const struct {
        const char* name;
        std::function<void()> portal;
        bool wasJudged;
    } rows[] = {
        {"broken", [this] { answer(QStringLiteral("*"), 503); }, false},
        {"busy", [this] { answer(QStringLiteral("*"), 429); }, false},
        {"a login page", [this] { disturb(FaultKind::html); }, false},
        {"gone", [this] { disturb(FaultKind::close); }, false},
        {"wrong password", [] {}, true},
        {"refused by one",
         [this] {
             answer(QStringLiteral("/default/*v1*"), 401);
             answer(QStringLiteral("*"), 503);
         },
         true},
        {"accepted without a token", [this] { answer(QStringLiteral("*"), 200, QStringLiteral("{}")); }, true},
    };
    simulator.behaviour().password = QStringLiteral("another one");
    mayOverlap = true;
    for (const auto& row : rows) {
        simulator.behaviour().faults.clear();
        row.portal();
        EXPECT_EQ(isTransient(signIn().error()), !row.wasJudged) << row.name;
    }
}

TEST_F(SignInEndToEnd, LaterCallsGoToTheRegionThatThePortalNames) {
    simulator.behaviour().region = QStringLiteral("eu");
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    EXPECT_TRUE(reading(session));
    EXPECT_THAT(asked(), ElementsAre("POST /eu/api/v2/PowerStation/GetMonitorDetailByPowerstationId"));
    // What the portal returned beside the six fixed members is carried on.
    EXPECT_THAT(sent(simulator.log().requests().front()), testing::HasSubstr(R"("language":"en","userName":"demo"})"));
}

TEST_F(SignInEndToEnd, CallsMayRunBesideEachOtherAndOutliveTheirClient) {
    mayOverlap = true;
    disturb(FaultKind::delay);
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(500);
    simulator.behaviour().faults.front().count = 2;
    auto one = client->signIn(account, QStringLiteral("wrong"));
    auto other = client->signIn(account, QStringLiteral("wrong"));
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
        answer(QStringLiteral("*v1*"), 500, secrets);
        answer(QStringLiteral("*"), 200,
               QString::fromUtf8(serializedJSON({{"hasError", true}, {"msg", toUtf8(secrets)}})));
    };

    QLoggingCategory::setFilterRules(QStringLiteral("Varnel.*.debug=true"));
    const Testing::RecordedLog log;
    const QString address =
        simulator.baseURL().toString().replace(QStringLiteral("//"), QStringLiteral("//user:URLPASS@"));
    client = std::make_shared<SEMSAPIClient>(QUrl(address), http, time, endpoints);
    echo(QStringLiteral(R"(p&ss wörd"1 p&ss wörd\"1 p%26ss+w%C3%B6rd%221 p&amp;ss wörd&quot;1 )") + account);
    std::string errors = errorOf(signIn());
    echo(token.token);
    errors += errorOf(reading(token, {}));
    echo(QStringLiteral("p&ss wörd\"1 ") + account); // of the sign-in before: some tell whom they refuse
    errors += errorOf(reading(token, {}));
    echo(*portal.legacyTokenHeader + portal.token);
    errors += errorOf(reading(portal));
    QLoggingCategory::setFilterRules(QString());

    EXPECT_EQ(log.lines.filter(QStringLiteral("Endpoint attempt failed for ")).size(), 8 + 8 + 8 + 4);
    const QString logged = log.lines.join(QLatin1Char('\n')) + QString::fromStdString(errors);
    for (const QString& secret : {QStringLiteral("URLPASS"), account, QStringLiteral("ss w"), QStringLiteral("ss+w"),
                                  token.token, portal.token}) {
        EXPECT_FALSE(logged.contains(secret)) << logged.toStdString();
    }
}

} // namespace
} // namespace Varnel
