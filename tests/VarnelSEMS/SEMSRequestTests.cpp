#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSRequest.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

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
            const auto expected = QStringLiteral("Invalid SEMS URL path %1.").arg(QString::fromUtf8(row.path));
            ASSERT_FALSE(url);
            EXPECT_EQ(*url.error().as<SEMSAPIError>(), SEMSAPIError::invalidConfiguration(expected));
        }
    }
}

TEST(FormEncoding, EncodesEveryByteAndKeepsTheOrder) {
    EXPECT_EQ(formURLEncoded(QStringLiteral("a b&c/é")), "a+b%26c%2F%C3%A9");
    EXPECT_EQ(formURLEncoded(QStringLiteral("AZaz09-._~\n+=%")), "AZaz09-._~%0A%2B%3D%25");
    EXPECT_EQ(formURLEncodedData(JSON::parse(R"({"z":"ü 1","a":20,"e":""})")), "z=%C3%BC+1&a=20&e=");
}

} // namespace
} // namespace Varnel
