// qm_Like under arbitrary input: no crash, no blow-up, and the properties callers build
// on. Its backtracking may miss a match that plain wildcards would find ('?' right after
// '*'), but never reports one that does not exist.
//
// Input: byte 0 picks the decoding (a small alphabet with '*' and '?', or raw UTF-16
// byte pairs), the rest is text 0xFF pattern.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tools/search.h"
#include "fuzz/fuzz_input.h"

using Qm_tools::qm_Like;
using std::u16string;
using std::u16string_view;

namespace {

bool Glob(u16string_view t, u16string_view p) {
  std::vector<std::vector<char>> m(p.size() + 1, std::vector<char>(t.size() + 1, 0));
  m[0][0] = 1;
  for (size_t i = 1; i <= p.size(); ++i)
    for (size_t j = 0; j <= t.size(); ++j)
      m[i][j] = p[i - 1] == u'*'
                    ? m[i - 1][j] || (j > 0 && m[i][j - 1])
                    : j > 0 && m[i - 1][j - 1] && (p[i - 1] == u'?' || p[i - 1] == t[j - 1]);
  return m[p.size()][t.size()];
}

u16string Decode(const uint8_t* data, size_t size, bool raw) {
  return fuzz::DecodeText(data, size, raw, u"aab*?ä");
}

using fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const bool raw = data[0] & 1;
  ++data;
  --size;
  size_t cut = 0;
  while (cut < size && data[cut] != 0xFF) ++cut;
  const u16string text = Decode(data, cut, raw);
  const u16string pattern = cut < size ? Decode(data + cut + 1, size - cut - 1, raw) : u16string();

  const bool like = qm_Like(text, pattern);
  if (text.size() * pattern.size() <= 40000) {
    const bool glob = Glob(text, pattern);
    Check(!like || glob);
    if (pattern.find(u"*?") == u16string::npos) Check(like == glob);
  }
  if (pattern.find_first_of(u"*?") == u16string::npos) Check(like == (text == pattern));

  Check(qm_Like(text, u"*"));
  Check(qm_Like(text, u16string(text.size(), u'?')));
  Check(!qm_Like(text, u16string(text.size() + 1, u'?')));
  if (text.find_first_of(u"*?") == u16string::npos) {
    Check(qm_Like(text, text));
    Check(qm_Like(text, u"*" + text));
    Check(qm_Like(text + pattern, text + u"*"));
  }
  return 0;
}
