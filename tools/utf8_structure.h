// The structural UTF-8 test behind IsUtf8Structure (tools/textformat.h) in its versions:
// a portable one on 64-bit words and, on x86-64, vector ones for SSE2 (always there) and
// AVX2 (where the processor has it), chosen once at run time. All give the same answer
// for every input; they are declared here so that tests can hold each against the rule.
// Not exported from the package: IsUtf8Structure is the routine callers use.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Qm_tools::utf8_structure {

using Test = bool (*)(const std::uint8_t* data, std::size_t size);

// Eight bytes at a time in a 64-bit integer, on any processor.
bool Portable(const std::uint8_t* data, std::size_t size);

#if defined(__x86_64__) && defined(__GNUC__)
#define QM_UTF8_STRUCTURE_X86 1
bool Sse2(const std::uint8_t* data, std::size_t size);
// Only where HasAvx2() says the processor (and the system) runs AVX2 code.
bool Avx2(const std::uint8_t* data, std::size_t size);
bool HasAvx2();
#endif

// The fastest version this processor runs.
Test Fastest();

}  // namespace Qm_tools::utf8_structure
