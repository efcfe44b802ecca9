#include "EndToEndTest.h"

#include <algorithm>

namespace Varnel {

QCoro::Task<Result<HTTPResponse>> WatchedHTTPSession::send(HTTPRequest request) {
    hosts.push_back(request.url.host());
    timeouts.push_back(request.timeout);
    onSend();
    request.timeout = std::min(request.timeout, shorterTimeout.value_or(request.timeout));
    return m_session.send(std::move(request));
}

void EndToEndTest::SetUp() {
    ASSERT_TRUE(simulator.listen(0));
    simulator.behaviour().password = password;
    endpoints.defaultBase = base(QStringLiteral("default"));
    endpoints.regionalFragment = QStringLiteral("127.0.0.1");
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
    const auto session = signIn();
    EXPECT_EQ(session.value().authMode, mode);
    simulator.log().clear();
    return *session;
}

void EndToEndTest::disturb(FaultKind kind, const QString& paths) {
    simulator.behaviour().faults.assign(1, {});
    simulator.behaviour().faults.front().kind = kind;
    simulator.behaviour().faults.front().path = paths;
}

void EndToEndTest::answer(const QString& paths, int status, const QString& body, const QString& contentType) {
    Simulator::Fault& fault = simulator.behaviour().faults.emplace_back();
    fault.path = paths;
    fault.contentType = contentType;
    fault.status = status;
    fault.text = body;
}

EndToEndTest::Lines EndToEndTest::asked() {
    Lines lines;
    for (const Simulator::ServiceRequest& each : simulator.log().requests()) {
        lines.push_back((each.method + ' ' + each.target).toStdString());
    }
    return lines;
}

std::string EndToEndTest::sent(const Simulator::ServiceRequest& request) {
    std::string text;
    for (const char* name : {"Accept", "Content-Type", "Token", "Authorization", "User-Agent"}) {
        const QByteArray value = request.header(name);
        const bool isOurs =
            !value.isEmpty() && !value.startsWith("Mozilla/"); // which the session sends of its own accord
        text += isOurs ? (QByteArray("    ") + name + ": " + value + '\n').toStdString() : "";
    }
    return text + (request.body.isEmpty() ? "" : "    " + request.body.toStdString() + '\n');
}

} // namespace Varnel
