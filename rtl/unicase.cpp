// Case mapping and linguistic order without a locale (see rtl/unicase.h).
// The order mirrors the system's sort keys: each character gives zero, one or two
// elements (base, accent, case), hyphen-like characters are set aside to be compared
// last, and combining accents add their weight to the element before them.
#include "rtl/unicase.h"

#include <cstdint>
#include <string_view>

namespace rtl {

namespace {

// Capitals `first`..`last`, every `stride`-th, with their small letter at +`delta`.
struct CasePairs {
  char16_t first, last;
  std::int16_t delta;
  std::uint8_t stride;
};

constexpr CasePairs kCasePairs[] = {
    {0x0041, 0x005A, 32, 1},   {0x00C0, 0x00D6, 32, 1},   {0x00D8, 0x00DE, 32, 1},
    {0x0100, 0x012E, 1, 2},    {0x0132, 0x0136, 1, 2},    {0x0139, 0x0147, 1, 2},
    {0x014A, 0x0176, 1, 2},    {0x0178, 0x0178, -121, 1}, {0x0179, 0x017D, 1, 2},
    // DŽ, LJ, NJ: the title-case forms between capital and small map to neither.
    {0x01C4, 0x01CA, 2, 3},    {0x01CD, 0x01DB, 1, 2},    {0x01DE, 0x01EE, 1, 2},
    {0x01F1, 0x01F1, 2, 1},    {0x01F4, 0x01F4, 1, 1},    {0x01F8, 0x021E, 1, 2},
    {0x0222, 0x0232, 1, 2},
    {0x0386, 0x0386, 38, 1},   {0x0388, 0x038A, 37, 1},   {0x038C, 0x038C, 64, 1},
    {0x038E, 0x038F, 63, 1},   {0x0391, 0x03A1, 32, 1},   {0x03A3, 0x03AB, 32, 1},
    {0x03D8, 0x03EE, 1, 2},
    {0x0400, 0x040F, 80, 1},   {0x0410, 0x042F, 32, 1},   {0x0460, 0x0480, 1, 2},
    {0x048A, 0x04BE, 1, 2},    {0x04C0, 0x04C0, 15, 1},   {0x04C1, 0x04CD, 1, 2},
    {0x04D0, 0x052E, 1, 2},
    {0x0531, 0x0556, 48, 1},
    {0x1E00, 0x1E94, 1, 2},    {0x1EA0, 0x1EFE, 1, 2},
    {0xFF21, 0xFF3A, 32, 1},
};

}  // namespace

char16_t ToLowerChar(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  // Dotted capital I has no small letter of its own outside Turkish.
  if (c == 0x0130) return u'i';
  for (const auto& p : kCasePairs)
    if (c >= p.first && c <= p.last && (c - p.first) % p.stride == 0)
      return static_cast<char16_t>(c + p.delta);
  return c;
}

char16_t ToUpperChar(char16_t c) {
  if (c < 0x80) return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
  switch (c) {
    case 0x0131: return u'I';     // dotless i
    case 0x017F: return u'S';     // long s
    case 0x03C2: return 0x03A3;   // final sigma
    default: break;
  }
  for (const auto& p : kCasePairs) {
    const int lower = p.first + p.delta;
    if (c >= lower && c <= p.last + p.delta && (c - lower) % p.stride == 0)
      return static_cast<char16_t>(c - p.delta);
  }
  return c;
}

namespace {

// ---- Weights -------------------------------------------------------------------------

// Scripts in their sort order; the low 16 bits order within a script.
enum Script : std::uint32_t {
  kPunctuation = 1u << 16,
  kOtherSymbol = 2u << 16,  // symbol blocks not listed below, by code point
  kDigit = 3u << 16,
  kLatin = 4u << 16,
  kGreek = 5u << 16,
  kCyrillic = 6u << 16,
  kOther = 7u << 16,  // everything else, by code point of the small letter
};

// Accent weights. Their values are those of the system, so that a precomposed letter
// and its base plus combining marks (whose weights add up) compare equal.
enum Accent : std::uint16_t {
  kNoAccent = 0x02, kSuperscript = 0x03, kDotless = 0x04, kAcute = 0x0E, kGrave = 0x0F,
  kDot = 0x10, kMiddleDot = 0x11, kCircumflex = 0x12, kDiaeresis = 0x13, kCaron = 0x14,
  kBreve = 0x15, kMacron = 0x17, kTilde = 0x19, kRing = 0x1A, kOgonek = 0x1B,
  kCedilla = 0x1C, kDoubleAcute = 0x1D, kBar = 0x1E, kSlashL = 0x1F,
  kDialytikaTonos = 0x1F, kSlashO = 0x21, kApostropheN = 0x48, kCommaBelow = 0x5B,
  kEth = 0x68,
};

// Case weights. Ignoring case clears the capital and final-form bits (σ and ς are one
// letter), while width and superscript still count.
constexpr std::uint8_t kSmall = 0x02, kUpperBit = 0x10, kFinalBit = 0x08, kWideBit = 0x01,
                       kFinalForm = kSmall | kFinalBit, kSuperForm = 0x0E;
constexpr std::uint8_t kCaseBits = kUpperBit | kFinalBit;

struct Element {
  std::uint32_t primary;
  std::uint16_t accent;
  std::uint8_t caseWeight;
};

// What one code unit adds to a sort key. At most one of `count`, `special`, `mark` is set;
// none means the unit is ignored altogether (soft hyphen, joiners, NUL).
struct Weights {
  int count = 0;
  Element e[2] = {};
  std::uint8_t special = 0;  // compared after everything else
  std::uint8_t specialCase = 0;
  std::uint16_t mark = 0;    // combining accent for the previous element
};

// Punctuation and symbols in the system's order; they all sort before the digits.
constexpr std::u16string_view kSymbols =
    u" \u00A0\t\n\v\f\r!\"#$%&()*,./:;?@[\\]^_`{|}~\u00A1\u00A6\u00A8\u00AF\u00B4\u00B8"
    u"\u00BF\u2016\u2017\u2018\u2019\u201A\u201B\u201C\u201D\u201E\u201F\u2032\u2039"
    u"\u203A\u00A2\u00A3\u00A4\u00A5\u20AC+<=>\u00B1\u00AB\u00BB\u00D7\u00F7\u00A7\u00A9"
    u"\u00AC\u00AE\u00B0\u00B5\u00B6\u00B7\u2026\u2020\u2021\u2022";

// Vulgar fractions sit between 0 and 1, as the system has them.
constexpr std::u16string_view kDigits = u"0\u00BC\u00BD\u00BE123456789";

constexpr std::uint32_t DigitRank(char16_t digit) {
  return kDigit + static_cast<std::uint32_t>(kDigits.find(digit));
}

// Latin-1 and Latin Extended-A letters from U+00C0, two characters each: the base letter
// and its accent. A '*' base marks letters handled on their own (ligatures, letters
// with a place in the alphabet, and the two Latin-1 operators).
// Accents: ` grave  ' acute  ^ circumflex  ~ tilde  : diaeresis  o ring  , cedilla
//          v caron  u breve  - macron  . dot  ; ogonek  " double acute  = bar
//          / slashed o  % slashed l  ! dotless  * middle dot  # apostrophe  h eth
constexpr std::string_view kLatinLetters =
    "a`a'a^a~a:ao**c,e`e'e^e:i`i'i^i:"  // U+00C0
    "dhn~o`o'o^o~o:**o/u`u'u^u:y'****"  // U+00D0
    "a`a'a^a~a:ao**c,e`e'e^e:i`i'i^i:"  // U+00E0
    "dhn~o`o'o^o~o:**o/u`u'u^u:y'**y:"  // U+00F0
    "a-a-auaua;a;c'c'c^c^c.c.cvcvdvdv"  // U+0100
    "d=d=e-e-eueue.e.e;e;evevg^g^gugu"  // U+0110
    "g.g.g,g,h^h^h=h=i~i~i-i-iuiui;i;"  // U+0120
    "i.i!****j^j^k,k,k!l'l'l,l,lvlvl*"  // U+0130
    "l*l%l%n'n'n,n,nvnvn#****o-o-ouou"  // U+0140
    "o\"o\"****r'r'r,r,rvrvs's's^s^s,s,"  // U+0150
    "svsvt,t,tvtv****u~u~u-u-uuuuuouo"  // U+0160
    "u\"u\"u;u;w^w^y^y^y:z'z'z.z.zvzv**";  // U+0170
static_assert(kLatinLetters.size() == 2 * (0x0180 - 0x00C0));

std::uint16_t AccentOf(char code) {
  switch (code) {
    case '`': return kGrave;
    case '\'': return kAcute;
    case '^': return kCircumflex;
    case '~': return kTilde;
    case ':': return kDiaeresis;
    case 'o': return kRing;
    case ',': return kCedilla;
    case 'v': return kCaron;
    case 'u': return kBreve;
    case '-': return kMacron;
    case '.': return kDot;
    case ';': return kOgonek;
    case '"': return kDoubleAcute;
    case '=': return kBar;
    case '/': return kSlashO;
    case '%': return kSlashL;
    case '!': return kDotless;
    case '*': return kMiddleDot;
    case '#': return kApostropheN;
    case 'h': return kEth;
    default: return kNoAccent;
  }
}

// Letters a..z leave a gap after each for the letters the alphabet adds (ŋ after n).
constexpr std::uint32_t LatinRank(char small) {
  return kLatin + 4u * static_cast<std::uint32_t>(small - 'a') + 2u;
}

// Base letters in alphabet order; accented letters are decomposed before lookup.
constexpr std::u16string_view kGreekLetters =
    u"\u03B1\u03B2\u03B3\u03B4\u03B5\u03B6\u03B7\u03B8\u03B9\u03BA\u03BB\u03BC\u03BD"
    u"\u03BE\u03BF\u03C0\u03C1\u03C3\u03C4\u03C5\u03C6\u03C7\u03C8\u03C9";
// Ukrainian, Belarusian, Serbian and Macedonian letters take their place among the
// Russian ones; й, ё and ў are и, е and у with an accent.
constexpr std::u16string_view kCyrillicLetters =
    u"\u0430\u0431\u0432\u0433\u0491\u0434\u0452\u0435\u0454\u0436\u0437\u0455\u0438"
    u"\u0456\u0458\u043A\u043B\u0459\u043C\u043D\u045A\u043E\u043F\u0440\u0441\u0442"
    u"\u045B\u0443\u0444\u0445\u0446\u0447\u045F\u0448\u0449\u044A\u044B\u044C\u044D"
    u"\u044E\u044F";

Weights One(std::uint32_t primary, std::uint16_t accent, std::uint8_t caseWeight) {
  Weights w;
  w.count = 1;
  w.e[0] = {primary, accent, caseWeight};
  return w;
}

Weights Two(char first, char second, std::uint8_t caseWeight) {
  Weights w;
  w.count = 2;
  w.e[0] = {LatinRank(first), kNoAccent, caseWeight};
  w.e[1] = {LatinRank(second), kNoAccent, caseWeight};
  return w;
}

Weights Special(std::uint8_t weight, std::uint8_t caseWeight = kSmall | kUpperBit) {
  Weights w;
  w.special = weight;
  w.specialCase = caseWeight;
  return w;
}

std::uint16_t CombiningAccent(char16_t c) {
  switch (c) {
    case 0x0300: return kGrave - kNoAccent;
    case 0x0301: return kAcute - kNoAccent;
    case 0x0302: return kCircumflex - kNoAccent;
    case 0x0303: return kTilde - kNoAccent;
    case 0x0304: return kMacron - kNoAccent;
    case 0x0306: return kBreve - kNoAccent;
    case 0x0307: return kDot - kNoAccent;
    case 0x0308: return kDiaeresis - kNoAccent;
    case 0x030A: return kRing - kNoAccent;
    case 0x030B: return kDoubleAcute - kNoAccent;
    case 0x030C: return kCaron - kNoAccent;
    case 0x0327: return kCedilla - kNoAccent;
    case 0x0328: return kOgonek - kNoAccent;
    // The rest only need to differ from these and from each other.
    default: return static_cast<std::uint16_t>(0x80 + (c - 0x0300));
  }
}

Weights LatinWeights(char16_t c, std::uint8_t caseWeight) {
  switch (c) {
    case 0x00C6: case 0x00E6: return Two('a', 'e', caseWeight);
    case 0x0152: case 0x0153: return Two('o', 'e', caseWeight);
    case 0x0132: case 0x0133: return Two('i', 'j', caseWeight);
    case 0x00DE: case 0x00FE: return Two('t', 'h', caseWeight);
    case 0x00DF: return Two('s', 's', caseWeight);
    case 0x014A: case 0x014B: return One(LatinRank('n') + 1, kNoAccent, caseWeight);
    case 0x017F: return One(LatinRank('s') + 1, kNoAccent, caseWeight);
    case 0x0166: case 0x0167: return One(LatinRank('t') + 1, kBar, caseWeight);
    default: break;
  }
  const size_t at = 2 * static_cast<size_t>(c - 0x00C0);
  return One(LatinRank(kLatinLetters[at]), AccentOf(kLatinLetters[at + 1]), caseWeight);
}

Weights GreekWeights(char16_t small, std::uint8_t caseWeight) {
  std::uint16_t accent = kNoAccent;
  switch (small) {
    case 0x03AC: small = 0x03B1, accent = kAcute; break;
    case 0x03AD: small = 0x03B5, accent = kAcute; break;
    case 0x03AE: small = 0x03B7, accent = kAcute; break;
    case 0x03AF: small = 0x03B9, accent = kAcute; break;
    case 0x03CC: small = 0x03BF, accent = kAcute; break;
    case 0x03CD: small = 0x03C5, accent = kAcute; break;
    case 0x03CE: small = 0x03C9, accent = kAcute; break;
    case 0x03CA: small = 0x03B9, accent = kDiaeresis; break;
    case 0x03CB: small = 0x03C5, accent = kDiaeresis; break;
    case 0x0390: small = 0x03B9, accent = kDialytikaTonos; break;
    case 0x03B0: small = 0x03C5, accent = kDialytikaTonos; break;
    case 0x03C2: small = 0x03C3, caseWeight = kFinalForm; break;
    default: break;
  }
  const size_t at = kGreekLetters.find(small);
  if (at == std::u16string_view::npos) return One(kOther + small, kNoAccent, caseWeight);
  return One(kGreek + static_cast<std::uint32_t>(at), accent, caseWeight);
}

Weights CyrillicWeights(char16_t small, std::uint8_t caseWeight) {
  std::uint16_t accent = kNoAccent;
  switch (small) {
    case 0x0450: small = 0x0435, accent = kGrave; break;
    case 0x0451: small = 0x0435, accent = kDiaeresis; break;
    case 0x0453: small = 0x0433, accent = kAcute; break;
    case 0x0457: small = 0x0456, accent = kDiaeresis; break;
    case 0x045C: small = 0x043A, accent = kAcute; break;
    case 0x045D: small = 0x0438, accent = kGrave; break;
    case 0x045E: small = 0x0443, accent = kBreve; break;
    case 0x0439: small = 0x0438, accent = kBreve; break;
    default: break;
  }
  const size_t at = kCyrillicLetters.find(small);
  if (at == std::u16string_view::npos) return One(kOther + small, kNoAccent, caseWeight);
  return One(kCyrillic + static_cast<std::uint32_t>(at), accent, caseWeight);
}

bool Ignorable(char16_t c) {
  return c == 0x0000 || c == 0x00AD || c == 0x034F || (c >= 0x200C && c <= 0x200F) ||
         (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF;
}

Weights Classify(char16_t c) {
  const char16_t small = ToLowerChar(c);
  const std::uint8_t caseWeight = small != c ? kSmall | kUpperBit : kSmall;

  if (c < 0x80) {
    if (small >= u'a' && small <= u'z')
      return One(LatinRank(static_cast<char>(small)), kNoAccent, caseWeight);
  }
  // Word sort: these join or split words without changing which word it is.
  if (c == u'\'') return Special(0x80);
  if (c == u'-') return Special(0x82);
  if ((c >= 0x01 && c <= 0x08) || (c >= 0x0E && c <= 0x1F) || c == 0x7F)
    return Special(static_cast<std::uint8_t>(c <= 0x08 ? c + 2 : c == 0x7F ? 0x1D : c - 3));
  switch (c) {
    case 0x2010: return Special(0x84);
    case 0x2011: return Special(0x85);
    case 0x2012: return Special(0x88);
    case 0x2013: return Special(0x89);
    case 0x2014: return Special(0x90);
    case 0x2015: return Special(0x92);
    case 0x2027: return Special(0x86);
    case 0x2043: return Special(0x87);
    default: break;
  }
  if (Ignorable(c)) return {};

  if (const size_t at = kSymbols.find(c); at != std::u16string_view::npos)
    return One(kPunctuation + static_cast<std::uint32_t>(at), kNoAccent, kSmall);
  if (const size_t at = kDigits.find(c); at != std::u16string_view::npos)
    return One(kDigit + static_cast<std::uint32_t>(at), kNoAccent, kSmall);
  switch (c) {
    case 0x00B9: return One(DigitRank(u'1'), kNoAccent, kSuperForm);
    case 0x00B2: return One(DigitRank(u'2'), kNoAccent, kSuperForm);
    case 0x00B3: return One(DigitRank(u'3'), kNoAccent, kSuperForm);
    case 0x00AA: return One(LatinRank('a'), kSuperscript, kSuperForm);
    case 0x00BA: return One(LatinRank('o'), kSuperscript, kSuperForm);
    case 0x0218: case 0x0219: return One(LatinRank('s'), kCommaBelow, caseWeight);
    case 0x021A: case 0x021B: return One(LatinRank('t'), kCommaBelow, caseWeight);
    default: break;
  }
  if (c >= 0x00C0 && c <= 0x017F) return LatinWeights(c, caseWeight);
  if (c >= 0x0300 && c <= 0x036F) {
    Weights w;
    w.mark = CombiningAccent(c);
    return w;
  }
  if (small >= 0x0386 && small <= 0x03CE) return GreekWeights(small, caseWeight);
  if (small >= 0x0430 && small <= 0x045F) return CyrillicWeights(small, caseWeight);
  // Fullwidth forms weigh as their ASCII twins, told apart by width after case.
  if (c >= 0xFF01 && c <= 0xFF5E) {
    Weights w = Classify(static_cast<char16_t>(c - 0xFEE0));
    for (int i = 0; i < w.count; ++i) w.e[i].caseWeight |= kWideBit;
    if (w.special != 0) w.specialCase |= kWideBit;
    return w;
  }
  if ((c >= 0x0080 && c <= 0x009F) || (c >= 0x2000 && c <= 0x2BFF) ||
      (c >= 0x3000 && c <= 0x303F))
    return One(kOtherSymbol + c, kNoAccent, kSmall);
  return One(kOther + small, kNoAccent, caseWeight);
}

// ---- Comparison ----------------------------------------------------------------------

// The elements of a string in order. Combining accents are added to the element before
// them, ignored and set-aside characters in between notwithstanding; accents with no
// element before them make an accent-only element of their own (`accentOnly`).
class ElementReader {
 public:
  explicit ElementReader(std::u16string_view s) : s_(s) {}

  bool Next(Element& out, bool& accentOnly) {
    if (pending_ < w_.count) {
      out = w_.e[pending_++];
      accentOnly = false;
      return true;
    }
    std::uint16_t leading = 0;
    while (at_ < s_.size()) {
      w_ = Classify(s_[at_++]);
      if (w_.count == 0) {
        if (first_) leading = static_cast<std::uint16_t>(leading + w_.mark);
        continue;
      }
      for (; at_ < s_.size(); ++at_) {
        const Weights next = Classify(s_[at_]);
        if (next.count != 0) break;
        auto& accent = w_.e[w_.count - 1].accent;
        accent = static_cast<std::uint16_t>(accent + next.mark);
      }
      first_ = false;
      if (leading != 0) {
        out = {0, leading, kSmall};
        accentOnly = true;
        pending_ = 0;
        return true;
      }
      out = w_.e[0];
      accentOnly = false;
      pending_ = 1;
      return true;
    }
    w_.count = 0;
    if (leading != 0) {
      out = {0, leading, kSmall};
      accentOnly = true;
      return true;
    }
    return false;
  }

 private:
  std::u16string_view s_;
  size_t at_ = 0;
  bool first_ = true;
  Weights w_;
  int pending_ = 0;
};

struct SpecialMark {
  std::uint32_t position;  // elements before it
  std::uint8_t weight, caseWeight;
};

class SpecialReader {
 public:
  explicit SpecialReader(std::u16string_view s) : s_(s) {}

  bool Next(SpecialMark& out) {
    while (at_ < s_.size()) {
      const Weights w = Classify(s_[at_++]);
      if (w.special != 0) {
        out = {elements_, w.special, w.specialCase};
        return true;
      }
      elements_ += static_cast<std::uint32_t>(w.count);
    }
    return false;
  }

 private:
  std::u16string_view s_;
  size_t at_ = 0;
  std::uint32_t elements_ = 0;
};

int Sign(long long d) { return d < 0 ? -1 : (d > 0 ? 1 : 0); }

enum class Level { kBase, kAccent, kCase };

// One level of two strings. A string that runs out first is padded with the level's
// least weight, so trailing unaccented or small letters do not count.
int CompareLevel(std::u16string_view a, std::u16string_view b, Level level,
                 std::uint8_t caseMask) {
  ElementReader ra(a), rb(b);
  const auto next = [level](ElementReader& r, Element& e) {
    bool accentOnly = false;
    while (r.Next(e, accentOnly))
      if (!accentOnly || level == Level::kAccent) return true;
    return false;
  };
  Element x{}, y{};
  for (;;) {
    const bool hx = next(ra, x), hy = next(rb, y);
    if (!hx && !hy) return 0;
    switch (level) {
      case Level::kBase:
        if (!hx || !hy) return hx ? 1 : -1;
        if (x.primary != y.primary) return x.primary < y.primary ? -1 : 1;
        break;
      case Level::kAccent: {
        const int ax = hx ? x.accent : int{kNoAccent}, ay = hy ? y.accent : int{kNoAccent};
        if (ax != ay) return Sign(ax - ay);
        break;
      }
      case Level::kCase: {
        const int cx = hx ? x.caseWeight & caseMask : kSmall;
        const int cy = hy ? y.caseWeight & caseMask : kSmall;
        if (cx != cy) return Sign(cx - cy);
        break;
      }
    }
  }
}

}  // namespace

int CollateCompare(std::u16string_view a, std::u16string_view b, bool ignoreCase) {
  const std::uint8_t caseMask = ignoreCase ? static_cast<std::uint8_t>(~kCaseBits) : 0xFF;
  for (const Level level : {Level::kBase, Level::kAccent, Level::kCase})
    if (const int r = CompareLevel(a, b, level, caseMask); r != 0) return r;

  SpecialReader ra(a), rb(b);
  SpecialMark x{}, y{};
  for (;;) {
    const bool hx = ra.Next(x), hy = rb.Next(y);
    if (!hx || !hy) return hx == hy ? 0 : (hx ? 1 : -1);
    // A mark further into the word sorts first: "co-op" < "c-oop".
    if (x.position != y.position) return x.position > y.position ? -1 : 1;
    if (x.weight != y.weight) return Sign(x.weight - y.weight);
    if ((x.caseWeight & caseMask) != (y.caseWeight & caseMask))
      return Sign((x.caseWeight & caseMask) - (y.caseWeight & caseMask));
  }
}

}  // namespace rtl
