#include "devhost/screenshot.h"

#include <cstdio>
#include <vector>

#include "rtl/handles.h"

namespace devhost {

bool SaveWindowImage(HWND window, const std::wstring& fileName) {
  RECT r;
  GetWindowRect(window, &r);
  const int w = r.right - r.left, h = r.bottom - r.top;
  if (w <= 0 || h <= 0) return false;

  // The screen rather than PrintWindow: a window of another process docked in ours
  // paints only to the screen.
  const rtl::unique_screen_dc screen(GetDC(nullptr));
  const rtl::unique_hdc memory(CreateCompatibleDC(screen.get()));
  const rtl::unique_hbitmap bitmap(CreateCompatibleBitmap(screen.get(), w, h));
  {
    const rtl::select_object selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, w, h, screen.get(), r.left, r.top, SRCCOPY);
  }

  BITMAPINFOHEADER info{};
  info.biSize = sizeof info;
  info.biWidth = w;
  info.biHeight = h;  // bottom-up, as BMP files store rows
  info.biPlanes = 1;
  info.biBitCount = 24;
  info.biCompression = BI_RGB;
  const DWORD stride = (static_cast<DWORD>(w) * 3 + 3) & ~3u;
  std::vector<unsigned char> pixels(stride * static_cast<DWORD>(h));
  if (!GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(h), pixels.data(),
                 reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS))
    return false;

  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;  // "BM"
  file.bfOffBits = sizeof file + sizeof info;
  file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
  std::FILE* f = _wfopen(fileName.c_str(), L"wb");
  if (f == nullptr) return false;
  const bool ok = std::fwrite(&file, sizeof file, 1, f) == 1 &&
                  std::fwrite(&info, sizeof info, 1, f) == 1 &&
                  std::fwrite(pixels.data(), pixels.size(), 1, f) == 1;
  return std::fclose(f) == 0 && ok;
}

}  // namespace devhost
