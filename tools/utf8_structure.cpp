// The structural UTF-8 test (tools/utf8_structure.h), checked a block at a time.
//
// The walk of the rule (a lead byte, then as many continuation bytes 10xxxxxx as it
// announces) is the same as one test on every byte at once: a byte is a continuation
// exactly when one of the three bytes before it asks for one. The byte just before asks
// when it is C0 or above (a lead of two bytes or more), the one two before when E0 or
// above, the one three before when F0 or above; F8 and above may not occur at all. Where
// the walk passes, each lead asks for exactly the bytes of its own sequence; where every
// byte passes the test, the walk finds each lead followed by what it announced. Bytes past
// the end count as zeros, which are no continuations, so a sequence cut off by the end
// fails. The versions below differ only in how many bytes they test at once; ASCII blocks
// need no test beyond whether a sequence is still open before them.
#include "tools/utf8_structure.h"

#include <bit>
#include <cstring>

#ifdef QM_UTF8_STRUCTURE_X86
#include <immintrin.h>
#endif

namespace Qm_tools::utf8_structure {

namespace {

constexpr std::uint64_t kHigh = 0x8080808080808080ull;

std::uint64_t LoadLittleEndian(const std::uint8_t* p) {
  std::uint64_t w;
  std::memcpy(&w, p, 8);
  if constexpr (std::endian::native == std::endian::big) w = __builtin_bswap64(w);
  return w;
}

// The rule on one word, byte k of the text in bits 8k..8k+7; every flag lives in the
// high bit of its byte. The leads of the word before carry over into this one.
class WordTest {
 public:
  void Step(std::uint64_t w) {
    const std::uint64_t b7 = w & kHigh, b6 = w << 1 & kHigh, b5 = w << 2 & kHigh,
                        b4 = w << 3 & kHigh, b3 = w << 4 & kHigh;
    const std::uint64_t two = b7 & b6, three = two & b5, four = three & b4;
    const std::uint64_t asked = (two << 8 | two_ >> 56) | (three << 16 | three_ >> 48) |
                                (four << 24 | four_ >> 40);
    error_ |= (asked ^ (b7 & ~b6)) | (four & b3);
    two_ = two;
    three_ = three;
    four_ = four;
  }
  // ASCII words in a row: fine unless a sequence was left open before them.
  void SkipAscii() {
    error_ |= two_ >> 56 | three_ >> 48 | four_ >> 40;
    two_ = three_ = four_ = 0;
  }
  bool Failed() const { return error_ != 0; }

 private:
  std::uint64_t two_ = 0, three_ = 0, four_ = 0, error_ = 0;
};

}  // namespace

bool Portable(const std::uint8_t* data, std::size_t size) {
  WordTest test;
  std::size_t i = 0;
  for (; size - i >= 32; i += 32) {
    const std::uint64_t w0 = LoadLittleEndian(data + i), w1 = LoadLittleEndian(data + i + 8),
                        w2 = LoadLittleEndian(data + i + 16), w3 = LoadLittleEndian(data + i + 24);
    if (((w0 | w1 | w2 | w3) & kHigh) == 0) {
      test.SkipAscii();
      continue;
    }
    test.Step(w0);
    test.Step(w1);
    test.Step(w2);
    test.Step(w3);
    if (test.Failed()) return false;
  }
  for (; size - i >= 8; i += 8) test.Step(LoadLittleEndian(data + i));
  // The last word, filled up with zeros; fewer than eight bytes, so whatever the last
  // sequence still asks for falls on a zero inside it.
  std::uint8_t last[8] = {};
  if (size > i) std::memcpy(last, data + i, size - i);
  test.Step(LoadLittleEndian(last));
  return !test.Failed();
}

#ifdef QM_UTF8_STRUCTURE_X86

// The vector form of the same test, a flag again in each byte's high bit: subtracting with
// saturation leaves the high bit set exactly for bytes at or above the limit plus 80.
//   asked:        (byte before - 40) | (byte two before - 60) | (byte three before - 70)
//   continuation: byte below C0 when read as signed, i.e. 80..BF
//   forbidden:    the largest byte seen, minus 78: F8 and above
// The bytes before are loaded again from one, two and three bytes back: loads are cheaper
// than shifting across vector lanes. So every block needs three readable bytes before it
// and whole blocks after; the first block and the last are copied into zeros for that
// (Edge), and data too short for both goes through the copy whole.
// The main loops take four blocks at once and look at their largest byte first. Below 80
// they are ASCII: only a sequence left open before them can fail. Below E0, with the three
// bytes before them, there are no leads of three or four bytes (nor forbidden bytes), and
// only the byte before can ask: half the work, for text in most European languages.
// They also ask for the data a few pages ahead: on the machines measured, the hardware's
// own prefetch fell behind a loop that does this much work per byte.

namespace {

constexpr std::size_t kPrefetchAhead = 4096;

// Copies `count` bytes from `from` with the three before it (zeros before the data) to
// `buffer` + 3 and zeros the rest of `size` bytes.
void Edge(std::uint8_t* buffer, std::size_t size, const std::uint8_t* data, std::size_t from,
          std::size_t count) {
  std::memset(buffer, 0, size);
  const std::size_t back = from < 3 ? from : 3;
  if (back + count != 0) std::memcpy(buffer + 3 - back, data + from - back, back + count);
}

void Prefetch(const std::uint8_t* p) {
  _mm_prefetch(reinterpret_cast<const char*>(p + kPrefetchAhead), _MM_HINT_T0);
}

__m128i Load16(const std::uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Errors and the largest byte so far, over 16-byte blocks.
struct Sse2Blocks {
  __m128i error = _mm_setzero_si128(), top = _mm_setzero_si128();

  void Add(const std::uint8_t* p) {
    const __m128i cur = Load16(p);
    const __m128i asked = _mm_or_si128(
        _mm_or_si128(_mm_subs_epu8(Load16(p - 1), _mm_set1_epi8(0x40)),
                     _mm_subs_epu8(Load16(p - 2), _mm_set1_epi8(0x60))),
        _mm_subs_epu8(Load16(p - 3), _mm_set1_epi8(0x70)));
    const __m128i continuation = _mm_cmplt_epi8(cur, _mm_set1_epi8(-0x40));
    error = _mm_or_si128(error, _mm_xor_si128(asked, continuation));
    top = _mm_max_epu8(top, cur);
  }
  // A block where no byte from three before it on is E0 or above.
  void AddBelowE0(const std::uint8_t* p) {
    const __m128i asked = _mm_subs_epu8(Load16(p - 1), _mm_set1_epi8(0x40));
    const __m128i continuation = _mm_cmplt_epi8(Load16(p), _mm_set1_epi8(-0x40));
    error = _mm_or_si128(error, _mm_xor_si128(asked, continuation));
  }
  bool Failed() const {
    return _mm_movemask_epi8(_mm_or_si128(error, _mm_subs_epu8(top, _mm_set1_epi8(0x78)))) != 0;
  }
};

// The largest byte of the four blocks at p.
__m128i Sse2Top(const std::uint8_t* p) {
  return _mm_max_epu8(_mm_max_epu8(Load16(p), Load16(p + 16)),
                      _mm_max_epu8(Load16(p + 32), Load16(p + 48)));
}

bool Sse2Ascii(__m128i top) { return _mm_movemask_epi8(top) == 0; }

bool Sse2BelowE0(__m128i top, const std::uint8_t* p) {
  top = _mm_max_epu8(top, Load16(p - 3));
  return _mm_movemask_epi8(_mm_subs_epu8(top, _mm_set1_epi8(0x60))) == 0;
}

__attribute__((target("avx2"))) __m256i Load32(const std::uint8_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

struct Avx2Blocks {
  __m256i error, top;

  __attribute__((target("avx2"))) Avx2Blocks()
      : error(_mm256_setzero_si256()), top(_mm256_setzero_si256()) {}

  __attribute__((target("avx2"))) void Add(const std::uint8_t* p) {
    const __m256i cur = Load32(p);
    const __m256i asked = _mm256_or_si256(
        _mm256_or_si256(_mm256_subs_epu8(Load32(p - 1), _mm256_set1_epi8(0x40)),
                        _mm256_subs_epu8(Load32(p - 2), _mm256_set1_epi8(0x60))),
        _mm256_subs_epu8(Load32(p - 3), _mm256_set1_epi8(0x70)));
    const __m256i continuation = _mm256_cmpgt_epi8(_mm256_set1_epi8(-0x40), cur);
    error = _mm256_or_si256(error, _mm256_xor_si256(asked, continuation));
    top = _mm256_max_epu8(top, cur);
  }
  __attribute__((target("avx2"))) void AddBelowE0(const std::uint8_t* p) {
    const __m256i asked = _mm256_subs_epu8(Load32(p - 1), _mm256_set1_epi8(0x40));
    const __m256i continuation = _mm256_cmpgt_epi8(_mm256_set1_epi8(-0x40), Load32(p));
    error = _mm256_or_si256(error, _mm256_xor_si256(asked, continuation));
  }
  __attribute__((target("avx2"))) bool Failed() const {
    return _mm256_movemask_epi8(
               _mm256_or_si256(error, _mm256_subs_epu8(top, _mm256_set1_epi8(0x78)))) != 0;
  }
};

__attribute__((target("avx2"))) __m256i Avx2Top(const std::uint8_t* p) {
  return _mm256_max_epu8(_mm256_max_epu8(Load32(p), Load32(p + 32)),
                         _mm256_max_epu8(Load32(p + 64), Load32(p + 96)));
}

__attribute__((target("avx2"))) bool Avx2Ascii(__m256i top) {
  return _mm256_movemask_epi8(top) == 0;
}

__attribute__((target("avx2"))) bool Avx2BelowE0(__m256i top, const std::uint8_t* p) {
  top = _mm256_max_epu8(top, Load32(p - 3));
  return _mm256_movemask_epi8(_mm256_subs_epu8(top, _mm256_set1_epi8(0x60))) == 0;
}

}  // namespace

bool Sse2(const std::uint8_t* data, std::size_t size) {
  alignas(16) std::uint8_t edge[3 + 48];
  Sse2Blocks blocks;
  if (size < 32) {
    Edge(edge, sizeof edge, data, 0, size);
    blocks.Add(edge + 3);
    blocks.Add(edge + 19);
    return !blocks.Failed();
  }
  Edge(edge, sizeof edge, data, 0, 16);
  blocks.Add(edge + 3);
  std::size_t i = 16;
  for (; size - i >= 64; i += 64) {
    const std::uint8_t* p = data + i;
    Prefetch(p);
    const __m128i top = Sse2Top(p);
    if (Sse2Ascii(top)) {
      blocks.Add(p);
      while (size - i >= 128 && Sse2Ascii(Sse2Top(data + i + 64))) {
        i += 64;
        Prefetch(data + i);
      }
      continue;
    }
    if (Sse2BelowE0(top, p)) {
      blocks.AddBelowE0(p);
      blocks.AddBelowE0(p + 16);
      blocks.AddBelowE0(p + 32);
      blocks.AddBelowE0(p + 48);
    } else {
      blocks.Add(p);
      blocks.Add(p + 16);
      blocks.Add(p + 32);
      blocks.Add(p + 48);
    }
    if (blocks.Failed()) return false;
  }
  for (; size - i >= 16; i += 16) blocks.Add(data + i);
  Edge(edge, sizeof edge, data, i, size - i);
  blocks.Add(edge + 3);
  return !blocks.Failed();
}

__attribute__((target("avx2"))) bool Avx2(const std::uint8_t* data, std::size_t size) {
  alignas(32) std::uint8_t edge[3 + 96];
  Avx2Blocks blocks;
  if (size < 64) {
    Edge(edge, sizeof edge, data, 0, size);
    blocks.Add(edge + 3);
    blocks.Add(edge + 35);
    return !blocks.Failed();
  }
  Edge(edge, sizeof edge, data, 0, 32);
  blocks.Add(edge + 3);
  std::size_t i = 32;
  for (; size - i >= 128; i += 128) {
    const std::uint8_t* p = data + i;
    Prefetch(p);
    Prefetch(p + 64);
    const __m256i top = Avx2Top(p);
    if (Avx2Ascii(top)) {
      blocks.Add(p);
      while (size - i >= 256 && Avx2Ascii(Avx2Top(data + i + 128))) {
        i += 128;
        Prefetch(data + i);
        Prefetch(data + i + 64);
      }
      continue;
    }
    if (Avx2BelowE0(top, p)) {
      blocks.AddBelowE0(p);
      blocks.AddBelowE0(p + 32);
      blocks.AddBelowE0(p + 64);
      blocks.AddBelowE0(p + 96);
    } else {
      blocks.Add(p);
      blocks.Add(p + 32);
      blocks.Add(p + 64);
      blocks.Add(p + 96);
    }
    if (blocks.Failed()) return false;
  }
  for (; size - i >= 32; i += 32) blocks.Add(data + i);
  Edge(edge, sizeof edge, data, i, size - i);
  blocks.Add(edge + 3);
  return !blocks.Failed();
}

bool HasAvx2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2");
}

Test Fastest() {
  static const Test fastest = HasAvx2() ? Avx2 : Sse2;
  return fastest;
}

#else

Test Fastest() { return Portable; }

#endif

}  // namespace Qm_tools::utf8_structure
