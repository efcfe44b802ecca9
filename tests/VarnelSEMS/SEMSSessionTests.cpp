#include <VarnelSEMS/SEMSSession.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(LegacyTokenHeader, ExtraValuesNeverReplaceTheSixOwnOnes) {
    const JSON extra = JSON::parse(R"({"token":"other","language":"de","zone":[1],"uid":"u2"})");
    EXPECT_EQ(
        legacyTokenHeaderString(QStringLiteral("u1"), 1700000000000, QStringLiteral("t\"1"), extra),
        QStringLiteral(R"({"uid":"u1","timestamp":1700000000000,"token":"t\"1","client":"web","version":"v2.0.4",)"
                       R"("language":"en","zone":[1]})"));
}

} // namespace
} // namespace Varnel
