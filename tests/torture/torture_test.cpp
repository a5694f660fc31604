// Every exported function with its n-th platform call failing, and its n-th allocation, once and for ever after, for
// n = 1, 2, ... until a run has no n-th. A point is named in the messages of its failures, and runs alone if the
// environment's VL_FAULT_POINT is that name: "vlGetUIMode 2", "vlGetUIMode allocation 2 for ever".
#include <support/allocfault.h>
#include <support/logcapture.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "bench.h"

namespace torture {
namespace {

struct Outcome {
  long result = 0;
  std::string_view thrown;
  bool operator==(const Outcome&) const = default;
};

struct Made {
  Outcome outcome;
  Parts before, after;
  std::vector<support::LogRecord> records;
};

class Torture : public Bench, public testing::WithParamInterface<Row> {
 protected:
  static void TearDownTestSuite() {
    std::printf("torture: %d operations, %d call points, %d allocation points\n", operations_, points_[0], points_[1]);
    // A gate that lets all calls pass shows in the rows. Memory that never fails does not.
    const bool one = std::getenv("VL_FAULT_POINT") != nullptr;
    const bool all = operations_ > 150 && !one;
    EXPECT_TRUE(points_[1] > (support::kCountsMalloc ? 500 : 100) || !all);
    EXPECT_TRUE(points_[0] + points_[1] != 0 || !one) << "There is no such fault point.";
    RecordProperty("operations", operations_);
    RecordProperty("callPoints", points_[0]);
    RecordProperty("allocationPoints", points_[1]);
  }

  // The name of a call in both widths.
  static std::string bare(std::string name) {
    const bool hasWidth = name.size() > 1 && (name.back() == 'A' || name.back() == 'W') && std::islower(name.end()[-2]);
    return hasWidth ? name.substr(0, name.size() - 1) : name;
  }

  template <class Arm, class Disarm>
  Made perform(Arm arm, Disarm disarm) {
    const auto see = [this] { return parts(row.observe ? row.observe(*this) : ""); };
    prepare();
    if (row.prepare) {
      row.prepare(*this);
    }
    Made made;
    made.before = see();
    log.take();
    SetLastError(support::kUntouchedError);
    arm();
    made.outcome.thrown = securetext::outcomeOf([&] { made.outcome.result = row.call(*this); });
    disarm();
    made.records = log.take();
    made.after = see();
    release();
    expectNothingOpen();
    EXPECT_TRUE(memory.clean());
    return made;
  }

  bool isWhole(const Made& made) const { return made.outcome == whole.outcome; }

  void expectExit(const Made& made) const {
    std::wstring exit = row.exit;
    if (exit.empty() || made.outcome.thrown != securetext::kDone || (!isWhole(made) && !row.promise->exitOfFailure)) {
      return;
    }
    const auto put = [&](std::wstring_view mark, const auto& text) {
      if (const auto at = exit.find(mark); at != std::wstring::npos) {
        exit.replace(at, mark.size(), std::wstring(text.begin(), text.end()));
      }
    };
    wchar_t hex[16];
    std::swprintf(hex, std::size(hex), L"%x", static_cast<unsigned>(made.outcome.result));
    put(L"$", row.function());
    put(L"%d", std::to_string(made.outcome.result));
    put(L"%x", std::wstring(hex));
    put(L"%b", std::string(made.outcome.result != 0 ? "true" : "false"));
    ASSERT_FALSE(made.records.empty());
    const std::wstring& last = made.records.back().text;
    EXPECT_TRUE(row.exit[0] == L'$' ? last == exit : last.ends_with(exit)) << testing::PrintToString(last);
  }

  static void expectNoUserNames(const Made& made) {
    for (const support::LogRecord& record : made.records) {
      std::string bytes(record.data.begin(), record.data.end());
      std::erase(bytes, '\0');  // so that both widths look alike
      bytes.append(record.text.begin(), record.text.end());
      for (const char* const name : {"Quetzalcoatl", "Xolotl", "hunter2"}) {
        EXPECT_EQ(bytes.find(name), std::string::npos) << testing::PrintToString(record);
      }
    }
  }

  bool isDocumented(const Outcome& outcome, const std::string& failed, bool allocation, bool forEver) const {
    const Promise& promise = *row.promise;
    if (outcome.thrown != securetext::kDone) {
      return allocation
                 ? promise.throws && (outcome.thrown == securetext::kMemory || outcome.thrown == securetext::kBadAlloc)
                 : outcome.thrown == promise.thrown;
    }
    if (allocation) {
      return outcome.result == 8;
    }
    const auto own = promise.numbers.find(failed);
    const bool general = std::count(promise.failures.begin(), promise.failures.end(), outcome.result) != 0;
    const bool ofAnyCall = std::any_of(promise.numbers.begin(), promise.numbers.end(),
                                       [&](const auto& number) { return number.second == outcome.result; });
    return forEver ? general || ofAnyCall : own != promise.numbers.end() ? outcome.result == own->second : general;
  }

  void check(const Made& made, const std::string& failed, bool allocation, bool forEver) const {
    const std::string outcome = std::to_string(made.outcome.result) + ' ' + std::string(made.outcome.thrown);
    EXPECT_TRUE(isWhole(made) ? failed.empty() || !allocation
                              : !failed.empty() && isDocumented(made.outcome, failed, allocation, forEver))
        << "ended in " << outcome << ", which the row does not promise";
    const Parts& expected = isWhole(made) ? whole.after : made.before;
    const unsigned loose = isWhole(made) ? row.promise->varying : kAll & ~row.promise->untouched;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const bool empty = made.after[i].empty() && row.promise->emptied;
      EXPECT_TRUE(made.after[i] == expected[i] || (loose >> i & 1) != 0 || (empty && !isWhole(made)))
          << "part " << i << " after " << outcome << ": " << made.after[i].c_str() << " for " << expected[i].c_str();
    }
    expectExit(made);
    expectNoUserNames(made);
  }

  void sweep(bool allocation, bool forEver) {
    const char* const only = std::getenv("VL_FAULT_POINT");
    std::set<std::string> decisive;
    std::string failed = "none";
    for (int n = 1; n < 1000 && !failed.empty(); ++n) {
      const std::string point =
          row.name + (allocation ? " allocation " : " ") + std::to_string(n) + (forEver ? " for ever" : "");
      if (only != nullptr && point != only) {
        continue;
      }
      std::optional<support::AllocFault> fault;
      const Made made = perform(
          [&] {
            if (allocation) {
              fault.emplace(n, forEver ? support::AllocFault::Span::forEver : support::AllocFault::Span::once);
            } else {
              faults().watch();
              faults().failAny(n, forEver ? vlplatform::FaultSpan::forEver : vlplatform::FaultSpan::once, kSweepCode);
            }
          },
          [&] {
            failed = allocation ? (fault->end() ? "allocation" : "") : bare(faults().callName(n));
            faults().reset();
          });
      SCOPED_TRACE("fault point \"" + point + "\" " + failed);
      check(made, failed, allocation, forEver);
      points_[allocation] += !failed.empty();
      if (!isWhole(made)) {
        decisive.insert(failed);
      }
    }
    EXPECT_TRUE(failed.empty() || only != nullptr) << row.name << " does not end";
    if (!allocation && !forEver && only == nullptr) {
      std::istringstream words(row.decisive);
      EXPECT_EQ(decisive, std::set<std::string>(std::istream_iterator<std::string>(words), {}))
          << "which calls decide: no gate in one, or not in the row";
    }
  }

  support::LogCapture log;
  const Row& row = GetParam();
  Made whole;
  static inline int operations_ = 0;
  static inline int points_[2] = {};
};

std::vector<Row> allRows() {
  std::vector<Row> rows = flatRows();
  const std::vector<Row> classes = classRows();
  rows.insert(rows.end(), classes.begin(), classes.end());
  return rows;
}

TEST_P(Torture, EndsAsDocumented) {
  whole = perform([] {}, [] {});
  check(whole, "", false, false);
  for (const bool allocation : {false, true}) {
    for (const bool forEver : {false, true}) {
      sweep(allocation, forEver);
    }
  }
  ++operations_;
}

INSTANTIATE_TEST_SUITE_P(Rows, Torture, testing::ValuesIn(allRows()), [](const auto& tested) {
  std::string name = tested.param.name + '_' + std::to_string(tested.index);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
  return name;
});

// Of the list of exports: each function has a row of its own, and each class one at least.
TEST(TortureRows, NothingIsLeftOut) {
  std::set<std::string> functions;
  for (const Row& row : allRows()) {
    functions.insert(row.function());
  }
  int lines = 0;
  std::ifstream list(VL_EXPORTS);
  for (std::string line; std::getline(list, line); ++lines) {
    const std::string framework = "VL::Framework::";
    line.erase(0, line.starts_with(framework) ? framework.size() : 0);
    std::string name = line.substr(0, line.find('('));
    const bool wide = line.find("<wchar_t") != std::string::npos;
    if (name.find("::") != std::string::npos) {
      name = name.substr(0, name.find("::"));
    } else if (name.starts_with("operator")) {
      name = "CSecStr";
    } else if (line.find("std::allocator") != std::string::npos) {
      name += wide ? "(std::wstring)" : "(std::string)";
    }
    EXPECT_TRUE(functions.contains(name)) << line << " has no row";
  }
  EXPECT_GT(lines, 150);
}

}  // namespace
}  // namespace torture
