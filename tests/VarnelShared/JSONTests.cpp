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
        const QString description = value.error().localizedDescription();
        EXPECT_FALSE(description.contains(QLatin1String("secret"))) << text;
        EXPECT_TRUE(description.at(0).isUpper() && description.endsWith(QLatin1Char('.'))) << description.toStdString();
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

TEST(JSON, TheLastOfRepeatedMembersCountsAtThePlaceOfTheFirst) {
    QByteArray others; // enough of them to be told apart by another rule
    for (int i = 0; i < 40; ++i) {
        others += ",\"" + QByteArray::number(i) + "\":0";
    }
    for (const QByteArray& more : {QByteArray(), others}) {
        const auto value = parseJSON(R"([{"a":1,"b":{"a":{}},"a":[2],"c":3,"a":{"a":4,"a":5})" + more + "},6]");
        EXPECT_EQ(serializedJSON(value.value()), R"([{"a":{"a":5},"b":{"a":{}},"c":3)" + more + "},6]");
    }
}

TEST(JSON, AnObjectOfAnyNumberOfMembersTakesNoLongerThanManySmallOnes) {
    QByteArray text = "{\"\":0"; // would take minutes if each member were looked up among those before it
    for (int i = 1; i < 300000; ++i) {
        text += ",\"" + QByteArray::number(i) + "\":" + QByteArray::number(i);
    }
    text += '}';
    EXPECT_EQ(serializedJSON(parseJSON(text).value()), text);
}

} // namespace
} // namespace Varnel
