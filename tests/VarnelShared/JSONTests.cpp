#include <VarnelShared/JSON.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

QByteArray nestedArrays(std::size_t depth) {
    const auto size = static_cast<qsizetype>(depth);
    return QByteArray(size, '[') + QByteArray(size, ']');
}

TEST(JSON, AcceptsTopLevelFragmentsAndKeepsTheOrderOfMembers) {
    for (const char* text : {"3", "\"x\"", "true", "null", "[]", R"({"b":1,"a":2.5,"c":true})"}) {
        const Result<JSON> value = parseJSON(text);
        ASSERT_TRUE(value.has_value()) << text;
        EXPECT_EQ(serializedJSON(*value).toStdString(), text);
    }
}

TEST(JSON, ATextComesBackAsItIs) {
    for (const char* text : {"", "ä€𝄞", "\ufeff\ufeffa", "a\ufeff"}) {
        EXPECT_EQ(toUtf8(textOf(JSON(text))), text);
    }
    EXPECT_EQ(textOf(JSON(3)), QString());
}

TEST(JSON, RejectsWhatIsNotJSONWithoutQuotingIt) {
    for (const char* text : {"", "<html>secret</html>", "{\"token\":\"secret", "{\"a\":1}secret", "secret",
                             "\"secret\xff\"", "[1e999secret]", "{\"secret\" 1}"}) {
        const Result<JSON> value = parseJSON(text);
        ASSERT_FALSE(value.has_value()) << text;
        EXPECT_FALSE(value.error().localizedDescription().isEmpty());
        EXPECT_FALSE(value.error().localizedDescription().contains(QLatin1String("secret"))) << text;
        EXPECT_NE(value.error().as<JSONError>(), nullptr);
    }
    EXPECT_FALSE(parseJSON("1e999").has_value());
}

TEST(JSON, LimitsTheNestingButNotBracketsInsideTexts) {
    EXPECT_TRUE(parseJSON(nestedArrays(jsonNestingLimit)).has_value());
    EXPECT_FALSE(parseJSON(nestedArrays(jsonNestingLimit + 1)).has_value());
    EXPECT_FALSE(parseJSON(nestedArrays(1000000)).has_value());
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
