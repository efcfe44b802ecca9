#include "EndToEndTest.h"

namespace Varnel {
namespace {

class StationsEndToEnd : public EndToEndTest {};

TEST_F(StationsEndToEnd, TheSizeIsThatOfThePreferredStation) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    const std::pair<std::optional<QString>, double> rows[] = {
        {QStringLiteral(" 6f1c2a34-58be-4d0e-9a57-2b8c41d7e002 "), 3.0},
        {QStringLiteral("unknown"), 8.2},
        {std::nullopt, 8.2}};
    for (const auto& [preferred, size] : rows) {
        EXPECT_EQ(await(client->fetchSystemSizeKW(session, preferred)).value(), size);
    }
}

TEST_F(StationsEndToEnd, AnEmptyListEndsTheSearchAtOnceAndHasNoSize) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    disturb(FaultKind::emptyList);
    EXPECT_EQ(errorOf(await(client->discoverDefaultPowerStation(session))), "No power station found for this account.");
    EXPECT_EQ(asked().size(), 1U);
    EXPECT_EQ(await(client->fetchSystemSizeKW(session, stationID)).value(), std::nullopt);
}

} // namespace
} // namespace Varnel
