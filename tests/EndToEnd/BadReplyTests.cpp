#include "EndToEndTest.h"

namespace Varnel {
namespace {

class BadReplyEndToEnd : public EndToEndTest {};

TEST_F(BadReplyEndToEnd, EndsInItsErrorWithinTheDeadline) {
    const char* const unreadable = "The answer could not be read. It may have come from the login page of a network";
    const std::pair<FaultKind, const char*> rows[] = {
        {FaultKind::drip, "The request timed out."},
        {FaultKind::silence, "The request timed out."},
        {FaultKind::cut, "The network connection was lost."},
        {FaultKind::close, "The network connection was lost."},
        {FaultKind::tooLarge, "The reply is too large."},
        {FaultKind::envelope, "SEMS API error."},
        {FaultKind::emptyList, "Could not find instantaneous power in SEMS response."},
        {FaultKind::emptyData, "Could not find instantaneous power in SEMS response."},
        {FaultKind::wrongShape, "Could not find instantaneous power in SEMS response."},
        {FaultKind::notJSON, unreadable},
        {FaultKind::html, unreadable},
        {FaultKind::tooDeep, unreadable},
    };
    mayOverlap = true;
    for (const SEMSAuthMode mode : {SEMSAuthMode::openAPI, SEMSAuthMode::legacyPortal}) {
        simulator.behaviour().faults.clear();
        const SEMSSession session = signedIn(mode);
        for (const auto& [kind, description] : rows) {
            SCOPED_TRACE(qPrintable(rawValue(kind)));
            disturb(kind, QStringLiteral("*MonitorDetail*"));
            // Only what never ends meets the deadline; a busy machine needs its time for the others.
            const bool isEndless = kind == FaultKind::drip || kind == FaultKind::silence;
            http.shorterTimeout = isEndless ? std::optional(std::chrono::milliseconds(200)) : std::nullopt;
            EXPECT_THAT(errorOf(reading(session)), testing::HasSubstr(description));
        }
    }
}

} // namespace
} // namespace Varnel
