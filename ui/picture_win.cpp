// Pictures in file formats (ui/graphics.h, TPicture): decoded and encoded through the
// Windows Imaging Component. Decoded pixels (straight alpha) become a 32-bit DIB with
// premultiplied alpha (CreateDib32), which TBitmap draws blended; the bytes read are kept,
// so that a picture is saved in the format it came in. The bytes are judged by
// ui/picture_rules.h before a decoder sees them, and the decoder's frame size before its
// pixels are reserved.
#include <windows.h>

#include <wincodec.h>

#include <new>
#include <vector>

#include "rtl/com.h"
#include "ui/graphics.h"

namespace ui {

namespace {

[[noreturn]] void Invalid() { throw EInvalidGraphic(u"Unbekanntes Bildformat"); }

rtl::TComPtr<IWICImagingFactory> Factory() {
  rtl::TComPtr<IWICImagingFactory> factory;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                              IID_IWICImagingFactory, factory.put_void())))
    throw EInvalidGraphic(u"Die Bildbibliothek des Systems fehlt");
  return factory;
}

TPictureFormat FormatOf(const GUID& container) {
  if (container == GUID_ContainerFormatBmp) return pfBmp;
  if (container == GUID_ContainerFormatPng) return pfPng;
  if (container == GUID_ContainerFormatJpeg) return pfJpeg;
  if (container == GUID_ContainerFormatGif) return pfGif;
  if (container == GUID_ContainerFormatTiff) return pfTiff;
  if (container == GUID_ContainerFormatIco) return pfIco;
  return pfOther;
}

// Encodes the bitmap's pixels in a container format.
std::vector<std::uint8_t> Encode(const TBitmap& bitmap, const GUID& container) {
  const std::vector<std::uint32_t> pixels = ReadPixels32(bitmap.Handle());
  const UINT width = static_cast<UINT>(bitmap.Width()), height = static_cast<UINT>(bitmap.Height());
  if (pixels.empty()) return {};
  WICPixelFormatGUID source = GUID_WICPixelFormat32bppBGR;
  if (bitmap.AlphaFormat() == afDefined) source = GUID_WICPixelFormat32bppBGRA;
  if (bitmap.AlphaFormat() == afPremultiplied) source = GUID_WICPixelFormat32bppPBGRA;

  const rtl::TComScope com;
  const auto factory = Factory();
  rtl::TComPtr<IWICBitmap> wicBitmap;
  rtl::TComPtr<IStream> stream;
  rtl::TComPtr<IWICBitmapEncoder> encoder;
  rtl::TComPtr<IWICBitmapFrameEncode> frame;
  rtl::TComPtr<IPropertyBag2> options;
  WICPixelFormatGUID target = container == GUID_ContainerFormatPng ? GUID_WICPixelFormat32bppBGRA
                                                                   : GUID_WICPixelFormat24bppBGR;
  auto* bits = const_cast<BYTE*>(reinterpret_cast<const BYTE*>(pixels.data()));
  if (FAILED(factory->CreateBitmapFromMemory(width, height, source, width * 4,
                                             static_cast<UINT>(pixels.size() * 4), bits,
                                             wicBitmap.put())) ||
      FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put())) ||
      FAILED(factory->CreateEncoder(container, nullptr, encoder.put())) ||
      FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) ||
      FAILED(encoder->CreateNewFrame(frame.put(), options.put())) ||
      FAILED(frame->Initialize(options.get())) || FAILED(frame->SetSize(width, height)) ||
      FAILED(frame->SetPixelFormat(&target)))
    throw EInvalidGraphic(u"Das Bild kann nicht geschrieben werden");
  // The frame may want another layout than the pixels have: convert first.
  rtl::TComPtr<IWICBitmapSource> converted;
  if (FAILED(WICConvertBitmapSource(target, wicBitmap.get(), converted.put())) ||
      FAILED(frame->WriteSource(converted.get(), nullptr)) || FAILED(frame->Commit()) ||
      FAILED(encoder->Commit()))
    throw EInvalidGraphic(u"Das Bild kann nicht geschrieben werden");
  STATSTG stat{};
  HGLOBAL memory = nullptr;
  if (FAILED(stream->Stat(&stat, STATFLAG_NONAME)) ||
      FAILED(GetHGlobalFromStream(stream.get(), &memory)))
    throw EInvalidGraphic(u"Das Bild kann nicht geschrieben werden");
  const auto size = static_cast<std::size_t>(stat.cbSize.QuadPart);
  const auto* data = static_cast<const std::uint8_t*>(GlobalLock(memory));
  std::vector<std::uint8_t> bytes(data, data + size);
  GlobalUnlock(memory);
  return bytes;
}

}  // namespace

void TPicture::LoadFromStream(rtl::TStream& stream) {
  // A stream may stand past its end (a component's picture shorter than it said).
  const std::int64_t left = stream.Size() - stream.Position();
  if (left <= 0) Invalid();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(left));
  stream.ReadBuffer(bytes.data(), bytes.size());
  // Decoders reserve what a header claims, some before they read a pixel.
  CheckPictureBytes(bytes);

  const rtl::TComScope com;
  const auto factory = Factory();
  rtl::TComPtr<IWICStream> wicStream;
  rtl::TComPtr<IWICBitmapDecoder> decoder;
  rtl::TComPtr<IWICBitmapFrameDecode> frame;
  rtl::TComPtr<IWICFormatConverter> converter;
  GUID container{};
  UINT width = 0, height = 0;
  if (FAILED(factory->CreateStream(wicStream.put())) ||
      FAILED(wicStream->InitializeFromMemory(bytes.data(), static_cast<DWORD>(bytes.size()))) ||
      FAILED(factory->CreateDecoderFromStream(wicStream.get(), nullptr,
                                              WICDecodeMetadataCacheOnDemand, decoder.put())) ||
      FAILED(decoder->GetContainerFormat(&container)) || FAILED(decoder->GetFrame(0, frame.put())) ||
      FAILED(frame->GetSize(&width, &height)))
    Invalid();
  // Formats whose headers are not read before (TIFF) meet the limit here.
  CheckPictureSize(width, height);
  if (FAILED(factory->CreateFormatConverter(converter.put())) ||
      FAILED(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA,
                                   WICBitmapDitherTypeNone, nullptr, 0,
                                   WICBitmapPaletteTypeCustom)))
    Invalid();
  std::vector<std::uint32_t> pixels;
  rtl::unique_hbitmap dib;
  try {
    pixels.resize(std::size_t{width} * height);
    if (FAILED(converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(pixels.size() * 4),
                                     reinterpret_cast<BYTE*>(pixels.data()))))
      Invalid();
    dib = CreateDib32(static_cast<int>(width), static_cast<int>(height), [&](int x, int y) {
      return pixels[std::size_t(y) * width + std::size_t(x)];
    });
  } catch (const std::bad_alloc&) {
    throw EInvalidGraphic(u"Für das Bild reicht der Speicher nicht");
  }
  if (!dib) Invalid();
  bitmap_.SetHandle(std::move(dib), afPremultiplied);
  format_ = FormatOf(container);
  encoded_ = std::move(bytes);
  Changed();
}

void TPicture::SaveToStream(rtl::TStream& stream) const {
  if (!encoded_.empty()) return stream.WriteBuffer(encoded_.data(), encoded_.size());
  if (bitmap_.Empty()) return;
  const std::vector<std::uint8_t> bytes = Encode(bitmap_, GUID_ContainerFormatBmp);
  stream.WriteBuffer(bytes.data(), bytes.size());
}

void TPicture::AssignPng(const TBitmap& bitmap) {
  std::vector<std::uint8_t> png = Encode(bitmap, GUID_ContainerFormatPng);
  // A PNG without bytes would be saved as one and refused when read back.
  if (png.empty()) throw EInvalidGraphic(u"Das Bild kann nicht geschrieben werden");
  bitmap_.Assign(bitmap);
  format_ = pfPng;
  encoded_ = std::move(png);
  Changed();
}

}  // namespace ui
