// Streaming on the system, under Wine: a form's components to a file and back, pictures
// from hostile bytes, raw resources of the test program, and printers that are not there.
#include <windows.h>

#include <psapi.h>
#include <wincodec.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>

#include "rtl/com.h"
#include "rtl/netencoding.h"
#include "ui/persist.h"
#include "tests/streaming_forms.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;
using namespace nox_test;
using Bytes = std::vector<std::uint8_t>;

// The colour of a picture's pixel, alpha dropped.
std::uint32_t Pixel(ui::TPicture& picture, int x, int y) {
  const std::vector<std::uint32_t> pixels = ui::ReadPixels32(picture.Bitmap().Handle());
  return pixels.at(static_cast<std::size_t>(y * picture.Width() + x)) & 0xFFFFFF;
}

template <class T>
T* Find(ui::TComponent& owner, const char16_t* name) {
  return dynamic_cast<T*>(owner.FindComponent(name));
}

void CopyThroughStream(ui::TComponent& from, ui::TComponent& to) {
  rtl::TMemoryStream stream;
  ui::WriteComponent(stream, from);
  stream.SetPosition(0);
  ui::ReadComponent(stream, to);
}

TEST(StreamingWinComponents, AFormComesBackWithItsTreeAndContents) {
  const std::u16string file = TempFolder() + u"nox_streaming_form.bin";
  SaveCompToFile(*DesignedForm(), file);
  EXPECT_EQ(ReadBytes(file).substr(0, 4), "TPF0");

  ui::TForm copy(nullptr);
  copy.Name = u"Copy";
  LoadCompFromFile(copy, file);
  EXPECT_EQ(copy.Name, u"Copy") << "the root keeps its name";
  EXPECT_EQ(copy.Caption(), u"Einstellungen");
  EXPECT_EQ(std::make_tuple(copy.Left(), copy.Width(), copy.KeyPreview), std::make_tuple(10, 400, true));
  auto* panel = Find<ui::TPanel>(copy, u"Panel1");
  auto* label = Find<ui::TLabel>(copy, u"Label1");
  auto* list = Find<ui::TListBox>(copy, u"List1");
  auto* memo = Find<ui::TMemo>(copy, u"Memo1");
  auto* check = Find<ui::TCheckBox>(copy, u"Check1");
  auto* png = Find<ui::TImage>(copy, u"Png");
  auto* bmp = Find<ui::TImage>(copy, u"Bmp");
  auto* menu = Find<ui::TPopupMenu>(copy, u"Menu1");
  ASSERT_TRUE(panel && label && list && memo && check && png && bmp && menu &&
              Find<ui::TTimer>(copy, u"Timer1"));
  EXPECT_EQ(panel->Parent(), &copy);
  EXPECT_EQ(std::make_tuple(panel->Align(), panel->Color, panel->ParentColor, panel->BevelOuter),
            std::make_tuple(ui::alTop, ui::clWhite, false, ui::bvNone));
  EXPECT_EQ(label->Parent(), panel);
  EXPECT_EQ(label->Caption(), u"Größe: 0x7FFF €");
  EXPECT_EQ(std::make_tuple(label->Tag, label->AutoSize(), label->BoundsRect()),
            std::make_tuple(70000, false, ui::TRect{8, 4, 158, 24}));
  EXPECT_EQ(list->Items().CommaText(), u"eins,\"zwei é\"");
  EXPECT_EQ(memo->Text(), u"erste Zeile\r\nzweite");
  EXPECT_TRUE(check->Checked());
  EXPECT_EQ(std::make_tuple(png->Picture.Format(), png->Picture.Width(), png->Stretch),
            std::make_tuple(ui::pfPng, 8, true));
  EXPECT_EQ(bmp->Picture.Format(), ui::pfBmp);
  EXPECT_EQ(Pixel(bmp->Picture, 2, 1), 0x00FF00u);
  ASSERT_EQ(menu->Items()->Count(), 3);
  EXPECT_EQ(menu->Items()->Items(0)->Caption + u"|" + menu->Items()->Items(1)->Caption, u"&Öffnen|-");
  ASSERT_EQ(menu->Items()->Items(2)->Count(), 1);
  const ui::TMenuItem* sub = menu->Items()->Items(2)->Items(0);
  EXPECT_EQ(std::make_tuple(sub->Caption, sub->Checked, sub->Enabled),
            std::make_tuple(std::u16string(u"Unterpunkt"), true, false));

  // Loaded again into the same form: components and menu items are found, none is added.
  const int count = copy.ComponentCount();
  label->SetCaption(u"changed");
  LoadCompFromFile(copy, file);
  EXPECT_EQ(copy.ComponentCount(), count);
  EXPECT_EQ(label->Caption(), u"Größe: 0x7FFF €");
  EXPECT_EQ(menu->Items()->Count(), 3);
  EXPECT_EQ(menu->Items()->Items(2)->Count(), 1);
  DeleteFileW(W(file));
}

TEST(StreamingWinComponents, FramesKeepTheirTimersToo) {
  ui::TFrame frame(nullptr), copy(nullptr);
  auto* timer = new ui::TTimer(&frame);
  timer->Name = u"Tick";
  timer->Tag = 7;
  CopyThroughStream(frame, copy);
  ASSERT_NE(copy.FindComponent(u"Tick"), nullptr);
  EXPECT_EQ(copy.FindComponent(u"Tick")->Tag, 7);
}

TEST(StreamingWinPictures, ASquareThumbnailIsStretchedAndTravelsAsBase64) {
  ui::TImage image(nullptr);
  // 200 x 100: red on the left, blue on the right.
  image.Picture.Assign(ui::CreateDib24(200, 100, [](int x, int) { return x < 100 ? ui::clRed : ui::clBlue; }));
  ConvertImgToPngSize(image, 64);
  ASSERT_EQ(image.Picture.Format(), ui::pfPng);
  EXPECT_EQ(std::make_tuple(image.Picture.Width(), image.Picture.Height()), std::make_tuple(64, 64));

  std::u16string text;
  ASSERT_TRUE(SaveImgToBase64Str(image, text));
  const Bytes png = rtl::Base64Decode(text);
  ASSERT_GE(png.size(), 8u);
  EXPECT_EQ(std::string(png.begin() + 1, png.begin() + 4), "PNG");

  ui::TImage copy(nullptr);
  ASSERT_TRUE(LoadImgFromBase64Str(copy, text));
  EXPECT_EQ(copy.Picture.Format(), ui::pfPng);
  std::u16string again;
  SaveImgToBase64Str(copy, again);
  EXPECT_EQ(again, text) << "a loaded PNG is saved with the bytes it came in";
  // Stretched over the whole square, not letter-boxed: the top row is coloured.
  EXPECT_EQ(std::make_tuple(Pixel(copy.Picture, 10, 0), Pixel(copy.Picture, 54, 63)),
            std::make_tuple(0xFF0000u, 0x0000FFu));
}

TEST(StreamingWinPictures, BitmapsBlankTextsAndBadBytes) {
  ui::TImage image(nullptr), copy(nullptr), empty(nullptr);
  image.Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
  std::u16string text;
  ASSERT_TRUE(SaveImgToBase64Str(image, text));
  const Bytes bmp = rtl::Base64Decode(text);
  EXPECT_EQ(std::string(bmp.begin(), bmp.begin() + 2), "BM") << "a bitmap stays a bitmap";
  ASSERT_TRUE(LoadImgFromBase64Str(copy, text));
  EXPECT_EQ(copy.Picture.Format(), ui::pfBmp);
  EXPECT_EQ(Pixel(copy.Picture, 2, 1), 0x00FF00u);

  EXPECT_FALSE(LoadImgFromBase64Str(copy, u" \r\n "));
  EXPECT_EQ(copy.Picture.Width(), 3) << "a blank text leaves the picture";
  EXPECT_THROW(LoadImgFromBase64Str(copy, rtl::Base64Encode({'n', 'o', 'p', 'e'})),
               ui::EInvalidGraphic);
  EXPECT_THROW(LoadImgFromBase64Str(copy, u"###"), rtl::EEncodingError);
  EXPECT_FALSE(SaveImgToBase64Str(empty, text));
}

TEST(StreamingWinPictures, AThumbnailOfNoSizeOrTooLargeLeavesThePicture) {
  for (const int size : {0, -1, -64, 8193}) {
    SCOPED_TRACE(size);
    ui::TForm form(nullptr), copy(nullptr);
    auto* image = Place<ui::TImage>(form, form, u"Img");
    image->Picture.Assign(ui::CreateDib24(5, 4, [](int, int) { return ui::clLime; }));
    if (size > 0)
      EXPECT_THROW(ConvertImgToPngSize(*image, size), ui::EInvalidGraphic);
    else
      ConvertImgToPngSize(*image, size);
    EXPECT_EQ(std::make_tuple(image->Picture.Format(), image->Picture.Width()), std::make_tuple(ui::pfBmp, 5));
    EXPECT_EQ(Pixel(image->Picture, 4, 3), 0x00FF00u);
    // The form holding it is saved and read back as a bitmap.
    CopyThroughStream(form, copy);
    auto* read = Find<ui::TImage>(copy, u"Img");
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(std::make_tuple(read->Picture.Format(), read->Picture.Height()), std::make_tuple(ui::pfBmp, 4));
  }
}

// The most memory the process has had in use at once.
std::size_t PeakMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PeakWorkingSetSize;
}

// `width` x `height` red pixels in a container format, written by the system's encoder.
Bytes Encoded(const GUID& container, UINT width, UINT height) {
  const rtl::TComScope com;
  rtl::TComPtr<IWICImagingFactory> factory;
  rtl::TComPtr<IStream> stream;
  rtl::TComPtr<IWICBitmapEncoder> encoder;
  rtl::TComPtr<IWICBitmapFrameEncode> frame;
  rtl::TComPtr<IPropertyBag2> options;
  std::vector<BYTE> pixels(std::size_t{width} * height * 3);
  for (std::size_t i = 2; i < pixels.size(); i += 3) pixels[i] = 0xFF;  // blue, green, red
  WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
  STATSTG stat{};
  HGLOBAL memory = nullptr;
  if (!(SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                   IID_IWICImagingFactory, factory.put_void())) &&
        SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put())) &&
        SUCCEEDED(factory->CreateEncoder(container, nullptr, encoder.put())) &&
        SUCCEEDED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) &&
        SUCCEEDED(encoder->CreateNewFrame(frame.put(), options.put())) &&
        SUCCEEDED(frame->Initialize(options.get())) && SUCCEEDED(frame->SetSize(width, height)) &&
        SUCCEEDED(frame->SetPixelFormat(&format)) && format == GUID_WICPixelFormat24bppBGR &&
        SUCCEEDED(frame->WritePixels(height, width * 3, static_cast<UINT>(pixels.size()),
                                     pixels.data())) &&
        SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit()) &&
        SUCCEEDED(stream->Stat(&stat, STATFLAG_NONAME)) &&
        SUCCEEDED(GetHGlobalFromStream(stream.get(), &memory)))) {
    ADD_FAILURE() << "not encoded";
    return {};
  }
  const auto* data = static_cast<const std::uint8_t*>(GlobalLock(memory));
  Bytes bytes(data, data + stat.cbSize.QuadPart);
  GlobalUnlock(memory);
  return bytes;
}

// A GIF of one black pixel: the screen with a two-colour table, one frame whose codes are
// clear, colour 0, end.
const Bytes kGif{'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 0, 0, 0, 0xFF, 0xFF,
                 0xFF, 0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, 0x44, 0x01, 0, 0x3B};

// An icon whose one image, from byte 22 on, is the PNG `png`.
Bytes Icon(const Bytes& png) {
  Bytes b{0, 0, 1, 0, 1, 0, 16, 16, 0, 0, 1, 0, 32, 0, 0, 0, 0, 0, 22, 0, 0, 0};
  for (int i = 0; i < 4; ++i) b[14 + i] = static_cast<std::uint8_t>(png.size() >> (8 * i));
  b.insert(b.end(), png.begin(), png.end());
  return b;
}

// `b` with `bytes` written from `at` on.
Bytes Patched(Bytes b, std::size_t at, std::initializer_list<std::uint8_t> bytes) {
  std::copy(bytes.begin(), bytes.end(), b.begin() + static_cast<std::ptrdiff_t>(at));
  return b;
}

// `png` claiming `width` x `height`, the header's checksum (CRC-32 of its type and data)
// made to match, cut to `keep` bytes.
Bytes PngOfSize(Bytes png, std::uint32_t width, std::uint32_t height,
                std::size_t keep = SIZE_MAX) {
  const auto put = [&](std::size_t at, std::uint32_t v) {
    for (std::size_t i = 0; i < 4; ++i)
      png.at(at + i) = static_cast<std::uint8_t>(v >> (24 - 8 * i));
  };
  put(16, width);
  put(20, height);
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t i = 12; i < 29; ++i) {
    crc ^= png[i];
    for (int k = 0; k < 8; ++k) crc = crc >> 1 ^ (0xEDB88320u & (0u - (crc & 1)));
  }
  put(29, ~crc);
  png.resize(std::min(keep, png.size()));
  return png;
}

// A little-endian TIFF with the width and height tags of its first directory set to
// `size`; each tag is 12 bytes: tag, type, count, the value from its first byte on.
Bytes TiffOfSize(Bytes tiff, std::uint16_t size) {
  const auto read16 = [&](std::size_t at) { return std::size_t{tiff.at(at)} | std::size_t{tiff.at(at + 1)} << 8; };
  const std::size_t directory = read16(4) | read16(6) << 16;
  for (std::size_t entry = directory + 2, n = read16(directory); n > 0; --n, entry += 12)
    if (read16(entry) == 256 || read16(entry) == 257)
      for (std::size_t i = 0; i < 4; ++i) tiff.at(entry + 8 + i) = i < 2 ? static_cast<std::uint8_t>(size >> 8 * i) : 0;
  return tiff;
}

// A form "F" holding an image whose picture data are `bytes`, as a component stream.
std::unique_ptr<rtl::TMemoryStream> FormWithPicture(const Bytes& bytes) {
  rtl::TMemoryStream data;
  rtl::TWriter(data).WriteStr(u"TWICImage");
  if (!bytes.empty()) data.WriteBuffer(bytes.data(), bytes.size());
  return FormStream([&](rtl::TWriter& w) {
    Open(w, u"TImage", u"Img");
    w.WriteStr(u"Picture.Data");
    w.WriteBinary(data.Bytes());
    w.WriteListEnd();
    w.WriteListEnd();
  });
}

TEST(StreamingPictureLoading, HostileHeadersAreRefusedWithoutAHugeAllocation) {
  const Bytes png = Encoded(GUID_ContainerFormatPng, 16, 16);
  const Bytes bmp = Encoded(GUID_ContainerFormatBmp, 16, 16);
  const Bytes jpeg = Encoded(GUID_ContainerFormatJpeg, 16, 16);
  const Bytes tiff = Encoded(GUID_ContainerFormatTiff, 16, 16);
  ASSERT_TRUE(png.size() > 33 && bmp.size() >= 54 + 16 * 48 && jpeg.size() > 100);
  ASSERT_TRUE(tiff.size() > 8 && tiff[0] == 'I');
  ASSERT_EQ(PngOfSize(png, 16, 16), png) << "the checksum as the encoder made it";
  // Where the JPEG's baseline frame header begins: its height and width lie 5 bytes on.
  const Bytes frameMarker{0xFF, 0xC0};
  const auto sof = static_cast<std::size_t>(
      std::search(jpeg.begin(), jpeg.end(), frameMarker.begin(), frameMarker.end()) - jpeg.begin());
  ASSERT_LT(sof + 9, jpeg.size()) << "no frame header";
  // A BMP's width and height lie from byte 18 on, a GIF screen's from byte 6, its frame's
  // from byte 24.
  const struct { const char* what; Bytes bytes; } cases[] = {
      {"a PNG header naming 16384 x 16384", PngOfSize(png, 16384, 16384, 100)},
      {"a PNG of 8000 x 8000 in a few bytes", PngOfSize(png, 8000, 8000)},
      {"half a PNG", Bytes(png.begin(), png.begin() + static_cast<std::ptrdiff_t>(png.size() / 2))},
      {"a BMP claiming 16 x 4000000", Patched(bmp, 22, {0x00, 0x09, 0x3D, 0x00})},
      {"a BMP of negative width", Patched(bmp, 18, {0xF0, 0xFF, 0xFF, 0xFF})},
      {"a BMP cut in its header", Bytes(bmp.begin(), bmp.begin() + 30)},
      {"a JPEG of 8000 x 8000 in a few bytes", Patched(jpeg, sof + 5, {0x1F, 0x40, 0x1F, 0x40})},
      {"a GIF of 65535 x 65535", Patched(Patched(kGif, 6, {0xFF, 0xFF, 0xFF, 0xFF}), 24,
                                         {0xFF, 0xFF, 0xFF, 0xFF})},
      {"an icon whose PNG names 16384 x 16384", Icon(PngOfSize(png, 16384, 16384, 100))},
      // Only the decoder reads a TIFF's size.
      {"a TIFF of 16384 x 16384", TiffOfSize(tiff, 16384)},
  };
  for (const auto& c : cases) {
    for (const bool component : {false, true}) {
      SCOPED_TRACE(std::string(c.what) + (component ? " in a component stream" : " as Base64 text"));
      ui::TImage image(nullptr);
      image.Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
      // The peak only grows: a case shows when it goes beyond every one before it.
      const std::size_t peak = PeakMemory();
      try {
        if (component) {
          ui::TForm form(nullptr);
          ui::ReadComponent(*FormWithPicture(c.bytes), form);
        } else {
          LoadImgFromBase64Str(image, rtl::Base64Encode(c.bytes));
        }
        ADD_FAILURE() << "accepted";
      } catch (const rtl::Exception& e) {
        EXPECT_NE(dynamic_cast<const ui::EInvalidGraphic*>(&e), nullptr) << e.what();
      }
      EXPECT_LT(PeakMemory() - peak, std::size_t{64} << 20);
      EXPECT_EQ(std::make_tuple(image.Picture.Format(), image.Picture.Width()), std::make_tuple(ui::pfBmp, 3))
          << "the picture kept";
    }
  }
}

TEST(StreamingPictureLoading, AStreamPastItsEndHoldsNoPicture) {
  rtl::TMemoryStream stream(Encoded(GUID_ContainerFormatPng, 4, 4));
  stream.Seek(8, rtl::TSeekOrigin::soEnd);
  ui::TPicture picture;
  EXPECT_THROW(picture.LoadFromStream(stream), ui::EInvalidGraphic);
  EXPECT_EQ(picture.Format(), ui::pfNone);
}

TEST(StreamingPictureLoading, ASmallPictureOfEachFormatStillLoads) {
  const Bytes png = Encoded(GUID_ContainerFormatPng, 16, 16);
  const struct { const char* what; Bytes bytes; ui::TPictureFormat format; int width, height; } cases[] = {
      {"BMP", Encoded(GUID_ContainerFormatBmp, 7, 3), ui::pfBmp, 7, 3},
      {"PNG", png, ui::pfPng, 16, 16},
      {"JPEG", Encoded(GUID_ContainerFormatJpeg, 9, 5), ui::pfJpeg, 9, 5},
      {"GIF", kGif, ui::pfGif, 1, 1},
      {"TIFF", Encoded(GUID_ContainerFormatTiff, 6, 2), ui::pfTiff, 6, 2},
      {"icon", Icon(png), ui::pfIco, 16, 16},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ui::TImage image(nullptr);
    ASSERT_TRUE(LoadImgFromBase64Str(image, rtl::Base64Encode(c.bytes)));
    EXPECT_EQ(std::make_tuple(image.Picture.Format(), image.Picture.Width(), image.Picture.Height()),
              std::make_tuple(c.format, c.width, c.height));
    // Lossless formats keep the red; a JPEG comes close to it; the GIF's pixel is black.
    const std::uint32_t pixel = Pixel(image.Picture, 0, c.height - 1);
    if (c.format == ui::pfGif)
      EXPECT_EQ(pixel, 0x000000u);
    else
      EXPECT_GE(pixel >> 16, 0xF0u);
  }
}

TEST(StreamingWinResources, RawDataIsAppendedWhereTheStreamStands) {
  rtl::TMemoryStream stream(std::vector<std::uint8_t>{'>', ' '});
  stream.Seek(0, rtl::TSeekOrigin::soEnd);
  CreateStreamFromResource(u"NOXTESTDATA", stream);
  EXPECT_EQ(std::string(stream.Bytes().begin(), stream.Bytes().end()), "> Noxdesk raw data");
  EXPECT_THROW(CreateStreamFromResource(u"NOXMISSING", stream), rtl::EResNotFound);
}

TEST(StreamingWinPrinter, AMissingPrinterChangesNothing) {
  rtl::TMemoryStream stream(std::vector<std::uint8_t>{1, 2, 3});
  SavePrinterInfo(L"Nox Printer That Is Not There", stream);
  EXPECT_EQ(stream.Size(), 3);
  stream.SetPosition(0);
  LoadPrinterInfo(L"Nox Printer That Is Not There", stream);
  EXPECT_EQ(stream.Position(), 0);
}

}  // namespace
