#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSEndpoints.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

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
        {QStringLiteral("https://eu.SEMSportal.com"), {QStringLiteral("https://eu.semsportal.com/api/"), standard}},
        {standard + QStringLiteral("v2/x"), {standard}},
        {QStringLiteral("https://cn.sems.com.cn/"),
         {QStringLiteral("https://cn.sems.com.cn/api/"), standard, alternate}},
        {QStringLiteral("https://au.semsplus.test/"),
         {QStringLiteral("https://au.semsplus.test/api/"), standard, alternate}},
        {QStringLiteral("https://else.test/semsplus"), {QStringLiteral("https://else.test/semsplus/api/"), standard}},
    };
    for (const auto& [configured, expected] : rows) {
        QStringList candidates;
        for (const QUrl& base : candidateLegacyAPIBases(QUrl(configured), endpoints)) {
            candidates += absoluteString(base);
        }
        EXPECT_EQ(candidates, expected) << configured.toStdString();
    }
}

} // namespace
} // namespace Varnel
