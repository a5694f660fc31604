/// The proof of the wipe promise: what it works on, and how each piece of it runs.
#ifndef WIPEPROOF_PROOF_H
#define WIPEPROOF_PROOF_H

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <type_traits>

#include <memoryscan/memoryscan.h>
#include <support/machinetest.h>
#include <vlhostkit/securelist.h>
#include <vlhostkit/securestring.h>

#include "heapwatch.h"

namespace wipeproof {

/// False in the control program, whose library is built with a wipe that does nothing: there each piece of the proof
/// must find the copies whose absence it asserts elsewhere.
#ifdef WIPEPROOF_CONTROL
inline constexpr bool kWipes = false;
#else
inline constexpr bool kWipes = true;
#endif

/// Whether the platform zeroes what it releases itself, as the stand-in does. Then only Windows shows what the library
/// does before a release, and elsewhere the proof is in the buffers that are wiped and kept.
#ifdef _WIN32
inline constexpr bool kPlatformWipes = false;
#else
inline constexpr bool kPlatformWipes = true;
#endif

/// A string resource of the program: a text that is longer than the secret, with "%s" in it. And one that is not there.
inline constexpr UINT kTextId = 101;
inline constexpr UINT kMissingId = 102;

/// What an operation is given: a secret, and questions to ask on the way. Only one program text of the operation is
/// needed for all proofs, since the questions are asked by some of them only.
class Stage {
 public:
  Stage(const memoryscan::Secret& secret, bool asked) : secret_(secret), asked_(asked) {}

  const memoryscan::Secret& secret() const { return secret_; }

  /// Asserts that the secret is found now: an object of the operation holds it. The caller's own copies have ended.
  void expectAlive() const;
  /// Asserts that it is not, although the objects that held it are alive.
  void expectGone() const;

 private:
  const memoryscan::Secret& secret_;
  bool asked_;
};

/// Does one thing with a secret, and ends all objects that it made.
struct Operation {
  const char* name;
  std::function<void(const Stage& stage)> run;
  /// Who has the memory: string cores; blocks that are all promised to be zeroed, whole; or the platform, whose
  /// allocations are not watched.
  enum class Memory { ofCores, ofBlocks, ofPlatform } memory = Memory::ofCores;
};
inline void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

class WipeProof : public support::MachineTest, public testing::WithParamInterface<Operation> {
 protected:
  void SetUp() override;
};

inline constexpr auto kNameOf = [](const auto& info) { return info.param.name; };

/// A string of the secret. The caller's copy has ended.
template <class String>
String stringOf(const Stage& stage) {
  using Char = std::remove_reference_t<decltype(*std::declval<String>().GetBuffer())>;
  return String(static_cast<const Char*>(memoryscan::Revealed<Char>(stage.secret()).get()));
}

template <class String, class Act>
void actOn(String& text, const Stage& stage, const Act& act) {
  if constexpr (std::is_invocable_v<Act, String&>) {
    act(text);
  } else {
    act(text, stage);
  }
}

/// The run of an operation that does `use` with a string of the secret, which holds it afterwards also.
template <class String = CSecStr, class Use>
auto keeping(Use use) {
  return [use](const Stage& stage) {
    auto text = stringOf<String>(stage);
    actOn(text, stage, use);
    stage.expectAlive();
  };
}
/// That of one after whose `change` it holds another text.
template <class String = CSecStr, class Change>
auto changing(Change change) {
  return [change](const Stage& stage) {
    auto text = stringOf<String>(stage);
    actOn(text, stage, change);
    stage.expectGone();
  };
}
/// That of one that makes another string with `derive` and lets the first go.
template <class String = CSecStr, class Derive>
auto deriving(Derive derive) {
  return [derive](const Stage& stage) {
    auto text = stringOf<String>(stage);
    const String derived = derive(text);
    text.Empty();
    stage.expectAlive();
  };
}

/// Overwrites what ended calls have left on the stack, then expects no copy (in the control program: a copy).
void expectNoCopy(const memoryscan::Secret& secret);

}  // namespace wipeproof

#endif
