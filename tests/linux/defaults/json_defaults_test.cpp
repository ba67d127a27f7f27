#include "linux/defaults/json_defaults.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvane::host {
namespace {

std::optional<DefaultsValue> valueIn(const std::string& json) {
  const auto parsed = parseDefaults("{\"key\": " + json + "}");
  return parsed ? valueOf(parsed->at("key")) : std::nullopt;
}

TEST(JsonDefaults, AValueIsOfTheTypeThatWasStored) {
  EXPECT_EQ(valueIn("true"), DefaultsValue(true));
  EXPECT_EQ(valueIn("1"), DefaultsValue(1.0));
  EXPECT_EQ(valueIn("-3"), DefaultsValue(-3.0));
  EXPECT_EQ(valueIn("1.7"), DefaultsValue(1.7));
  EXPECT_EQ(valueIn("\"0.5\""), DefaultsValue(std::string("0.5")));
  EXPECT_EQ(valueIn("\"\""), DefaultsValue(std::string()));
  EXPECT_EQ(valueIn("[\"a\", \"b\"]"), DefaultsValue(std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(valueIn("[]"), DefaultsValue(std::vector<std::string>{}));
}

TEST(JsonDefaults, OtherTypesAreNoValues) {
  for (const char* json : {"null", "{}", "[1]", "[\"a\", 1]", "[[\"a\"]]", "[null]"}) {
    EXPECT_EQ(valueIn(json), std::nullopt) << json;
  }
}

TEST(JsonDefaults, OnlyAnObjectInWellFormedTextIsAccepted) {
  for (const std::string text :
       {"", " ", "[]", "1", "null", "\"text\"", "{", "{\"a\": 1", "{\"a\": 1}}", "{\"a\": 1,}",
        "{a: 1}", "{\"a\": 1e999}", "{\"a\": \"\xff\"}", "{\"\xc0\xaf\": 1}", "{\"a\": \"\n\"}"}) {
    EXPECT_EQ(parseDefaults(text), std::nullopt) << text;
  }
  EXPECT_TRUE(parseDefaults("{}"));
  EXPECT_TRUE(parseDefaults("\xef\xbb\xbf {\"a\": 1}\n"));
  EXPECT_EQ(parseDefaults(std::string_view("{}\0", 3)), std::nullopt);
}

TEST(JsonDefaults, NestingThatNobodyWroteIsRefusedWithoutHarm) {
  const std::size_t depth = 100'000;
  for (const char* open : {"[", "{\"a\":"}) {
    std::string text = "{\"a\":";
    for (std::size_t i = 0; i < depth; ++i) text += open;
    EXPECT_EQ(parseDefaults(text), std::nullopt);
    text += "1" + std::string(depth + 1, *open == '[' ? ']' : '}');
    EXPECT_EQ(parseDefaults(text), std::nullopt);
  }
  EXPECT_TRUE(parseDefaults("{\"a\": [[[[{\"b\": []}]]]]}"));
}

TEST(JsonDefaults, NumbersSurviveTheWayThroughTheFile) {
  for (const double number : {0.82, 0.1, -0.0, 1e-300, 1.7976931348623157e308, 5e-324, 100.0}) {
    JsonDefaults json = JsonDefaults::object();
    json["n"] = jsonOf(number);
    const auto back = parseDefaults(textOf(json));
    ASSERT_TRUE(back);
    EXPECT_EQ(valueOf(back->at("n")), DefaultsValue(number));
  }
}

TEST(JsonDefaults, NumbersThatJsonCannotHoldDoNoHarm) {
  JsonDefaults json = JsonDefaults::object();
  json["nan"] = jsonOf(std::nan(""));
  json["infinity"] = jsonOf(std::numeric_limits<double>::infinity());
  json["good"] = jsonOf(1.0);
  const auto back = parseDefaults(textOf(json));
  ASSERT_TRUE(back);
  EXPECT_EQ(valueOf(back->at("nan")), std::nullopt);
  EXPECT_EQ(valueOf(back->at("infinity")), std::nullopt);
  EXPECT_EQ(valueOf(back->at("good")), DefaultsValue(1.0));
}

TEST(JsonDefaults, IllFormedTextsDoNoHarm) {
  JsonDefaults json = JsonDefaults::object();
  json["bad"] =
      jsonOf(std::string("a\xff"
                         "b"));
  json["k\xfe"] = jsonOf(true);
  const auto back = parseDefaults(textOf(json));
  ASSERT_TRUE(back);
  EXPECT_EQ(valueOf(back->at("bad")), DefaultsValue(std::string("a\ufffdb")));
}

}  // namespace
}  // namespace orvane::host
