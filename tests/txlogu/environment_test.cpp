#include <gtest/gtest.h>
#include <txlogu/txlogu.h>

#include <map>
#include <thread>

#include "child.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class Environment : public testing::Test {
 protected:
  ~Environment() override { setTxlog(""); }

  /// The lines that a run of txlog_emit leaves on standard error.
  Lines standardErrorOf(const fs::path& txlog, const std::string& arguments) {
    setTxlog(txlog);
    EXPECT_TRUE(runEmit(arguments, folder / u8"stderr"));
    return linesOf(folder / u8"stderr");
  }

  fs::path toFile(const fs::path& file) const {
    fs::path value = "file=";
    value += file;
    return value;
  }

  TemporaryFolder folder;
};

/// The part of a record's line behind time, process and thread, whose form is checked.
std::string recordOf(const std::string& line) {
  const std::string form = "dddd-dd-ddTdd:dd:dd.dddZ ";
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  bool matches = line.size() > form.size();
  for (std::size_t index = 0; matches && index < form.size(); ++index) {
    matches = form[index] == 'd' ? isDigit(line[index]) : line[index] == form[index];
  }
  std::size_t position = form.size();
  for (int number = 0; matches && number < 2; ++number) {
    const std::size_t begin = position;
    while (position < line.size() && isDigit(line[position])) ++position;
    matches = position > begin && position < line.size() && line[position++] == ' ';
  }
  return matches ? line.substr(position) : "<no record> " + line;
}

Lines recordsOf(const Lines& lines) {
  Lines records;
  for (const std::string& line : lines) records.push_back(recordOf(line));
  return records;
}

TEST_F(Environment, NothingIsLoggedUnasked) {
  EXPECT_EQ(standardErrorOf("", "levels"), Lines{});
  EXPECT_EQ(standardErrorOf(" ; ", "levels"), Lines{});
}

TEST_F(Environment, AllLevelsToStandardError) {
  EXPECT_EQ(recordsOf(standardErrorOf("stderr", "levels")),
            (Lines{"note A text", "note B text", "error A text", "error B text", "trace A text", "trace B text",
                   "entry A text", "entry B text", "exit A text", "exit B text", "level5 A text",
                   "level-7 A label \\[2 bytes] 01 ab"}));
}

TEST_F(Environment, FiltersByLevelAndTag) {
  EXPECT_EQ(recordsOf(standardErrorOf(" STDERR ;; Level= error , EXIT ;tag=B;", "levels")),
            (Lines{"error B text", "exit B text"}));
  EXPECT_EQ(recordsOf(standardErrorOf("level=note;stderr;level=entry;tag=A,C", "levels")),
            (Lines{"note A text", "entry A text"}));
  EXPECT_EQ(standardErrorOf("stderr;tag=b,AB", "levels"), Lines{}) << "tags differ by case and length";
}

TEST_F(Environment, BadItemsAreNamedAndTheRestCounts) {
  EXPECT_EQ(standardErrorOf("stderr;bad\nitem\\;level=eror,error;tag=B;file=;level=;stderrr", "levels").size(), 6u);
  const Lines lines = standardErrorOf("stderr;bad\nitem\\;level=eror,error;tag=B;file=", "levels");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "txlogu: TXLOG: item not understood: bad\\nitem\\\\");
  EXPECT_EQ(lines[1], "txlogu: TXLOG: level not understood: eror");
  EXPECT_EQ(lines[2], "txlogu: TXLOG: item not understood: file=");
  EXPECT_EQ(recordOf(lines[3]), "error B text");
  for (const char* const unknown : {"level=eror", "tag=,"}) {
    EXPECT_EQ(standardErrorOf(std::string("stderr;") + unknown, "levels").size(), 1u) << unknown;
  }
  EXPECT_EQ(standardErrorOf("level=error", "levels"), Lines{"txlogu: TXLOG names no destination: level=error"});
  EXPECT_EQ(standardErrorOf("stderr;tag=" + std::string(5000, 'x'), "levels").size(), 1u);
}

TEST_F(Environment, NoTextForgesARecord) {
  const Lines records = recordsOf(standardErrorOf("stderr", "texts"));
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[0],
            "error t\\n2\\u0020[x]\\u0020\\\\ "
            "a\\n2026-01-01T00:00:00.000Z 1 1 error t forged\\r\\t\\u001b[2J\\u007f\\\\n");
  EXPECT_EQ(records[1],
            "error t \\u0085|\\u2028|\\u2029|\\u202e|\\u2066|\\u009b|"
            "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80");
  EXPECT_EQ(records[2], "error t <\xEF\xBF\xBD-\xEF\xBF\xBD>");
  std::string longest = "error " + std::string(TXLOG_MAX_TAG, 'T') + "\\[cut] ";
  for (int index = 0; index < TXLOG_MAX_TEXT; ++index) longest += "\\u2028";
  EXPECT_EQ(records[3], longest + "\\[cut]");
}

TEST_F(Environment, DataIsHexUnderItsLabel) {
  std::string hex;
  for (int index = 0; index < TXLOG_MAX_DATA; ++index) hex += " 5a";
  EXPECT_EQ(
      recordsOf(standardErrorOf("stderr", "data")),
      (Lines{"trace t l\\\\[9 bytes]\\n \\[3 bytes] 00 ff 0a", "trace t none \\[0 bytes]", "trace t null \\[no data]",
             "trace t negative \\[no data]", "trace t long \\[515 bytes, last 3 left out]" + hex}));
}

TEST_F(Environment, FilesAreAppendedTo) {
  const fs::path file = folder / u8"l\u00f6g file.txt";
  for (int run = 1; run <= 2; ++run) {
    EXPECT_EQ(standardErrorOf(toFile(file), "levels"), Lines{});
    EXPECT_EQ(linesOf(file).size(), 12u * run);
  }
  EXPECT_EQ(recordOf(linesOf(file)[12]), "note A text");
}

TEST_F(Environment, LateRecordsStillArrive) {
  const fs::path file = folder / u8"log";
  EXPECT_EQ(standardErrorOf(toFile(file), "late"), Lines{});
  EXPECT_EQ(recordsOf(linesOf(file)), Lines{"note t late"});
}

// Two processes with several threads each: every line is whole and none is missing.
TEST_F(Environment, LinesOfThreadsAndProcessesDoNotMix) {
  const fs::path file = folder / u8"log";
  setTxlog(toFile(file));
  std::thread other([this] { EXPECT_TRUE(runEmit("threads 3 300", folder / u8"stderr1")); });
  EXPECT_TRUE(runEmit("threads 3 300", folder / u8"stderr2"));
  other.join();
  std::string filler;
  for (int index = 0; index < 200; ++index) filler += "\xC3\xA4";
  std::map<std::string, int> counts;
  for (const std::string& line : linesOf(file)) ++counts[recordOf(line)];
  EXPECT_EQ(counts.size(), 900u);
  for (int thread = 0; thread < 3; ++thread) {
    for (int record = 0; record < 300; ++record) {
      EXPECT_EQ(counts["trace t <" + std::to_string(thread) + " " + std::to_string(record) + " " + filler + ">"], 2);
    }
  }
}

}  // namespace
