#include <VarnelSEMS/SEMSReply.h>

#include <VarnelSEMS/SEMSAPIError.h>

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
        const auto reply = judgedReply({row.status, {}, row.body}, {});
        EXPECT_EQ(reply ? "" : reply.error().localizedDescription().toStdString(), row.error);
    }
}

TEST(JudgedReply, AnEnvelopeTellsThatTheSessionHasExpired) {
    const struct {
        const char* body;
        bool tellsExpiry;
    } rows[] = {
        {R"({"hasError":false,"code":100001,"msg":"No access"})", true},
        {R"({"hasError":true,"code":"100002","msg":"Die Anmeldung ist abgelaufen"})", true},
        {R"({"hasError":false,"code":100005,"msg":"authorization has expired, please log in again"})", false},
        {R"({"hasError":true,"msg":"100002"})", false},
    };
    SEMSRequest request;
    for (const auto& session : {std::optional<SEMSSession>(), std::optional(SEMSSession())}) {
        request.authSession = session;
        for (const auto& row : rows) {
            const auto error = judgedReply({200, {}, row.body}, request).error();
            EXPECT_EQ(isCase<SEMSAPIError::AuthenticationFailed>(error), session && row.tellsExpiry) << row.body;
            EXPECT_EQ(isCase<SEMSAPIError::API>(error), !session || !row.tellsExpiry) << row.body;
        }
    }
}

} // namespace
} // namespace Varnel
