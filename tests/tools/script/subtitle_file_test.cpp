// Subtitles as they are read: times, words, and the marks that count.
#include "tools/script/subtitle_file.h"

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/script/cue_text.h"
#include "tools/script/json_tree.h"

namespace captionfx {
namespace {

using testing::ElementsAre;

/// "1.5-4 i#FFCC00@2{text}": what each cue is, and what is special of each piece.
std::vector<std::string> Told(const std::string& file) {
    std::vector<std::string> told;
    for (const SubtitleCue& cue : ReadSubtitles(file)) {
        std::ostringstream text;
        text << cue.start << "-" << cue.end;
        for (const CuePiece& piece : cue.pieces) {
            text << " " << (piece.bold ? "b" : "") << (piece.italic ? "i" : "");
            if (piece.color) text << "#" << int{piece.color->red} << "," << int{piece.color->blue};
            if (piece.time != cue.start) text << "@" << piece.time;
            text << "{" << piece.text << "}";
        }
        told.push_back(text.str());
    }
    return told;
}

TEST(SubtitleFile, TimesWordsAndMarks) {
    EXPECT_THAT(Told("\xEF\xBB\xBF"
                     "1\r\n00:00:01,500 --> 00:00:04,000 X1:5\r\nA <i>b <b>c</b></i>\r\n d \r\n\r\n\r\n"
                     "2\n01:02:03,250-->01:02:04,000\n<font color=\"#ff8000\">x</font> 1 < 2 &amp; {\\an8}<u>y</u>"),
                ElementsAre("1.5-4 {A } i{b } bi{c} {\nd}", "3723.25-3724 #255,0{x} { 1 < 2 & y}"));
    EXPECT_THAT(
        Told("WEBVTT - words\nKind: captions\n\nNOTE\nnothing --- here\n\nSTYLE\n::cue {}\n\n"
             "name\n00:01.000 --> 00:05.000 line:0\n<v Ann>one <00:02.000><c.yellow>two</c> "
             "<00:01.500>three <00:09.000>four\n\n00:06.000 --> 00:07.000\n<b></b>\n\n00:08.000 --> 00:09.000\nlast"),
        ElementsAre("1-5 {one } #255,0@2{two} @2{ three } @5{four}", "8-9 {last}"))
        << "a time that falls, or lies behind the end, is held; a subtitle without words is none";
}

TEST(SubtitleFile, TimesOfManyForms) {
    EXPECT_EQ(ParseCueTime("00:01"), 1.0F);
    EXPECT_EQ(ParseCueTime("100:00:00.5"), 360000.5F);
    for (const char* text : {"", "5", "1:2:3:4", "0:60", "-1:00", "0:1e1", "0:", ":1", "0:.5", "0:1.2.3", "c.yellow"})
        EXPECT_FALSE(ParseCueTime(text)) << text;
}

TEST(SubtitleFile, WhatIsWrongIsToldWithItsLine) {
    const struct {
        const char *file, *error;
    } rows[] = {
        {"\n\n", "1:1: holds no subtitles"},
        {"1\nHello\n", "2:1: expected times such as 00:00:01,500 --> 00:00:04,000"},
        {"1\n00:00:01,000 --> soon\nHello\n", "2:1: expected times such as 00:00:01,500 --> 00:00:04,000"},
        {"1\n00:00:02,000 --> 00:00:01,000\nHello\n", "2:1: this subtitle ends before it begins"},
        {"1\n00:00:01,000 --> 00:00:02,000\nA\n\xFF\n", "4:1: the text is not UTF-8"},
    };
    for (const auto& row : rows) {
        try {
            static_cast<void>(ReadSubtitles(row.file));
            ADD_FAILURE() << row.error;
        } catch (const PlacedError& error) {
            EXPECT_STREQ(error.what(), row.error);
        }
    }
}

}  // namespace
}  // namespace captionfx
