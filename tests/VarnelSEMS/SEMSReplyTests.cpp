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
        const auto reply = judgedReply({row.status, {}, row.body}, {}, {});
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
            const auto error = judgedReply({200, {}, row.body}, request, {}).error();
            EXPECT_EQ(isCase<SEMSAPIError::AuthenticationFailed>(error), session && row.tellsExpiry) << row.body;
            EXPECT_EQ(isCase<SEMSAPIError::API>(error), !session || !row.tellsExpiry) << row.body;
        }
    }
}

TEST(JudgedReply, CarriesHowLongTheServiceAsksToBeLeftAlone) {
    const auto now = Timestamp::fromDateTime(QDateTime(QDate(2025, 3, 30), QTime(1, 0), Qt::UTC));
    const std::optional<std::chrono::seconds> none;
    const struct {
        int status;
        const char* header;
        const char* date;
        std::optional<std::chrono::seconds> wait;
    } rows[] = {
        {429, "120", nullptr, std::chrono::seconds(120)},
        {503, " 0 ", nullptr, std::chrono::seconds(0)},
        {503, "Sun, 30 Mar 2025 01:30:05 GMT", nullptr, std::chrono::seconds(1805)},
        {503, "Sun, 30 Mar 2025 01:30:05 GMT", "Sun, 30 Mar 2025 01:29:05 GMT", std::chrono::seconds(60)},
        {503, "Sun, 30 Mar 2025 01:30:05 GMT", "yesterday", std::chrono::seconds(1805)},
        {429, "9223372036854775807", nullptr, std::chrono::hours(24)},
        {429, "Fri, 31 Dec 9999 23:59:59 GMT", nullptr, std::chrono::hours(24)},
        {429, "Sun, 30 Mar 2025 00:59:59 GMT", nullptr, none},
        {429, "-5", nullptr, none},
        {429, "1.5", nullptr, none},
        {429, "92233720368547758070", nullptr, none},
        {429, "soon", nullptr, none},
        {429, "", nullptr, none},
        {500, "120", nullptr, none},
        {302, "120", nullptr, none},
    };
    for (const auto& row : rows) {
        HTTPResponse response{row.status, {{"X", "7"}, {"retry-after", row.header}}, "busy"};
        if (row.date) {
            response.headers.emplace_back("Date", row.date);
        }
        const auto expected = SEMSAPIError::networkStatus(row.status, QStringLiteral("busy"), row.wait);
        EXPECT_EQ(*judgedReply(response, {}, now).error().as<SEMSAPIError>(), expected) << row.header;
    }
    EXPECT_EQ(retryAfterOf(judgedReply({429, {}, {}}, {}, now).error()), none);
}

} // namespace
} // namespace Varnel
