// Text file formats: which encoding a file is written in, judged by its byte-order mark
// or, without one, by whether its bytes have the shape of UTF-8; and loading and saving
// string lists through streams in a given encoding. The detectors are pure rules over a
// byte buffer (the ...OfBytes routines) that the file routines feed with the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "rtl/classes.h"
#include "rtl/encoding.h"
#include "rtl/streams.h"
#include "tools/qm_tools_api.h"

namespace Qm_tools {

// Whether the bytes are shaped like UTF-8: every byte from 80 on is a lead byte (110xxxxx,
// 1110xxxx, 11110xxx) followed by as many 10xxxxxx bytes as it announces. Overlong forms
// and surrogates are not looked for. Empty passes; a sequence cut off by the end fails.
//   C3 A4 passes    C3 41 fails    E2 82 fails    ED A0 80 (a surrogate) passes
QM_TOOLS_API bool IsUtf8Structure(const std::uint8_t* data, std::size_t size);

// The format's name: "utf-8", "utf-16", "utf-16-big" or "utf-32-big" by the mark, else
// "utf-8" when the bytes pass IsUtf8Structure, else "Ansi". Three bytes or fewer are "Ansi"
// untested. FF FE 00 00 reads as "utf-16": the FF FE test comes first.
//   EF BB BF 41 -> "utf-8"      EF BB BF -> "Ansi"      00 00 FE FF -> "utf-32-big"
QM_TOOLS_API std::u16string FileFormatOfBytes(const std::uint8_t* data, std::size_t size);

// The encoding to read the bytes with. By the mark: UTF-8; FF FE Unicode; FE FF
// BigEndianUnicode; 00 00 FE FF Unicode (sic: UTF-32 is read as UTF-16). Three bytes or
// fewer: ANSI. Without a mark the text is decoded (as UTF-8 when the bytes are valid UTF-8,
// else in the ANSI code page), put through the ANSI code page and back: UTF8 when that
// changes it, ANSI when not. So UTF-8 whose characters all exist in the ANSI code page
// ("Grüße" in Windows-1252) gives ANSI.
QM_TOOLS_API rtl::TEncoding* FileFormatEncodingOfBytes(const std::uint8_t* data, std::size_t size);

// The encoding with the length of its mark as the file's reader skips it, and whether a
// CR LF occurs after the first four bytes. The marks are tested in turn, each match
// overwriting the last: EF BB BF UTF8 with length 4 (sic); FF FE Unicode 2; FE FF
// BigEndianUnicode 2; 00 00 FE FF BigEndianUnicode 4; FF FE 00 00 Unicode 4. Without a
// mark: UTF8 when the bytes pass IsUtf8Structure, else ANSI, length 0. Three bytes or
// fewer: ANSI, 0, no CR LF. The CR LF scan starts at the fifth byte and takes the byte after
// every CR with it, so CR CR LF counts only when the first CR starts a pair:
//   "abcd\r\r\n" has none          "abcd\r\n" has one          "\r\nab" has none
QM_TOOLS_API rtl::TEncoding* CheckFileFormatOfBytes(const std::uint8_t* data, std::size_t size, int& markLen,
                                       bool& crlf);

// The detectors on a file. A missing file gives "Ansi" / ANSI (CheckFileFormat: markLen 0,
// crlf left as it was); a file that exists and cannot be read raises the stream's error
// (rtl::EFOpenError, rtl::EReadError).
QM_TOOLS_API std::u16string GetFileFormat(const std::u16string& fileName);
QM_TOOLS_API rtl::TEncoding* GetFileFormatEncoding(const std::u16string& fileName);
QM_TOOLS_API rtl::TEncoding* CheckFileFormat(const std::u16string& fileName, int& markLen, bool& crlf);

// Appends every line of the stream, read with the encoding (no mark detection; the
// encoding's own mark is skipped), between BeginUpdate and EndUpdate. The list is not
// cleared first.
QM_TOOLS_API void LoadLinesFromStream(rtl::TStringList& list, rtl::TStream& stream, rtl::TEncoding* encoding);
// Writes every line and CR LF in the encoding, without a mark; the stream stays open.
QM_TOOLS_API void SaveLinesToStream(rtl::TStringList& list, rtl::TStream& stream, rtl::TEncoding* encoding);

// Loads the file into the list (replacing its lines) in the encoding GetFileFormatEncoding
// finds. A null list is first made (the caller owns it). False, with the list untouched,
// when the file is missing; false when anything fails on the way.
QM_TOOLS_API bool CanLoadStringList(rtl::TStringList*& list, const std::u16string& fileName);

}  // namespace Qm_tools
