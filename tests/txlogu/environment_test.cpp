#include "environment.h"

#include <txlogu/txlogu.h>

#include <map>
#include <string_view>
#include <thread>

namespace {

/// The part of a record's line behind time, process and thread, whose form is checked.
std::string recordOf(const std::string& line) {
  const std::string_view form = "dddd-dd-ddTdd:dd:dd.dddZ d";
  bool matches = line.size() > form.size();
  for (std::size_t i = 0; matches && i < form.size(); ++i) {
    matches = form[i] == 'd' ? line[i] >= '0' && line[i] <= '9' : line[i] == form[i];
  }
  unsigned process = 0, thread = 0;
  int end = 0;
  matches = matches && std::sscanf(line.c_str() + form.size() - 1, "%u %u%n", &process, &thread, &end) == 2;
  const std::size_t behind = form.size() - 1 + static_cast<std::size_t>(end);
  return matches && line[behind] == ' ' ? line.substr(behind + 1) : "<no record> " + line;
}

Lines recordsOf(Lines lines) {
  for (std::string& line : lines) line = recordOf(line);
  return lines;
}

TEST_F(Environment, ItemsChooseTheRecords) {
  const std::string complaint = "<no record> txlogu: TXLOG", tooLong(5000, 'x');
  const std::pair<std::string, Lines> rows[] = {
      {"", {}},
      {" ; ", {}},
      {"stderr",
       {"note A text", "note B text", "error A text", "error B text", "trace A text", "trace B text", "entry A text",
        "entry B text", "exit A text", "exit B text", "level5 A text", "level-7 A label \\[2 bytes] 01 ab"}},
      {" STDERR ;; Level= error , EXIT ;tag=B;", {"error B text", "exit B text"}},
      {"level=note;stderr;level=entry;tag=A,C", {"note A text", "entry A text"}},
      {"stderr;tag=b,AB", {}},  // tags differ by case and length
      // What is not understood is named, and the rest counts.
      {"stderr;bad\nitem\\;level=eror,error;tag=B;file=;level=;stderrr",
       {complaint + ": item not understood: bad\\nitem\\\\", complaint + ": level not understood: eror",
        complaint + ": item not understood: file=", complaint + ": item not understood: level=",
        complaint + ": item not understood: stderrr", "error B text"}},
      {"stderr;level=eror", {complaint + ": level not understood: eror"}},
      {"stderr;tag=,", {complaint + ": tag not understood: "}},
      {"level=error", {complaint + " names no destination: level=error"}},
      {"stderr;tag=" + tooLong, {complaint + " is too long: "}},
  };
  for (const auto& [txlog, records] : rows) {
    setTxlog(txlog);
    EXPECT_EQ(recordsOf(standardErrorOf("levels")), records) << txlog;
  }
}

TEST_F(Environment, NoTextForgesARecord) {
  std::string longest = "error " + std::string(TXLOG_MAX_TAG, 'T') + "\\[cut] ";
  for (int index = 0; index < TXLOG_MAX_TEXT; ++index) longest += "\\u2028";
  setTxlog("stderr");
  EXPECT_EQ(recordsOf(standardErrorOf("texts")),
            (Lines{"error t\\n2\\u0020[x]\\u0020\\\\ a\\n2026-01-01T00:00:00.000Z 1 1 error t forged"
                   "\\r\\t\\u001b[2J\\u007f\\\\n",
                   "error t \\u0085|\\u2028|\\u2029|\\u202e|\\u2066|\\u009b|\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80",
                   "error t <\xEF\xBF\xBD-\xEF\xBF\xBD>", longest + "\\[cut]"}));
}

TEST_F(Environment, DataIsHexUnderItsLabel) {
  std::string hex;
  for (int index = 0; index < TXLOG_MAX_DATA; ++index) hex += " 5a";
  setTxlog("stderr");
  EXPECT_EQ(
      recordsOf(standardErrorOf("data")),
      (Lines{"trace t l\\\\[9 bytes]\\n \\[3 bytes] 00 ff 0a", "trace t none \\[0 bytes]", "trace t null \\[no data]",
             "trace t negative \\[no data]", "trace t long \\[515 bytes, last 3 left out]" + hex}));
}

// Also of records that come when the program has all but ended.
TEST_F(Environment, FilesAreAppendedTo) {
  const fs::path file = folder / u8"l\u00f6g file.txt";
  setTxlog(toFile(file));
  for (int run = 1; run <= 2; ++run) {
    EXPECT_EQ(standardErrorOf("late"), Lines{});
    EXPECT_EQ(recordsOf(linesOf(file)), Lines(run, "note t late"));
  }
}

// Two processes with several threads each: every line is whole and none is missing.
TEST_F(Environment, LinesOfThreadsAndProcessesDoNotMix) {
  const fs::path file = folder / "log";
  setTxlog(toFile(file));
  std::thread other([this] { standardErrorOf("threads", "stderr1"); });
  standardErrorOf("threads", "stderr2");
  other.join();
  std::string filler;
  for (int index = 0; index < 200; ++index) filler += "\xC3\xA4";
  std::map<std::string, int> counts, expected;
  for (const std::string& line : linesOf(file)) ++counts[recordOf(line)];
  for (int record = 0; record < 900; ++record) {
    expected["trace t <" + std::to_string(record / 300) + " " + std::to_string(record % 300) + " " + filler + ">"] = 2;
  }
  EXPECT_EQ(counts, expected);
}

}  // namespace
