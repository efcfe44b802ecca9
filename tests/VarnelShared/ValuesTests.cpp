#include <VarnelShared/ChartScaleMode.h>
#include <VarnelShared/IconAppearanceMode.h>
#include <VarnelShared/Result.h>
#include <VarnelShared/Text.h>
#include <VarnelShared/URLError.h>

#include <gtest/gtest.h>

#include <QStringList>

namespace Varnel {
namespace {

TEST(RawValues, OnlyTheExactTextNamesACase) {
    EXPECT_EQ(fromRawValue<ChartScaleMode>(QStringLiteral("fixed")), ChartScaleMode::fixed);
    EXPECT_EQ(fromRawValue<ChartScaleMode>(QStringLiteral("Fixed")), std::nullopt);
    EXPECT_EQ(fromRawValue<IconAppearanceMode>(QStringLiteral("dark ")), std::nullopt);
    QStringList names;
    for (const auto& entry : allCases<IconAppearanceMode>()) {
        names << displayName(entry.value);
        EXPECT_EQ(fromRawValue<IconAppearanceMode>(rawValue(entry.value)), entry.value);
    }
    EXPECT_EQ(names, QStringList({QStringLiteral("Automatic"), QStringLiteral("Light"), QStringLiteral("Dark")}));
}

TEST(Error, HandsTheTypedErrorBackAndOnlyThatType) {
    const Result<int> result = failure(URLError{URLError::Code::timedOut, {}});
    const Error copy = result.error();
    ASSERT_NE(copy.as<URLError>(), nullptr);
    EXPECT_EQ(copy.as<URLError>()->code, URLError::Code::timedOut);
    EXPECT_EQ(copy.localizedDescription(), QStringLiteral("The request timed out."));
    struct OtherError {
        QString localizedDescription() const { return {}; }
    };
    EXPECT_EQ(copy.as<OtherError>(), nullptr);
}

TEST(Text, TrimsUnicodeWhiteSpaceAndNewlines) {
    EXPECT_EQ(trimmed(QString::fromUtf8("\u00a0\t\u2003 me \u2028\r\n\u0085")), QStringLiteral("me"));
    EXPECT_EQ(trimmed(QString::fromUtf8("a\u200bb\u200b")), QString::fromUtf8("a\u200bb\u200b"));
}

} // namespace
} // namespace Varnel
