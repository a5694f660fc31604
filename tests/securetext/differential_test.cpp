// Long sequences of operations, done to secure and to standard strings.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "model.h"

namespace securetext {
namespace {

TEST(SecureTextDifferential, RandomSequences) {
  std::mt19937 random(19870412);
  std::size_t operations = 0;
  for (int sequence = 0; operations < 100'000; ++sequence) {
    std::vector<std::uint8_t> bytes(1 + random() % 4000);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    const model::Result result = model::run(bytes);
    ASSERT_EQ(result.mismatch, "") << "sequence " << sequence;
    operations += result.operations;
  }
}

}  // namespace
}  // namespace securetext
