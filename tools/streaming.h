// Images, components and printer settings in and out of streams and strings: pictures as
// Base64 text (so that they fit into INI files and messages), a square PNG thumbnail, raw
// resources, components in the framework's binary streaming format, and the settings of a
// printer.
//
// Base64 text is written in lines of 76 characters joined by CR LF, with no line break at
// the end; the picture bytes inside keep their own format (a PNG stays a PNG).
//
// The text and stream rules are pure and build everywhere; pictures, resources, components
// and printers are in streaming_win.cpp (windows build).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "rtl/streams.h"
#include "tools/qm_tools_api.h"

#ifdef _WIN32
#include "ui/controls.h"
#include "ui/extctrls.h"
#endif

namespace Qm_tools {

// ---- Pure rules ---------------------------------------------------------------------------

// The whole of Stream, from its start, as Base64 text; whether the text is not empty.
QM_TOOLS_API bool SaveImgStreamToBase64Str(rtl::TStream& Stream, std::u16string& Text);
// Decodes Text into a new memory stream for the caller, positioned at 0. False, with
// Stream untouched, when Text holds nothing but blanks and line breaks;
// rtl::EEncodingError when it is no Base64.
QM_TOOLS_API bool LoadImgStreamFromBase64Str(std::unique_ptr<rtl::TMemoryStream>& Stream,
                                const std::u16string& Text);
// Text as the loaders read it: its lines joined by CR LF, trimmed.
QM_TOOLS_API std::u16string Base64TextOf(const std::u16string& Text);

// Where the settings of a printer lie in its information block of BlockSize bytes, as
// streams saved by this library have always held them: from byte 272 on, BlockSize - 136
// bytes; the block is reserved with 136 bytes to spare so that the range stays inside.
struct TPrinterInfoRange {
  std::size_t Offset = 0;
  std::size_t Count = 0;
  std::size_t Reserve = 0;
};
QM_TOOLS_API TPrinterInfoRange PrinterInfoRange(std::size_t BlockSize);

// ---- Pictures, resources, components, printers (windows build) ----------------------------

#ifdef _WIN32
// The picture of Image in its own format as Base64 text; whether the text is not empty.
QM_TOOLS_API bool SaveImgToBase64Str(ui::TImage& Image, std::u16string& Text);
// Loads Image's picture from Base64 text, its format recognised from the bytes. False, with
// Image untouched, when Text is blank; raises for bad Base64, and ui::EInvalidGraphic,
// Image untouched, for an unknown format or a header the bytes cannot hold
// (ui/picture_rules.h).
QM_TOOLS_API bool LoadImgFromBase64Str(ui::TImage& Image, const std::u16string& Text);
// Replaces Image's picture with a Size x Size PNG of it, stretched (not letter-boxed).
// Size <= 0 leaves the picture as it is; a square of more than ui::MaxPicturePixels raises
// ui::EInvalidGraphic, the picture unchanged.
QM_TOOLS_API void ConvertImgToPngSize(ui::TImage& Image, int Size);
// Appends the raw-data resource ResName of this module to Stream; rtl::EResNotFound when
// there is none.
QM_TOOLS_API void CreateStreamFromResource(const std::u16string& ResName, rtl::TStream& Stream);
// A component with its properties and children in the binary streaming format, and back.
QM_TOOLS_API void SaveCompToFile(ui::TComponent& Component, const std::u16string& FileName);
QM_TOOLS_API void LoadCompFromFile(ui::TComponent& Component, const std::u16string& FileName);
// The settings of printer PrinterName to Stream, and back to the printer (checked by its
// driver first). Nothing happens when the printer cannot be opened.
QM_TOOLS_API void SavePrinterInfo(const wchar_t* PrinterName, rtl::TStream& Stream);
QM_TOOLS_API void LoadPrinterInfo(const wchar_t* PrinterName, rtl::TStream& Stream);
#endif

}  // namespace Qm_tools
