#include <VarnelShared/JSON.h>
#include <VarnelShared/Text.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(JSON, AcceptsTopLevelFragmentsAndKeepsTheOrderOfMembers) {
    for (const char* text : {"3", "\"x\"", "true", "null", "[]", R"({"b":1,"a":2.5,"c":true})"}) {
        const Result<JSON> value = parseJSON(text);
        ASSERT_TRUE(value.has_value()) << text;
        EXPECT_EQ(serializedJSON(*value).toStdString(), text);
    }
}

TEST(Text, ComesBackAsItIsAndIsTrimmedOfUnicodeWhiteSpace) {
    for (const char* text : {"", "ä€𝄞", "\ufeff\ufeffa", "a\ufeff"}) {
        EXPECT_EQ(toUtf8(textOf(JSON(text))), text);
    }
    EXPECT_EQ(textOf(JSON(3)), QString());
    EXPECT_EQ(toUtf8(trimmed(QString::fromUtf8("\u00a0\t\u2003 me\u200b \u2028\r\n\u0085"))), "me\u200b");
}

TEST(JSON, RejectsWhatIsNotJSONWithoutQuotingIt) {
    for (const char* text : {"", "1e999", "<html>secret</html>", "{\"token\":\"secret", "{\"a\":1}secret", "secret",
                             "\"secret\xff\"", "[1e999secret]", "{\"secret\" 1}"}) {
        const Result<JSON> value = parseJSON(text);
        ASSERT_FALSE(value.has_value()) << text;
        EXPECT_FALSE(value.error().localizedDescription().contains(QLatin1String("secret"))) << text;
        EXPECT_NE(value.error().as<JSONError>(), nullptr);
    }
}

TEST(JSON, LimitsTheNestingButNotBracketsInsideTexts) {
    const auto isAccepted = [](std::size_t depth) {
        const auto size = static_cast<qsizetype>(depth);
        return parseJSON(QByteArray(size, '[') + QByteArray(size, ']')).has_value();
    };
    EXPECT_TRUE(isAccepted(jsonNestingLimit));
    EXPECT_FALSE(isAccepted(jsonNestingLimit + 1));
    EXPECT_FALSE(isAccepted(1000000));
    EXPECT_TRUE(parseJSON(R"("\")" + QByteArray(1000, '[') + '"').has_value());
}

TEST(JSON, LimitsTheMembersOfOneObjectButNotOfManyTogether) {
    const auto object = [](std::size_t members) {
        QByteArray text = "{\"\":0";
        for (std::size_t i = 1; i < members; ++i) {
            text += ",\"" + QByteArray::number(static_cast<qulonglong>(i)) + "\":\":\"";
        }
        return text + '}';
    };
    const QByteArray largest = object(jsonMemberLimit);
    EXPECT_TRUE(parseJSON('[' + largest + ',' + largest + ']').has_value());
    EXPECT_FALSE(parseJSON('[' + object(jsonMemberLimit + 1) + ']').has_value());
}

} // namespace
} // namespace Varnel
