#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "corpmachine.h"
#include "selfcall.h"
#include "text.h"
#include "tour_caches.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kDomainCache = R"(HKLM\SOFTWARE\Velorin\System\DomainCache)";
constexpr const char* kUserCache = R"(HKLM\SOFTWARE\Velorin\System\UserCache)";

// A folder that is gone when the section ends.
class ScratchFolder {
 public:
  ScratchFolder() : path_((fs::temp_directory_path() / "hostkit-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) {
      throw fs::filesystem_error("no folder", path_, std::error_code(errno, std::generic_category()));
    }
  }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string file(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// Calls of new processes that share nothing but a machine's description and the file of its registry.
class Road {
 public:
  explicit Road(TourPage& page) : page_(page) { std::ofstream(folder_.file("corp.json")) << kCorpMachine; }

  void step(const std::string& label, std::vector<std::string> arguments, int expectedExit = 0) {
    arguments.insert(arguments.begin(),
                     {"--state", folder_.file("registry.reg"), "--machine", folder_.file("corp.json")});
    const SelfCall call = callSelf(arguments);
    if (call.exitCode == expectedExit) {
      page_.fact(label, shown(call.output));
    } else {
      page_.context().output.failure(label, shown(call.output), call.exitCode, Json::object({{"fact", label}}));
    }
  }

  // The library's functions make a key with its first value; what is wanted is the key alone.
  void makeKey(const std::string& label, const char* key) {
    step(label, {"reg", "write", key, "", "", "--type", "string"});
    step("and takes the value out again", {"reg", "delete", key, "--value", ""});
  }

 private:
  TourPage& page_;
  ScratchFolder folder_;
};

void walk(TourPage& page) {
  const std::vector<std::string> convert{"user", "convert", "alice@corp.example"};
  const std::vector<std::string> sid{"user", "sid", "alice", "--domain", "CORP"};
  const auto offline = [](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--offline");
    return arguments;
  };
  Road road(page);
  road.makeKey("An installer makes DomainCache", kDomainCache);
  road.makeKey("and UserCache in the same way", kUserCache);
  road.step("Off-line, before all", offline(convert), 1);
  road.step("On-line", convert);
  road.step("On-line", sid);
  road.step("Stored in DomainCache", {"reg", "read", kDomainCache, "corp.example"});
  road.step("Stored in UserCache", {"reg", "read", kUserCache, "alice.CORP"});
  road.step("Off-line", offline(convert));
  road.step("Off-line", offline(sid));
  road.step("Off-line, of the same suffix", offline({"user", "convert", "nobody@corp.example"}));
  road.step("Off-line, not asked before", offline({"user", "sid", "backup", "--domain", "CORP"}), 1);
}

}  // namespace

void tourCaches(TourPage& page) {
  page.title("Caches: the same questions on-line and off-line, each asked by a process of its own");
  try {
    walk(page);
  } catch (const fs::filesystem_error& error) {
    page.context().output.failure("A folder for the files", error.code().message(), error.code().value(),
                                  Json::object());
  }
}
