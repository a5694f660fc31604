#include <memoryscan/memoryscan.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <ostream>
#include <random>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

// What reads memory that is not its own: neither an error nor a race.
#define MEMORYSCAN_READS_ANYTHING [[gnu::noinline]] __attribute__((no_sanitize("address", "thread", "undefined")))

namespace memoryscan {
namespace {

struct Region {
  const unsigned char* begin = nullptr;
  const unsigned char* end = nullptr;
  char name[sizeof Sighting::region] = {};
};

// Static, so that listing the regions does not change them.
constinit std::array<Region, 16384> regions{};
constinit std::size_t regionCount = 0;

constexpr std::size_t kShadow = std::size_t{1} << 30;

void addRegion(std::uintptr_t begin, std::uintptr_t end, const char* name) {
  if (end - begin < kShadow && regionCount < regions.size()) {
    Region& region = regions[regionCount++];
    region.begin = reinterpret_cast<const unsigned char*>(begin);
    region.end = reinterpret_cast<const unsigned char*>(end);
    std::snprintf(region.name, sizeof region.name, "%s", name);
  }
}

#ifdef _WIN32

// Wine keeps the texts that it would trace, OLE strings among them, in a page of its own behind each thread's
// environment block. Windows has nothing of the kind, and nobody but Wine can clear it.
bool isWinesTracePage(std::uintptr_t begin, std::uintptr_t end, std::uintptr_t& page) {
  static const bool wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  std::uintptr_t environment = 0;
#ifdef __x86_64__
  __asm__("movq %%gs:0x30, %0" : "=r"(environment));  // NtCurrentTeb, which the compiler's bounds check trips over
#else
  __asm__("movl %%fs:0x18, %0" : "=r"(environment));
#endif
  page = environment + (sizeof environment == 8 ? 0x3000 : 0x1000);
  return wine && begin <= page && page + 0x1000 <= end;
}

void addWritable(std::uintptr_t begin, std::uintptr_t end, const char* name) {
  std::uintptr_t page = 0;
  if (isWinesTracePage(begin, end, page)) {
    addRegion(begin, page, name);
    addRegion(page + 0x1000, end, name);
  } else {
    addRegion(begin, end, name);
  }
}

void listRegions() {
  constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  regionCount = 0;
  MEMORY_BASIC_INFORMATION info;
  for (const char* address = nullptr; VirtualQuery(address, &info, sizeof info) == sizeof info;
       address = static_cast<const char*>(info.BaseAddress) + info.RegionSize) {
    if (info.State == MEM_COMMIT && (info.Protect & kWritable) != 0 && (info.Protect & PAGE_GUARD) == 0) {
      const auto begin = reinterpret_cast<std::uintptr_t>(info.BaseAddress);
      addWritable(begin, begin + info.RegionSize,
                  info.Type == MEM_IMAGE    ? "image"
                  : info.Type == MEM_MAPPED ? "mapped"
                                            : "private");
    }
  }
}

#else

// One line of the list of mappings: begin-end rwxp offset device inode name.
void addMapping(const char* line) {
  unsigned long begin = 0;
  unsigned long end = 0;
  char access[5] = {};
  int nameAt = 0;
  // NOLINTNEXTLINE(cert-err34-c): the kernel's own numbers fit
  if (std::sscanf(line, "%lx-%lx %4s %*s %*s %*s %n", &begin, &end, access, &nameAt) == 3 && access[0] == 'r' &&
      access[1] == 'w') {
    addRegion(begin, end, nameAt == 0 || line[nameAt] == '\0' ? "anonymous" : line + nameAt);
  }
}

void listRegions() {
  regionCount = 0;
  const int file = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
  static char line[4608];
  std::size_t length = 0;
  static char piece[4096];
  for (ssize_t bytes = 0; (bytes = read(file, piece, sizeof piece)) > 0;) {
    for (const char* at = piece; at != piece + bytes; ++at) {
      if (*at == '\n') {
        line[length] = '\0';
        addMapping(line);
        length = 0;
      } else if (length < sizeof line - 1) {
        line[length++] = *at;
      }
    }
  }
  close(file);
}

#endif

// Whether a character of `width` bytes, low byte first, has nothing in its upper bytes.
MEMORYSCAN_READS_ANYTHING bool isNarrow(const unsigned char* at, std::size_t width) {
  for (std::size_t i = 1; i < width; ++i) {
    if (at[i] != 0) {
      return false;
    }
  }
  return true;
}

// How many characters of the text stand in a row from `at` on.
MEMORYSCAN_READS_ANYTHING std::size_t runAt(const Secret& secret, const unsigned char* at, const unsigned char* end,
                                            std::size_t width) {
  std::size_t run = 0;
  unsigned expected = secret.place(*at);
  while (static_cast<std::size_t>(end - at) >= width && expected != 0 && secret.place(*at) == expected &&
         isNarrow(at, width)) {
    ++run;
    ++expected;
    at += width;
  }
  return run;
}

MEMORYSCAN_READS_ANYTHING void scanRange(const Secret& secret, const unsigned char* begin, const unsigned char* end,
                                         const char* name, ScanResult& result) {
  result.bytes += static_cast<std::size_t>(end - begin);
  ++result.regions;
  for (const unsigned char* at = begin; at < end; ++at) {
    // Most memory is zero.
    while (reinterpret_cast<std::uintptr_t>(at) % 8 == 0 && end - at >= 8 &&
           *reinterpret_cast<const volatile std::uint64_t*>(at) == 0) {
      at += 8;
    }
    if (at == end) {
      break;
    }
    if (secret.place(*at) == 0) {
      continue;
    }
    for (const std::size_t width : {1, 2, 4}) {
      const std::size_t run = runAt(secret, at, end, width);
      if (run < Secret::kWindow) {
        continue;
      }
      if (result.count < result.first.size()) {
        Sighting& sighting = result.first[result.count];
        sighting.address = at;
        sighting.characters = run;
        sighting.width = width;
        std::snprintf(sighting.region, sizeof sighting.region, "%s", name);
      }
      ++result.count;
      at += run * width - 1;
      break;
    }
  }
}

}  // namespace

Secret::Secret() {
  std::random_device random;
  std::array<unsigned char, kLength> order;
  std::iota(order.begin(), order.end(), static_cast<unsigned char>(0));
  std::shuffle(order.begin(), order.end(), random);
  for (std::size_t i = 0; i < kLength; ++i) {
    const bool letter = i < 26;
    const auto lower = static_cast<unsigned char>(letter ? 'a' + i : '0' + (i - 26));
    const auto upper = static_cast<unsigned char>(letter ? 'A' + i : lower);
    const std::size_t place = order[i];
    places_[lower] = places_[upper] = static_cast<unsigned char>(place + 1);
    // Bytes above 0x7f: the encoded text is no text.
    key_[place] = static_cast<unsigned char>(0x80 | random() % 0x80);
    encoded_[place] = static_cast<unsigned char>((random() % 2 == 0 ? lower : upper) ^ key_[place]);
  }
}

template <class Char>
void Secret::reveal(Char* target) const {
  // Character by character, so that no register holds a row of them.
  volatile Char* const to = target;
  const volatile unsigned char* const encoded = encoded_.data();
  const volatile unsigned char* const key = key_.data();
  for (std::size_t i = 0; i < kLength; ++i) {
    to[i] = static_cast<Char>(encoded[i] ^ key[i]);
  }
}
template void Secret::reveal(char*) const;
template void Secret::reveal(wchar_t*) const;
template void Secret::reveal(char16_t*) const;
template void Secret::reveal(char32_t*) const;

bool Secret::isIn(const void* block, std::size_t bytes) const {
  ScanResult result;
  const auto* const begin = static_cast<const unsigned char*>(block);
  scanRange(*this, begin, begin + bytes, "block", result);
  return result.count != 0;
}

void PrintTo(const ScanResult& result, std::ostream* out) {
  *out << result.count << " copies in " << result.bytes << " bytes of " << result.regions << " regions";
  for (std::size_t i = 0; i < std::min(result.count, result.first.size()); ++i) {
    const Sighting& sighting = result.first[i];
    *out << "\n  " << sighting.characters << " characters of " << sighting.width << " bytes at " << sighting.address
         << " in " << sighting.region;
  }
}

ScanResult scanMemory(const Secret& secret) {
  ScanResult result;
  listRegions();
  for (std::size_t i = 0; i < regionCount; ++i) {
    scanRange(secret, regions[i].begin, regions[i].end, regions[i].name, result);
  }
  return result;
}

ScanResult scanDeadStack(const Secret& secret) {
  ScanResult result;
  listRegions();
  const auto* const here = static_cast<const unsigned char*>(__builtin_frame_address(0));
  for (std::size_t i = 0; i < regionCount; ++i) {
    if (here >= regions[i].begin && here < regions[i].end) {
      scanRange(secret, regions[i].begin, here, "dead stack", result);
    }
  }
  return result;
}

#ifdef __i386__
__attribute__((target("sse2")))  // so that the compiler knows of the registers, which the platform's moves use anyway
#endif
[[gnu::noinline]] __attribute__((no_sanitize("address", "thread", "undefined"))) void
scrubDeadStack() {
  unsigned char area[256 * 1024];
  std::memset(area, 0, sizeof area);
  __asm__ __volatile__("" : : "r"(area) : "memory");
#if defined(__x86_64__) || defined(__i386__)
  // The ones that no callee preserves, and that moves of text go through.
  __asm__ __volatile__(
      "pxor %%xmm0, %%xmm0\n\tpxor %%xmm1, %%xmm1\n\tpxor %%xmm2, %%xmm2\n\t"
      "pxor %%xmm3, %%xmm3\n\tpxor %%xmm4, %%xmm4\n\tpxor %%xmm5, %%xmm5"
      :
      :
      : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5");
#ifdef __i386__
  // Ones, since what is saved on the way into the system leaves out registers that are all zero, and older text stays.
  __asm__ __volatile__(
      "pcmpeqd %%xmm0, %%xmm0\n\tpcmpeqd %%xmm1, %%xmm1\n\tpcmpeqd %%xmm2, %%xmm2\n\tpcmpeqd %%xmm3, %%xmm3\n\t"
      "pcmpeqd %%xmm4, %%xmm4\n\tpcmpeqd %%xmm5, %%xmm5\n\tpcmpeqd %%xmm6, %%xmm6\n\tpcmpeqd %%xmm7, %%xmm7"
      :
      :
      : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7");
#elif !defined(_WIN32)
  __asm__ __volatile__(
      "pxor %%xmm6, %%xmm6\n\tpxor %%xmm7, %%xmm7\n\tpxor %%xmm8, %%xmm8\n\tpxor %%xmm9, %%xmm9\n\t"
      "pxor %%xmm10, %%xmm10\n\tpxor %%xmm11, %%xmm11\n\tpxor %%xmm12, %%xmm12\n\tpxor %%xmm13, %%xmm13\n\t"
      "pxor %%xmm14, %%xmm14\n\tpxor %%xmm15, %%xmm15"
      :
      :
      : "xmm6", "xmm7", "xmm8", "xmm9", "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");
#endif
  if (__builtin_cpu_supports("avx")) {
    __asm__ __volatile__("vzeroupper");
  }
#if defined(__x86_64__) && !defined(_WIN32)
  if (__builtin_cpu_supports("avx512f")) {
    __asm__ __volatile__(
        "vpxorq %zmm16, %zmm16, %zmm16\n\tvpxorq %zmm17, %zmm17, %zmm17\n\tvpxorq %zmm18, %zmm18, %zmm18\n\t"
        "vpxorq %zmm19, %zmm19, %zmm19\n\tvpxorq %zmm20, %zmm20, %zmm20\n\tvpxorq %zmm21, %zmm21, %zmm21\n\t"
        "vpxorq %zmm22, %zmm22, %zmm22\n\tvpxorq %zmm23, %zmm23, %zmm23\n\tvpxorq %zmm24, %zmm24, %zmm24\n\t"
        "vpxorq %zmm25, %zmm25, %zmm25\n\tvpxorq %zmm26, %zmm26, %zmm26\n\tvpxorq %zmm27, %zmm27, %zmm27\n\t"
        "vpxorq %zmm28, %zmm28, %zmm28\n\tvpxorq %zmm29, %zmm29, %zmm29\n\tvpxorq %zmm30, %zmm30, %zmm30\n\t"
        "vpxorq %zmm31, %zmm31, %zmm31");
  }
#endif
#endif
}

}  // namespace memoryscan
