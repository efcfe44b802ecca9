#include "EndToEndTest.h"

namespace Varnel {
namespace {

using testing::ElementsAre;

class SignInEndToEnd : public EndToEndTest {
protected:
    Result<SEMSSession> signIn() { return Testing::await(client->signIn(account, password)); }
};

constexpr const char* anonymousHeader =
    R"({"uid":"","timestamp":0,"token":"","client":"web","version":"v2.0.4","language":"en"})";
constexpr const char* portalUserAgent = "PVMaster/2.0.4 (iPhone; iOS 11.4.1; Scale/2.00)";

TEST_F(SignInEndToEnd, TheTokenAPIComesFirstAndIsEnough) {
    const auto session = signIn();
    ASSERT_TRUE(session);
    EXPECT_EQ(session->authMode, SEMSAuthMode::openAPI);
    EXPECT_EQ(session->apiBaseURL, simulator.baseURL());
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken"));
    EXPECT_EQ(request(0).body, R"({"account":"demo@example.com","pwd":"p&ss wörd+1","userName":"demo@example.com",)"
                               R"("username":"demo@example.com","password":"p&ss wörd+1"})");
    EXPECT_EQ(request(0).header("Accept"), "application/json");
    EXPECT_EQ(request(0).header("Content-Type"), "application/json");
    EXPECT_EQ(request(0).header("Token"), "");
    EXPECT_EQ(request(0).header("Authorization"), "");
    EXPECT_THAT(http.timeouts, ElementsAre(std::chrono::seconds(12)));
}

TEST_F(SignInEndToEnd, TheOlderTokenPathIsTriedNext) {
    breakPaths(QStringLiteral("*/v1/OpenApi/*"));
    ASSERT_TRUE(signIn());
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/api/OpenApi/GetToken"));
}

TEST_F(SignInEndToEnd, ThePortalIsAskedInAFormWithTheAnonymousHeader) {
    simulator.behaviour().families = Simulator::ServedFamilies::portal;
    const auto session = signIn();
    ASSERT_TRUE(session);
    EXPECT_EQ(session->authMode, SEMSAuthMode::legacyPortal);
    EXPECT_THAT(asked(), ElementsAre("POST /api/api/v1/OpenApi/GetToken", "POST /api/api/OpenApi/GetToken",
                                     "POST /api/v2/Common/CrossLogin"));
    EXPECT_EQ(request(2).body, "account=demo%40example.com&pwd=p%26ss+w%C3%B6rd%2B1");
    EXPECT_EQ(request(2).header("Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(request(2).header("Token"), anonymousHeader);
    EXPECT_EQ(request(2).header("User-Agent"), portalUserAgent);
}

TEST_F(SignInEndToEnd, WhenAllFailsEveryBaseWasTriedInOrderAndTheErrorTellsEachAttempt) {
    endpoints.regionalFragment = QStringLiteral("127.0.0.1");
    client = std::make_shared<SEMSAPIClient>(base(QStringLiteral("own")), http, time, endpoints);
    breakPaths(QStringLiteral("*"));
    const auto session = signIn();
    ASSERT_FALSE(session);
    EXPECT_THAT(asked(),
                ElementsAre("POST /own/api/api/v1/OpenApi/GetToken", "POST /own/api/api/OpenApi/GetToken",
                            "POST /own/api/v2/Common/CrossLogin", "POST /own/api/v1/Common/CrossLogin",
                            "POST /default/api/v2/Common/CrossLogin", "POST /default/api/v1/Common/CrossLogin",
                            "POST /alternate/api/v2/Common/CrossLogin", "POST /alternate/api/v1/Common/CrossLogin"));
    const QString http500 = QStringLiteral("SEMS API returned HTTP 500.");
    QStringList lines;
    for (const char* folder : {"own", "default", "alternate"}) {
        for (const char* version : {"v2", "v1"}) {
            lines << base(QString::fromLatin1(folder)).toString() + QString::fromLatin1(version) +
                         QStringLiteral("/Common/CrossLogin: ") + http500;
        }
    }
    EXPECT_EQ(session.error().localizedDescription(), QStringLiteral("Sign in failed. OpenAPI: ") + http500 +
                                                          QStringLiteral(" | Portal API: Sign in failed. ") +
                                                          lines.join(QStringLiteral(" | ")));
}

TEST_F(SignInEndToEnd, AWrongPasswordFailsInEveryWayTheServiceSaysSoAndIsNotRepeated) {
    for (const auto& row : allCases<Simulator::Rejection>()) {
        SCOPED_TRACE(row.rawValue);
        simulator.behaviour().rejection = row.value;
        const auto session = Testing::await(client->signIn(account, QStringLiteral("not-the-password")));
        ASSERT_FALSE(session);
        ASSERT_TRUE(semsError(session.error()));
        EXPECT_TRUE(semsError(session.error())->is<SEMSAPIError::AllSignInStrategiesFailed>());
        EXPECT_FALSE(session.error().localizedDescription().contains(QStringLiteral("not-the-password")));
    }
}

TEST_F(SignInEndToEnd, LaterCallsGoToTheRegionThatThePortalNames) {
    simulator.behaviour().region = QStringLiteral("eu");
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    EXPECT_EQ(session.apiBaseURL, base(QStringLiteral("eu")));
    EXPECT_TRUE(reading(session));
    EXPECT_THAT(asked(), ElementsAre("POST /eu/api/v2/PowerStation/GetMonitorDetailByPowerstationId"));
    // What the portal returned beside the six fixed members is carried on.
    EXPECT_THAT(request(0).header("Token").toStdString(), testing::EndsWith(R"("language":"en","userName":"demo"})"));
}

TEST_F(SignInEndToEnd, ARedirectionToAnotherOriginIsNotFollowed) {
    Simulator::SEMSSimulator foreign{time};
    ASSERT_TRUE(foreign.listen(0));
    Fault fault;
    fault.kind = FaultKind::redirect;
    fault.status = 307;
    fault.text = foreign.baseURL().toString();
    simulator.behaviour().faults = {fault};
    EXPECT_FALSE(signIn());
    EXPECT_TRUE(foreign.log().requests().empty());
}

} // namespace
} // namespace Varnel
