// Values as attribute text, in a host's locale that writes commas.
#include "persist/xml_helper.h"

#include <cmath>

#include <gtest/gtest.h>

#include "host/caption_fx.h"
#include "support/comma_locale.h"

namespace captionfx::test {
namespace {

class XmlHelperTest : public ::testing::Test {
protected:
    XmlHelperTest() { helper_.SetCurrent(helper_.AddRoot("r")); }

    int32_t status_ = kTitleFailure;
    XMLHelper helper_{SystemServices(), status_};
    CommaLocale comma_;
};

TEST_F(XmlHelperTest, Integers) {
    const struct {
        const char* text;
        int32_t value;
    } rows[] = {{"255", 255},         {" -7 apples", -7},         {"", 0},   {"#FF", 255},
                {"#ffffffff", -1},    {"2147483648", 2147483647}, {"x", 0},  {"-99999999999", -2147483647 - 1},
                {"#1FFFFFFFFFF", -1}, {"4294967295", 2147483647}, {"1.9", 1}};
    for (const auto& row : rows) {
        helper_.SetString("a", row.text);
        int32_t value = 4711;
        helper_.GetInt("a", value);
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST_F(XmlHelperTest, Floats) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const struct {
        std::string text;
        float value;
    } rows[] = {{"0.5", 0.5F},       {" +1e2x", 100},        {"0,5", 0},    {".25", 0.25F},
                {"1e39", kInfinity}, {"-1e400", -kInfinity}, {"1e-400", 0}, {"", 0},
                {"inf", kInfinity},  {"16777217", 16777216}, {"+-1", 0},    {std::string(256, '1'), 0}};
    for (const auto& row : rows) {
        helper_.SetString("a", row.text);
        float value = 4711;
        helper_.GetFloat("a", value);
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST_F(XmlHelperTest, WrittenForms) {
    const uint8_t bytes[] = {0x0A, 0xFF};
    helper_.SetFloat("f", 0.5F);
    helper_.SetFloat("max", std::numeric_limits<float>::max());
    helper_.SetUnsigned("u", 0xFFFFFFFFU);
    helper_.SetInt("i", -1);
    helper_.SetBool("b", 2);
    helper_.SetBinary("x", bytes, sizeof bytes);
    helper_.SetString("s", "<\"&'>\t\n \xC3\xA9\x01\xFF\xEF\xBF\xBF");
    const std::vector<uint8_t> stream = helper_.SaveStream();
    std::string text;
    for (size_t i = 2; i < stream.size(); i += 2) text += static_cast<char>(stream[i]);
    EXPECT_EQ(stream[0], 0xFF);
    EXPECT_EQ(stream[1], 0xFE);
    EXPECT_EQ(text,
              "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<r f=\"0.500000\" "
              "max=\"340282346638528859811704183484516925440.000000\" u=\"4294967295\" i=\"-1\" b=\"true\" x=\"0AFF\" "
              "s=\"&lt;&quot;&amp;'&gt;&#9;&#10; \xE9?????\"/>\n");
    char back[20] = {};
    size_t size = sizeof back - 1;
    EXPECT_EQ(helper_.GetString("s", back, &size), kTitleOk);
    EXPECT_STREQ(back, "<\"&'>\t\n \xC3\xA9?????");
}

TEST_F(XmlHelperTest, StringsAndBytesHaveSizeRules) {
    helper_.SetString("s", "abc");
    char buffer[4] = "zz";
    size_t size = 2;
    EXPECT_EQ(helper_.GetString("s", buffer, &size), kTitleInvalidArgument);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(helper_.GetString("s", buffer, &size), kTitleOk);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(helper_.GetString("s", buffer, nullptr), kTitleInvalidArgument);
    EXPECT_EQ(helper_.GetString("missing", buffer, &size), kTitleFailure);
    EXPECT_EQ(size, 0U);

    helper_.SetString("x", "0aFFzz1");
    uint8_t bytes[3] = {9, 9, 9};
    size = 2;
    EXPECT_EQ(helper_.GetBinary("x", bytes, &size), kTitleInvalidArgument);
    EXPECT_EQ(bytes[0], 9);
    EXPECT_EQ(size, 3U) << "seven digits are three bytes";
    EXPECT_EQ(helper_.GetBinary("x", bytes, &size), kTitleOk);
    EXPECT_EQ((std::vector<int>{bytes[0], bytes[1], bytes[2]}), (std::vector<int>{10, 255, 0}));
    EXPECT_EQ(helper_.SetBinary("x", nullptr, 1), kTitleFailure);

    helper_.ClearCurrent();
    EXPECT_EQ(helper_.GetString("s", buffer, &size), kTitleFailure);
    EXPECT_EQ(helper_.SetInt("i", 1), kTitleFailure);
    EXPECT_EQ(helper_.SetCurrent({}), kTitleFailure);
}

}  // namespace
}  // namespace captionfx::test
