// The streaming family on the system: pictures through the Windows Imaging Component,
// resources of this module, components through ui/persist.h, printers through the spooler.
#include <windows.h>

#include <winspool.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "rtl/handles.h"
#include "rtl/netencoding.h"
#include "rtl/streams.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"
#include "tools/streaming.h"
#include "rtl/wide.h"
#include "ui/persist.h"

namespace Qm_tools {

using rtl::W;

namespace {

struct PrinterCloser {
  void operator()(HANDLE h) const { ClosePrinter(h); }
};
using unique_printer = std::unique_ptr<void, PrinterCloser>;

unique_printer OpenPrinterByName(const wchar_t* name) {
  PRINTER_DEFAULTSW defaults{};
  defaults.DesiredAccess = PRINTER_ACCESS_USE;  // 8
  HANDLE h = nullptr;
  if (name == nullptr || !OpenPrinterW(const_cast<wchar_t*>(name), &h, &defaults)) return nullptr;
  return unique_printer(h);
}

// The level-2 block of the printer, with room to spare for the stream's layout; empty
// when the spooler gives none.
std::vector<std::uint8_t> PrinterBlock(HANDLE printer, TPrinterInfoRange& range) {
  DWORD needed = 0;
  GetPrinterW(printer, 2, nullptr, 0, &needed);
  if (needed == 0) return {};
  range = PrinterInfoRange(needed);
  std::vector<std::uint8_t> block(range.Reserve);
  if (!GetPrinterW(printer, 2, block.data(), needed, &needed)) return {};
  return block;
}

}  // namespace

bool SaveImgToBase64Str(ui::TImage& Image, std::u16string& Text) {
  rtl::TMemoryStream memory;
  Image.Picture.SaveToStream(memory);
  memory.SetPosition(0);
  Text = rtl::Base64Encode(memory.Bytes());
  return !rtl::Trim(Text).empty();
}

bool LoadImgFromBase64Str(ui::TImage& Image, const std::u16string& Text) {
  std::unique_ptr<rtl::TMemoryStream> decoded;
  if (!LoadImgStreamFromBase64Str(decoded, Text)) return false;
  Image.Picture.LoadFromStream(*decoded);
  return true;
}

void ConvertImgToPngSize(ui::TImage& Image, int Size) {
  // No square to make: the picture stays. Nor one larger than any picture loaded.
  if (Size <= 0) return;
  ui::CheckPictureSize(static_cast<std::uint64_t>(Size), static_cast<std::uint64_t>(Size));
  const ui::TPicture& picture = Image.Picture;
  const int width = picture.Width(), height = picture.Height();
  // Both bitmaps 32 bits a pixel; the picture drawn at its size, then stretched onto the
  // square with colour-on-colour stretching, its aspect ratio given up.
  ui::TBitmap temporary, square;
  temporary.SetHandle(ui::CreateDib32(width, height, [](int, int) { return ui::TArgb{0}; }),
                      ui::afIgnored);
  square.SetHandle(ui::CreateDib32(Size, Size, [](int, int) { return ui::TArgb{0}; }),
                   ui::afIgnored);
  {
    const rtl::unique_hdc source(CreateCompatibleDC(nullptr));
    const rtl::unique_hdc target(CreateCompatibleDC(nullptr));
    const HGDIOBJ oldSource = SelectObject(source.get(), temporary.Handle());
    const HGDIOBJ oldTarget = SelectObject(target.get(), square.Handle());
    SetStretchBltMode(source.get(), COLORONCOLOR);
    SetStretchBltMode(target.get(), COLORONCOLOR);
    if (const ui::TGraphic* graphic = picture.Graphic())
      graphic->Draw(source.get(), {0, 0, width, height});
    StretchBlt(target.get(), 0, 0, Size, Size, source.get(), 0, 0, width, height, SRCCOPY);
    SelectObject(source.get(), oldSource);
    SelectObject(target.get(), oldTarget);
  }
  Image.Picture.AssignPng(square);
}

void CreateStreamFromResource(const std::u16string& ResName, rtl::TStream& Stream) {
  const HMODULE module = rtl::HInstance();
  const HRSRC info = FindResourceW(module, W(ResName), MAKEINTRESOURCEW(10));  // RT_RCDATA
  const HGLOBAL data = info ? LoadResource(module, info) : nullptr;
  const void* bytes = data ? LockResource(data) : nullptr;
  if (bytes == nullptr) throw rtl::EResNotFound(u"Ressource " + ResName + u" wurde nicht gefunden");
  const DWORD size = SizeofResource(module, info);
  // Copied a megabyte at a time, as the stream may be a file.
  constexpr DWORD kChunk = 1048576;
  for (DWORD done = 0; done < size;) {
    const DWORD n = std::min(kChunk, size - done);
    Stream.WriteBuffer(static_cast<const std::uint8_t*>(bytes) + done, n);
    done += n;
  }
}

void SaveCompToFile(ui::TComponent& Component, const std::u16string& FileName) {
  rtl::TMemoryStream memory;
  ui::WriteComponent(memory, Component);
  rtl::TFileStream file(FileName, rtl::fmCreate);
  if (!memory.Bytes().empty()) file.WriteBuffer(memory.Bytes().data(), memory.Bytes().size());
}

void LoadCompFromFile(ui::TComponent& Component, const std::u16string& FileName) {
  rtl::TMemoryStream memory(rtl::ReadFileBytes(FileName));
  memory.SetPosition(0);
  ui::ReadComponent(memory, Component);
}

void SavePrinterInfo(const wchar_t* PrinterName, rtl::TStream& Stream) {
  const unique_printer printer = OpenPrinterByName(PrinterName);
  if (!printer) return;
  TPrinterInfoRange range;
  const std::vector<std::uint8_t> block = PrinterBlock(printer.get(), range);
  if (block.empty()) return;
  try {
    Stream.WriteBuffer(block.data() + range.Offset, range.Count);
  } catch (const rtl::Exception&) {
    // The printer routines fail without a word.
  }
}

void LoadPrinterInfo(const wchar_t* PrinterName, rtl::TStream& Stream) {
  const unique_printer printer = OpenPrinterByName(PrinterName);
  if (!printer) return;
  TPrinterInfoRange range;
  std::vector<std::uint8_t> block = PrinterBlock(printer.get(), range);
  if (block.empty()) return;
  try {
    Stream.ReadBuffer(block.data() + range.Offset, range.Count);
  } catch (const rtl::Exception&) {
    return;
  }
  auto* info = reinterpret_cast<PRINTER_INFO_2W*>(block.data());
  info->pSecurityDescriptor = nullptr;
  if (info->pDevMode == nullptr) return;
  const LONG answer =
      DocumentPropertiesW(nullptr, printer.get(), const_cast<wchar_t*>(PrinterName), info->pDevMode,
                          info->pDevMode, DM_IN_BUFFER | DM_OUT_BUFFER);
  if (answer == IDOK) SetPrinterW(printer.get(), 2, block.data(), 0);
}

}  // namespace Qm_tools
