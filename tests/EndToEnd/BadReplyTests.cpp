#include "EndToEndTest.h"

#include <VarnelShared/URLError.h>

#include <functional>

namespace Varnel {
namespace {

class BadReplyEndToEnd : public EndToEndTest {};

using Verdict = std::function<bool(const Error&)>;

Verdict transport(URLError::Code code) {
    return [code](const Error& error) { return error.as<URLError>() && error.as<URLError>()->code == code; };
}

Verdict service(const SEMSAPIError& expected) {
    return [expected](const Error& error) { return error.as<SEMSAPIError>() && *error.as<SEMSAPIError>() == expected; };
}

bool notJSON(const Error& error) {
    return error.as<JSONError>() != nullptr;
}

struct Row {
    FaultKind kind;
    Verdict isExpected;
};

TEST_F(BadReplyEndToEnd, EndsInATypedErrorWithinTheDeadline) {
    const Row rows[] = {
        {FaultKind::drip, transport(URLError::Code::timedOut)},
        {FaultKind::silence, transport(URLError::Code::timedOut)},
        {FaultKind::cut, transport(URLError::Code::networkConnectionLost)},
        {FaultKind::close, transport(URLError::Code::networkConnectionLost)},
        {FaultKind::tooLarge, transport(URLError::Code::dataTooLarge)},
        {FaultKind::status, service(SEMSAPIError::networkStatus(500, QStringLiteral("oops")))},
        {FaultKind::envelope, service(SEMSAPIError::api(QStringLiteral("oops")))},
        {FaultKind::emptyList, service(SEMSAPIError::noInstantPower())},
        {FaultKind::emptyData, service(SEMSAPIError::noInstantPower())},
        {FaultKind::wrongShape, service(SEMSAPIError::noInstantPower())},
        {FaultKind::notJSON, notJSON},
        {FaultKind::html, notJSON},
        {FaultKind::tooDeep, notJSON},
    };
    mayOverlap = true;
    for (const SEMSAuthMode mode : {SEMSAuthMode::openAPI, SEMSAuthMode::legacyPortal}) {
        simulator.behaviour().faults.clear();
        const SEMSSession session = signedIn(mode);
        for (const Row& row : rows) {
            SCOPED_TRACE(qPrintable(rawValue(row.kind)));
            Fault fault;
            fault.kind = row.kind;
            fault.path = QStringLiteral("*MonitorDetail*");
            fault.text = QStringLiteral("oops");
            simulator.behaviour().faults = {fault};
            // Only what never ends meets the deadline; a busy machine needs its time for the others.
            const bool isEndless = row.kind == FaultKind::drip || row.kind == FaultKind::silence;
            http.shorterTimeout = isEndless ? std::optional(std::chrono::milliseconds(200)) : std::nullopt;
            const auto read = reading(session);
            ASSERT_FALSE(read);
            EXPECT_TRUE(row.isExpected(read.error())) << qPrintable(read.error().localizedDescription());
        }
    }
}

TEST_F(BadReplyEndToEnd, ALateReplyIsStillRead) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    Fault late;
    late.kind = FaultKind::delay;
    late.delay = std::chrono::milliseconds(100);
    simulator.behaviour().faults = {late};
    EXPECT_TRUE(reading(session));
}

} // namespace
} // namespace Varnel
