#include <VarnelSEMS/SEMSReply.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(JudgedReply, TheStatusComesBeforeTheBody) {
    const std::string refused = "Authentication failed. Check account/password and endpoint region.";
    const struct {
        std::optional<int> status;
        QByteArray body;
        std::string error;
    } rows[] = {
        {200, "7", ""},
        {200, R"({"hasError":true})", "SEMS API error."},
        {401, R"({"code":0})", refused},
        {403, "", refused},
        {500, "oops", "SEMS API returned HTTP 500: oops"},
        {302, "\xff\xfe", "SEMS API returned HTTP 302."},
        {std::nullopt, "{}", "Unexpected response from SEMS API."},
    };
    for (const auto& row : rows) {
        const auto reply = judgedReply({row.status, {}, row.body});
        EXPECT_EQ(reply ? "" : reply.error().localizedDescription().toStdString(), row.error);
    }
}

} // namespace
} // namespace Varnel
