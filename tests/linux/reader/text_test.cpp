#include <gtest/gtest.h>

#include <vector>

#include "linux/reader/component_splitter.h"
#include "linux/reader/content_lines.h"
#include "linux/reader/date_values.h"
#include "linux/reader/plain_text.h"
#include "linux/reader/text_encoding.h"

namespace orvane::ical {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> all;
  ContentLines lines(text);
  while (lines.next()) all.emplace_back(lines.line());
  return all;
}

using Lines = std::vector<std::string>;

TEST(ContentLines, MayEndInAnyWay) {
  EXPECT_EQ(linesOf("a\r\nb\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(linesOf("\r\n\n\r\na\n\n\r\rb\r\n"), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf(""), Lines{});
}

TEST(ContentLines, AreUnfolded) {
  EXPECT_EQ(linesOf("a\r\n b\r\n\tc\r\nd"), (Lines{"abc", "d"}));
  EXPECT_EQ(linesOf("a\n  b\r c\n"), (Lines{"a bc"}));
  EXPECT_EQ(linesOf("\xc3\r\n \xbc"), (Lines{"\xc3\xbc"}));
  EXPECT_EQ(linesOf("a\n "), (Lines{"a"}));
}

TEST(ContentLines, AreCutWhenTheyAreEndless) {
  const std::string endless(3 * ContentLines::kLongestLine, 'x');
  const auto lines = linesOf(endless + "\nb\n");
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].size(), ContentLines::kLongestLine);
  EXPECT_EQ(lines[1], "b");
}

TEST(ContentLines, AreTakenApart) {
  const auto line = splitContentLine("DTSTART;TZID=\"a;b:c\";X=1:20261120T100000");
  EXPECT_EQ(line.name, "DTSTART");
  EXPECT_EQ(line.parameters, ";TZID=\"a;b:c\";X=1");
  EXPECT_EQ(line.value, "20261120T100000");
  EXPECT_EQ(splitContentLine("SUMMARY;X=\"never closed:text").value, "text");
  EXPECT_EQ(splitContentLine("nothing").value, "");
  EXPECT_EQ(splitContentLine(":value").name, "");
}

TEST(ComponentSplitter, LeavesOutWhatIsNotWhole) {
  const auto kindsIn = [](const std::string& text) {
    std::string kinds;
    for (const auto& span : splitIntoComponents(text).components) {
      kinds += span.kind == ComponentKind::event  ? "e"
               : span.kind == ComponentKind::task ? "t"
                                                  : "z";
    }
    return kinds;
  };
  EXPECT_EQ(kindsIn("BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VEVENT\nBEGIN:VTODO\nEND:VTODO\n"
                    "BEGIN:VTIMEZONE\nBEGIN:STANDARD\nEND:STANDARD\nEND:VTIMEZONE\nEND:VCALENDAR"),
            "etz");
  EXPECT_EQ(kindsIn("BEGIN:VEVENT\nBEGIN:VEVENT\nEND:VEVENT\n"), "e");
  EXPECT_EQ(kindsIn("BEGIN:VEVENT\nEND:VTODO\nBEGIN:VTODO\nEND:VTODO\n"), "t");
  EXPECT_EQ(kindsIn("BEGIN:VEVENT\nBEGIN:VALARM\nEND:VEVENT\nBEGIN:VEVENT\nEND:VEVENT\n"), "ee");
  EXPECT_EQ(kindsIn("BEGIN:VEVENT\nEND:VCALENDAR\nEND:VEVENT\n"), "");
  EXPECT_EQ(kindsIn("END:VEVENT\nEND:VEVENT\n"), "");
  EXPECT_FALSE(splitIntoComponents("hello\n").isCalendar);
}

TEST(TextEncoding, IsGuessedFromTheBytes) {
  EXPECT_EQ(encodingOf("plain"), TextEncoding::utf8);
  EXPECT_EQ(encodingOf("gr\xc3\xbc\xc3\x9f"), TextEncoding::utf8);
  EXPECT_EQ(encodingOf("gr\xfc\xdf"), TextEncoding::latin1);
  EXPECT_EQ(encodingOf("gr\xc3\r\n \xbc \xff"), TextEncoding::utf8);
  EXPECT_EQ(encodingOf("\xf0\n \x9f\n \x8e\n \x82"), TextEncoding::utf8);
}

TEST(TextEncoding, DecodedTextIsAlwaysWellFormed) {
  EXPECT_EQ(decodedText("a\xff"
                        "b",
                        TextEncoding::utf8),
            "a\xef\xbf\xbd"
            "b");
  EXPECT_EQ(decodedText("\xe2\x82", TextEncoding::utf8), "\xef\xbf\xbd\xef\xbf\xbd");
  EXPECT_EQ(decodedText("\xed\xa0\x80", TextEncoding::utf8).size(), 9U);  // a lone surrogate
  EXPECT_EQ(decodedText("\xc0\x80", TextEncoding::utf8).size(), 6U);      // an overlong zero
  EXPECT_EQ(decodedText(std::string("a\0b", 3), TextEncoding::utf8), "a b");
  EXPECT_EQ(decodedText("\x80\xe4", TextEncoding::latin1), "\xe2\x82\xac\xc3\xa4");
}

TEST(TextEncoding, CodePointsAreNotCutInTwo) {
  EXPECT_EQ(firstCodePoints("gr\xc3\xbc\xc3\x9f", 3), "gr\xc3\xbc");
  EXPECT_EQ(firstCodePoints("abc", 3), "abc");
  EXPECT_EQ(firstCodePoints("\xf0\x9f\x8e\x82\xf0\x9f\x8e\x82", 1), "\xf0\x9f\x8e\x82");
}

TEST(PlainText, IsReadAsPeopleReadIt) {
  EXPECT_EQ(plainText("a\\, b\\; c\\\\d\\ne", TextEncoding::utf8), "a, b; c\\d\ne");
  EXPECT_EQ(plainText("cut\\", TextEncoding::utf8), "cut\\");
  EXPECT_EQ(plainText(" \\n ", TextEncoding::utf8), std::nullopt);
  EXPECT_EQ(plainText(std::string(100'000, 'x'), TextEncoding::utf8)->size(), 1000U);
}

TEST(DateValues, OnlyRealDaysAndTimesCount) {
  EXPECT_TRUE(parseDateValue("20240229"));
  EXPECT_EQ(parseDateValue("19700101T000001Z")->time, 1);
  EXPECT_TRUE(parseDateValue("19700101T000001Z")->isUtc);
  EXPECT_EQ(parseDateValue("20261120T235960")->time, parseDateValue("20261120T235959")->time);
  for (const char* bad :
       {"", "2026", "20260229", "20261301", "20261100", "00000101", "2026112", "20261120T",
        "20261120T1000", "20261120T240000", "20261120T106000", "20261120T100000X",
        "20261120T100000ZZ", "2026-11-20", " 2026112", "+2026112"}) {
    EXPECT_FALSE(parseDateValue(bad)) << bad;
  }
  EXPECT_EQ(parseOffset("-003015"), -1815);
  EXPECT_EQ(parseOffset("+0545"), 20700);
  EXPECT_FALSE(parseOffset("+05"));
  EXPECT_FALSE(parseOffset("east"));
}

}  // namespace
}  // namespace orvane::ical
