#include "EndToEndTest.h"

#include <algorithm>

namespace Varnel {

QCoro::Task<Result<HTTPResponse>> WatchedHTTPSession::send(HTTPRequest request) {
    hosts.push_back(request.url.host());
    timeouts.push_back(request.timeout);
    request.timeout = std::min(request.timeout, shorterTimeout.value_or(request.timeout));
    return m_session.send(std::move(request));
}

void EndToEndTest::SetUp() {
    ASSERT_TRUE(simulator.listen(0));
    simulator.behaviour().password = password;
    endpoints.defaultBase = base(QStringLiteral("default"));
    endpoints.alternateBase = base(QStringLiteral("alternate"));
    client = std::make_shared<SEMSAPIClient>(simulator.baseURL(), http, time, endpoints);
}

void EndToEndTest::TearDown() {
    EXPECT_THAT(http.hosts, testing::Each(QStringLiteral("127.0.0.1")));
    EXPECT_THAT(http.timeouts, testing::Each(testing::Le(std::chrono::seconds(12))));
    EXPECT_TRUE(mayOverlap || simulator.log().maximumInFlight() <= 1);
}

QUrl EndToEndTest::base(const QString& folder) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/%2/api/").arg(simulator.baseURL().port()).arg(folder));
}

SEMSSession EndToEndTest::signedIn(SEMSAuthMode mode) {
    simulator.behaviour().families =
        mode == SEMSAuthMode::openAPI ? Simulator::ServedFamilies::token : Simulator::ServedFamilies::portal;
    const auto session = Testing::await(client->signIn(account, password));
    EXPECT_TRUE(session) << qPrintable(session.error().localizedDescription());
    EXPECT_EQ(session->authMode, mode);
    simulator.log().clear();
    return *session;
}

void EndToEndTest::breakPaths(const QString& pattern, const QString& contentType) {
    Fault fault;
    fault.path = pattern;
    fault.contentType = contentType;
    simulator.behaviour().faults.push_back(fault);
}

Result<PowerReading> EndToEndTest::reading(const SEMSSession& session) {
    return Testing::await(client->fetchCurrentPower(session, QString::fromLatin1(stationID)));
}

std::vector<std::string> EndToEndTest::asked() {
    std::vector<std::string> lines;
    for (const Simulator::ServiceRequest& each : simulator.log().requests()) {
        lines.push_back((each.method + ' ' + each.target).toStdString());
    }
    return lines;
}

} // namespace Varnel
