/// Looks for copies of a secret text in all memory that the process can write to.
#ifndef MEMORYSCAN_MEMORYSCAN_H
#define MEMORYSCAN_MEMORYSCAN_H

#include <array>
#include <cstddef>
#include <iosfwd>

namespace memoryscan {

/// A random text of letters and digits that stands in memory in encoded form only. No character occurs twice, whatever
/// its case, so that one look at a table tells where in the text a byte of memory may belong, and nothing that searches
/// for the text has to hold it.
class Secret {
 public:
  static constexpr std::size_t kLength = 36;
  /// As many characters of the text in a row, in either case, count as a copy of it.
  static constexpr std::size_t kWindow = 8;

  Secret();

  /// Writes the text, without a terminator. The caller wipes it.
  template <class Char>
  void reveal(Char* target) const;

  /// The index of a character of the text, in either case, plus 1; 0 for other bytes.
  unsigned place(unsigned char byte) const { return places_[byte]; }

  /// Whether a block holds a copy of at least a window of the text, in characters of 1, 2 or 4 bytes, at any address.
  bool isIn(const void* block, std::size_t bytes) const;

 private:
  std::array<unsigned char, kLength> encoded_;
  std::array<unsigned char, kLength> key_;
  std::array<unsigned char, 256> places_{};
};

/// The text of a secret in the caller's hands: terminated, and wiped at the end of its scope or by end().
template <class Char>
class Revealed {
 public:
  explicit Revealed(const Secret& secret) { secret.reveal(text_); }
  ~Revealed() { end(); }
  Revealed(const Revealed&) = delete;
  Revealed& operator=(const Revealed&) = delete;

  void end() {
    for (volatile Char& character : text_) {
      character = Char{};
    }
  }
  Char* get() { return text_; }
  static constexpr int length() { return static_cast<int>(Secret::kLength); }

 private:
  Char text_[Secret::kLength + 1] = {};
};

/// A place where a copy was found.
struct Sighting {
  const void* address = nullptr;
  std::size_t characters = 0;  ///< how many of the text's in a row
  std::size_t width = 0;       ///< bytes a character
  char region[64] = {};        ///< what the system calls this memory
};

/// What a scan found. Holds no heap memory.
struct ScanResult {
  static constexpr std::size_t kKept = 8;

  std::size_t count = 0;
  std::array<Sighting, kKept> first{};  ///< the first ones of `count`
  std::size_t regions = 0;
  std::size_t bytes = 0;
};

/// For GoogleTest's messages.
void PrintTo(const ScanResult& result, std::ostream* out);

/// Searches all readable and writable memory of the process: heaps, the stacks of all threads, static data of all
/// modules, mappings. Not searched are ranges of a gigabyte and more, which are the sanitizers' shadow and hold no
/// program data. No other thread may release memory meanwhile.
ScanResult scanMemory(const Secret& secret);

/// Searches the part of this thread's stack that its calls have left behind.
ScanResult scanDeadStack(const Secret& secret);

/// Overwrites the stack that ended calls have left behind, 256 KiB from the caller's frame, and the vector registers.
/// No code can promise what becomes of registers, nor of the slots that the compiler and the lazy binding of the
/// dynamic loader save them in: a copy there lasts until the next few calls overwrite it. Frames in use are not
/// touched.
void scrubDeadStack();

}  // namespace memoryscan

#endif
