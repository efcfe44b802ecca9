#include <VarnelSEMS/FormEncoding.h>
#include <VarnelSEMS/LegacyBase.h>
#include <VarnelSEMS/LegacyTokenHeader.h>
#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSReply.h>
#include <VarnelSEMS/SEMSRequest.h>
#include <VarnelSEMS/WebURL.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using namespace Qt::StringLiterals;

TEST(JoinedURL, JoinsByTextAndRefusesWhatIsNoAddress) {
    struct Row {
        const char* base;
        const char* path;
        const char* joined; // empty: invalidConfiguration
    };
    for (const Row& row : {
             Row{"https://h/api/", "v2/Common/CrossLogin", "https://h/api/v2/Common/CrossLogin"},
             Row{"https://h/api/", "/api/v1/OpenApi/GetToken", "https://h/api/api/v1/OpenApi/GetToken"},
             Row{"https://h", "api/x", "https://h/api/x"},
             Row{"https://h/api", "//x", "https://h/api//x"},
             Row{"https://h/api/", "https://other/x", "https://other/x"},
             Row{"https://h/api/", "x?id=a%2Fb%26", "https://h/api/x?id=a%2Fb%26"},
             Row{"https://h/api/", "x/a%zz", ""},
             Row{"h/api/", "x", ""},
             Row{"ftp://h/", "x", ""},
         }) {
        const auto url = joinedURL(QString::fromUtf8(row.path), QUrl(QString::fromUtf8(row.base)));
        SCOPED_TRACE(row.path);
        if (qstrlen(row.joined) > 0) {
            EXPECT_EQ(absoluteString(url.value()).toStdString(), row.joined);
        } else {
            const auto expected = u"Invalid SEMS URL path %1."_s.arg(QString::fromUtf8(row.path));
            ASSERT_FALSE(url);
            EXPECT_EQ(*url.error().as<SEMSAPIError>(), SEMSAPIError::invalidConfiguration(expected));
        }
    }
}

TEST(FormEncoding, EncodesEveryByteAndKeepsTheOrder) {
    EXPECT_EQ(formURLEncoded(u"a b&c/é"_s), "a+b%26c%2F%C3%A9");
    EXPECT_EQ(formURLEncoded(u"AZaz09-._~\n+=%"_s), "AZaz09-._~%0A%2B%3D%25");
    EXPECT_EQ(formURLEncodedData(JSON::parse(R"({"z":"ü 1","a":20,"e":""})")), "z=%C3%BC+1&a=20&e=");
}

TEST(LegacyTokenHeader, ExtraValuesNeverReplaceTheSixOwnOnes) {
    const JSON extra = JSON::parse(R"({"token":"other","language":"de","zone":[1],"uid":"u2"})");
    EXPECT_EQ(legacyTokenHeaderString(u"u1"_s, 1700000000000, u"t\"1"_s, extra),
              uR"({"uid":"u1","timestamp":1700000000000,"token":"t\"1","client":"web","version":"v2.0.4",)"
              uR"("language":"en","zone":[1]})"_s);
}

TEST(LegacyBase, NormalisesToTheFirstAPIFolder) {
    const std::pair<const char*, const char*> rows[] = {
        {"https://h/", "https://h/api/"},
        {"https://h/api", "https://h/api/"},
        {"https://h/API/v2/x", "https://h/API/"},
        {"https://h/x/api/y/api/z", "https://h/x/api/"},
        {"https://h/api/v2/Common/CrossLogin", "https://h/api/"},
        {"https://api.h/", "https://api.h/api/"}, // the name of a host is not a folder
        {"", ""},
    };
    for (const auto& [from, to] : rows) {
        EXPECT_EQ(absoluteString(normalizedLegacyAPIBase(QUrl(QString::fromUtf8(from)))).toStdString(), to) << from;
    }
}

TEST(LegacyBase, ComesFromTheReplyUnlessThatIsNoBase) {
    struct Row {
        const char* reply;
        const char* fallback;
        const char* base;
    };
    for (const Row& row : {
             Row{R"({"api":"https://eu/api/v2","data":{"api":"https://x/"}})", "https://h/p", "https://eu/api/"},
             Row{R"({"api":null,"data":{"api":"https://eu"}})", "https://h/p", "https://eu/api/"},
             Row{R"({"components":{"api":"https://diagnostic:82/"}})", "https://h/p", "https://h/p"},
             Row{R"({"api":"not an address"})", "https://h/p", "https://h/p/api/"},
             Row{R"({"api":"http://eu/api/"})", "https://h/api/", "https://h/api/"},
             Row{R"({"api":"http://eu/api/"})", "http://h/api/", "http://eu/api/"},
         }) {
        const QUrl base = resolveLegacyAPIBase(JSON::parse(row.reply), QUrl(QString::fromUtf8(row.fallback)));
        EXPECT_EQ(absoluteString(base).toStdString(), row.base) << row.reply;
    }
}

TEST(LegacyBase, CandidatesFollowTheHostAndStandOnce) {
    const SEMSEndpoints endpoints;
    const QString standard = absoluteString(endpoints.defaultBase);
    const QString alternate = absoluteString(endpoints.alternateBase);
    const std::pair<QString, QStringList> rows[] = {
        {u"https://eu.SEMSportal.com"_s, {u"https://eu.semsportal.com/api/"_s, standard}},
        {standard + u"v2/x"_s, {standard}},
        {u"https://cn.sems.com.cn/"_s, {u"https://cn.sems.com.cn/api/"_s, standard, alternate}},
        {u"https://au.semsplus.test/"_s, {u"https://au.semsplus.test/api/"_s, standard, alternate}},
        {u"https://else.test/semsplus"_s, {u"https://else.test/semsplus/api/"_s, standard}},
    };
    for (const auto& [configured, expected] : rows) {
        QStringList candidates;
        for (const QUrl& base : candidateLegacyAPIBases(QUrl(configured), endpoints)) {
            candidates += absoluteString(base);
        }
        EXPECT_EQ(candidates, expected) << configured.toStdString();
    }
}

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
