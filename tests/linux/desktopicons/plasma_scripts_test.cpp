#include "linux/desktopicons/plasma_scripts.h"

#include <gtest/gtest.h>

namespace orvane::host::desktopicons {
namespace {

const IconState kState{R"([{"id":1,"set":{"filterMode":"1","positions":["{\"1x1\":[]}"]}}])",
                       R"({"filterMode":"2"})"};

// What a script does with its functions is its last line.
std::string lastLine(const std::string& script) {
  const auto end = script.size() - 1;
  EXPECT_EQ(script.back(), '\n');
  return script.substr(script.rfind('\n', end - 1) + 1, end - script.rfind('\n', end - 1) - 1);
}

TEST(PlasmaScripts, CarryTheStateAsValues) {
  EXPECT_EQ(lastLine(plasmaCaptureScript()), "capture();");
  const auto arguments = "(" + kState.before + ", " + kState.written + ");";
  EXPECT_EQ(lastLine(plasmaHideScript(kState).value()), "hide" + arguments);
  EXPECT_EQ(lastLine(plasmaGiveBackScript(kState).value()), "giveBack" + arguments);
}

TEST(PlasmaScripts, AreMadeOfNothingButStates) {
  for (const std::string text :
       {"", "[", "1); evil(", "{}", "[1]", R"([{"id":1}])", R"([{"id":"1","set":{}}])",
        R"([{"id":-1,"set":{}}])", R"([{"id":1,"set":{"filterMode":2}}])",
        R"([{"id":1,"set":{"positions":[[]]}}])"}) {
    EXPECT_EQ(plasmaHideScript({text, kState.written}), std::nullopt) << text;
    EXPECT_EQ(plasmaGiveBackScript({text, kState.written}), std::nullopt) << text;
    EXPECT_EQ(plasmaState(text), std::nullopt) << text;
  }
  for (const std::string text : {"", "0", "2 * all/all", R"({"filterMode":2})"}) {
    EXPECT_EQ(plasmaHideScript({kState.before, text}), std::nullopt) << text;
  }
}

// A line separator ends a line of a script, in a text too.
TEST(PlasmaScripts, AreAsciiWhateverThePatternsAre) {
  const auto state = plasmaState("[{\"id\":1,\"set\":{\"filterPattern\":\"\u2028ü\"}}]\n");
  ASSERT_TRUE(state);
  const auto script = plasmaHideScript(*state).value();
  EXPECT_NE(script.find(R"("filterPattern":"\u2028\u00fc")"), script.npos);
  for (const char each : script) EXPECT_GE(each, 0);
}

TEST(PlasmaScripts, AStateIsWhatWasPrinted) {
  const auto state = plasmaState(R"([ {"set":{}, "id":3} ]
)");
  ASSERT_TRUE(state);
  EXPECT_EQ(state->before, R"([{"id":3,"set":{}}])");
  EXPECT_EQ(state->written,
            R"({"filterMimeTypes":"all/all","filterMode":"2","filterPattern":"*"})");
  EXPECT_TRUE(plasmaGiveBackScript(*state));
}

TEST(PlasmaScripts, WhatHasComeIsAddedToWhatIsKnown) {
  const auto came = plasmaNewIcons(
      kState, R"([{"id":9,"set":{}},{"id":1,"set":{"filterMode":"2"}},{"id":12,"set":{}}])");
  ASSERT_TRUE(came);
  EXPECT_EQ(came->alone.before, R"([{"id":9,"set":{}},{"id":12,"set":{}}])");
  EXPECT_EQ(came->together.before, kState.before.substr(0, kState.before.size() - 1) +
                                       R"(,{"id":9,"set":{}},{"id":12,"set":{}}])");
  EXPECT_EQ(came->alone.written, kState.written);
  EXPECT_EQ(came->together.written, kState.written);
}

TEST(PlasmaScripts, NothingHasComeWhereAllIsKnownOrNothingIsUnderstood) {
  for (const std::string text : {R"([{"id":1,"set":{}}])", "[]", "", R"([{"id":2}])"}) {
    EXPECT_EQ(plasmaNewIcons(kState, text).has_value(), false) << text;
  }
  EXPECT_FALSE(plasmaNewIcons({"nonsense", "{}"}, R"([{"id":2,"set":{}}])"));
}

TEST(PlasmaScripts, WithoutADesktopOfIconsThereIsNoState) {
  EXPECT_EQ(plasmaState("[]"), std::nullopt);
}

}  // namespace
}  // namespace orvane::host::desktopicons
