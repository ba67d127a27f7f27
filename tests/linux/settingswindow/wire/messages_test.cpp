#include "linux/settingswindow/wire/messages.h"

#include <gtest/gtest.h>

#include <limits>

#include "example_messages.h"
#include "linux/settingswindow/wire/message_stream.h"

namespace orvane::formwire {
namespace {

// What follows the length.
std::string contentOf(const std::optional<std::string>& frame) { return frame.value().substr(4); }

TEST(FormWireMessages, WhatTheBoardSaysSurvivesTheWay) {
  for (const auto& message : exampleBoardMessages()) {
    EXPECT_EQ(decodeBoardMessage(contentOf(encode(message))), message) << message.index();
  }
}

TEST(FormWireMessages, WhatTheWindowSaysSurvivesTheWay) {
  for (const auto& message : exampleWindowMessages()) {
    EXPECT_EQ(decodeWindowMessage(contentOf(encode(message))), message) << message.index();
  }
}

TEST(FormWireMessages, AColorArrivesAsItsComponents) {
  const auto arrived =
      decodeWindowMessage(contentOf(encode(WindowMessage(Edited{1, {"c", Color::white()}}))));
  ASSERT_TRUE(arrived);
  EXPECT_EQ(std::get<Edited>(*arrived).edit.value, FormValue(Color::srgb(1, 1, 1)));
}

TEST(FormWireMessages, BytesThatAreNoTextArriveAsReplacementCharacters) {
  Show show;
  show.form = fakes::exampleForm();
  show.form.header.title.text = "a\xff";
  const auto arrived = decodeBoardMessage(contentOf(encode(BoardMessage(show))));
  ASSERT_TRUE(arrived);
  EXPECT_EQ(std::get<Show>(*arrived).form.header.title.text, "a\ufffd");
}

TEST(FormWireMessages, WhatIsOverTheLimitsIsNotSaid) {
  Show show;
  show.form = fakes::exampleForm();
  auto& list = std::get<FormSourceList>(show.form.tabs[0].sections[0].controls[0].content);
  list.rows.assign(50'001, {});
  EXPECT_EQ(encode(BoardMessage(show)), std::nullopt);
  EXPECT_EQ(encode(BoardMessage(Update{1, 0, show.form})), std::nullopt);
  list.rows.assign(1, {"key", std::string(kMostBoardBytes, 'a'), false});
  EXPECT_EQ(encode(BoardMessage(show)), std::nullopt);

  const WindowMessage longText = Edited{1, {"text", std::string(kMostWindowBytes, 'a')}};
  EXPECT_EQ(encode(longText), std::nullopt);
  State state;
  for (std::size_t index = 0; index <= kMostOffsets; ++index) {
    state.state.scrollOffsets[std::to_string(index)] = 1;
  }
  EXPECT_EQ(encode(WindowMessage(state)), std::nullopt);

  auto preview = examplePreview();
  preview.pixels += "x";
  EXPECT_EQ(encode(BoardMessage(preview)), std::nullopt);
}

TEST(FormWireMessages, TheLongestTextThatAFieldTakesArrives) {
  // Each control character takes six bytes of JSON.
  const WindowMessage edit = Edited{1, {"text", std::string(64 * 1024, '\x01')}};
  EXPECT_EQ(decodeWindowMessage(contentOf(encode(edit))), edit);
}

TEST(FormWireMessages, NothingElseIsUnderstoodFromTheWindow) {
  const char* const cases[] = {
      "",
      "J",
      "K{\"is\":\"closed\"}",
      "{\"is\":\"closed\"}",
      "J{\"is\":\"closed\"",
      "J{\"is\":\"closed\"}}",
      "J{\"is\":\"closed\"} and more",
      "Jnull",
      "J[]",
      "J\"closed\"",
      "J{}",
      "J{\"is\":7}",
      "J{\"is\":\"show\"}",
      "J{\"is\":\"Closed\"}",
      "J{\"is\":\"cl\xffosed\"}",
      "J{\"is\":\"ack\"}",
      "J{\"is\":\"ack\",\"sequence\":-1}",
      "J{\"is\":\"ack\",\"sequence\":1.5}",
      "J{\"is\":\"ack\",\"sequence\":\"1\"}",
      "J{\"is\":\"ack\",\"sequence\":18446744073709551616}",
      "J{\"is\":\"previewScale\",\"scale\":-1}",
      "J{\"is\":\"previewScale\",\"scale\":9}",
      "J{\"is\":\"previewScale\",\"scale\":1e999}",
      "J{\"is\":\"previewScale\",\"scale\":null}",
      "J{\"is\":\"edited\",\"number\":1}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\"}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":7,\"value\":true}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":{}}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":[]}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":[0,0,0]}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":[0,0,0,0,0]}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":[0,0,0,1.5]}}",
      "J{\"is\":\"edited\",\"number\":1,\"edit\":{\"key\":\"a\",\"value\":[0,0,0,\"1\"]}}",
      "J{\"is\":\"state\",\"state\":null}",
      "J{\"is\":\"state\",\"state\":{\"scrollOffsets\":{}}}",
      "J{\"is\":\"state\",\"state\":{\"position\":[1],\"scrollOffsets\":{}}}",
      "J{\"is\":\"state\",\"state\":{\"position\":[0,1e7],\"scrollOffsets\":{}}}",
      "J{\"is\":\"state\",\"state\":{\"position\":[\"0\",0],\"scrollOffsets\":{}}}",
      "J{\"is\":\"state\",\"state\":{\"position\":null}}",
      "J{\"is\":\"state\",\"state\":{\"position\":null,\"scrollOffsets\":[]}}",
      "J{\"is\":\"state\",\"state\":{\"position\":null,\"scrollOffsets\":{\"a\":-1}}}",
  };
  for (const char* content : cases) {
    EXPECT_EQ(decodeWindowMessage(content), std::nullopt) << content;
  }
}

TEST(FormWireMessages, NestedOrOverlongTextCostsNothing) {
  EXPECT_EQ(decodeWindowMessage("J" + std::string(500'000, '[')), std::nullopt);
  EXPECT_EQ(decodeWindowMessage("J" + std::string(kMostWindowBytes, ' ')), std::nullopt);
  EXPECT_EQ(decodeBoardMessage("J" + std::string(4'000'000, '[')), std::nullopt);
}

// Every value of the form's JSON in turn is replaced by what cannot stand there.
TEST(FormWireMessages, AFormWithOneValueOfAnotherKindIsNotUnderstood) {
  Update update{1, 0, fakes::exampleForm()};
  const std::string good = contentOf(encode(BoardMessage(update)));
  int replaced = 0;
  for (std::size_t colon = good.find("\":"); colon != good.npos;
       colon = good.find("\":", colon + 1)) {
    const char first = good[colon + 2];
    if (first != 't' && first != 'f' && (first < '0' || first > '9')) continue;
    const std::size_t end = good.find_first_of(",}", colon);
    const std::string bad = good.substr(0, colon + 2) + "\"?\"" + good.substr(end);
    EXPECT_EQ(decodeBoardMessage(bad), std::nullopt) << good.substr(colon - 10, 20);
    ++replaced;
  }
  EXPECT_GT(replaced, 40);
}

TEST(FormWireMessages, PicturesThatAreNotWhatTheySayAreNotUnderstood) {
  const std::string good = contentOf(encode(BoardMessage(examplePreview())));
  ASSERT_TRUE(decodeBoardMessage(good));
  EXPECT_EQ(decodeBoardMessage(good + "x"), std::nullopt);
  EXPECT_EQ(decodeBoardMessage(good.substr(0, good.size() - 1)), std::nullopt);
  std::string larger = good;
  larger[1 + 8 + 4 + 7] = 4;  // the width, behind kind, sequence and key
  EXPECT_EQ(decodeBoardMessage(larger), std::nullopt);
  for (const double scale : {0.0, -1.0, 9.0, std::numeric_limits<double>::infinity()}) {
    auto preview = examplePreview();
    preview.scale = scale;
    EXPECT_EQ(encode(BoardMessage(preview)), std::nullopt) << scale;
  }
}

}  // namespace
}  // namespace orvane::formwire
