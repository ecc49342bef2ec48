#include "devhost/services.h"

#include <algorithm>

#include "devhost/log.h"

namespace devhost {

namespace {

using namespace ToolsAPI;
using namespace ToolsAPI::WelcomePage;

std::wstring Wide(const std::u16string& s) { return std::wstring(s.begin(), s.end()); }
std::u16string U16(const std::wstring& s) { return std::u16string(s.begin(), s.end()); }
std::wstring Text(const wchar_t* s) { return s != nullptr ? s : L""; }

// The QueryInterface of an object that is `T` for `iid`: hands out the right base.
template <class T>
bool Answer(T* self, REFIID iid, REFIID wanted, void** object) {
  if (!IsEqualIID(iid, wanted)) return false;
  *object = self;
  self->AddRef();
  return true;
}

}  // namespace

// ---- TIDEServices -----------------------------------------------------------------------

HRESULT TIDEServices::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (Answer<IBorlandIDEServices>(this, iid, IID_IUnknown, object) ||
      Answer<IBorlandIDEServices>(this, iid, IID_IBorlandIDEServices, object) ||
      Answer<IOTAIDEThemingServices>(this, iid, IID_IOTAIDEThemingServices, object) ||
      Answer<IOTAActionServices>(this, iid, IID_IOTAActionServices, object))
    return S_OK;
  return E_NOINTERFACE;
}

TColor TIDEServices::GetSystemColor(TColor color) {
  if (themingEnabled_) {
    if (color == ui::clWindow) return kStyleWindowColor;
    if (color == ui::clBtnFace) return kStyleBtnFaceColor;
  }
  return ui::ColorToRGB(color);
}

bool TIDEServices::OpenProject(const wchar_t* projName, bool newProjGroup) {
  LogLine(L"OpenProject path=\"" + Text(projName) + L"\" newProjGroup=" +
          (newProjGroup ? L"true" : L"false"));
  if (OnStatus)
    OnStatus(L"Open project: " + Text(projName) + (newProjGroup ? L" (new project group)" : L""));
  return true;
}

bool TIDEServices::NotImplemented(const wchar_t* action, const wchar_t* fileName) {
  LogLine(std::wstring(action) + L" path=\"" + Text(fileName) + L"\" (not implemented)");
  return false;
}

bool TIDEServices::CloseFile(const wchar_t* fileName) { return NotImplemented(L"CloseFile", fileName); }
bool TIDEServices::OpenFile(const wchar_t* fileName) { return NotImplemented(L"OpenFile", fileName); }
bool TIDEServices::ReloadFile(const wchar_t* fileName) { return NotImplemented(L"ReloadFile", fileName); }
bool TIDEServices::SaveFile(const wchar_t* fileName) { return NotImplemented(L"SaveFile", fileName); }

// ---- TCaptionFrame ----------------------------------------------------------------------

namespace {

// The caption bar: the page's name on the left, as the IDE's pages show it.
class TCaptionBar final : public ui::TPanel {
 public:
  using TPanel::TPanel;

 protected:
  void PaintWindow(HDC dc) override {
    RECT r{12, 0, Width(), Height()};
    const rtl::select_object font(dc, FontHandle());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, static_cast<COLORREF>(ui::ColorToRGB(ResolvedFont().Color)));
    DrawTextW(dc, reinterpret_cast<const wchar_t*>(caption_.c_str()),
              static_cast<int>(caption_.size()), &r, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  }
};

}  // namespace

TCaptionFrame::TCaptionFrame(std::wstring pluginID, const std::wstring& caption, TColor color)
    : ui::TFrame(nullptr), pluginID_(std::move(pluginID)), captionBar_(new TCaptionBar(this)) {
  Color = color;
  ParentColor = false;
  ParentBackground = false;
  SetCaption(U16(caption));
  captionBar_->BevelOuter = ui::bvNone;
  captionBar_->ParentColor = true;
  captionBar_->ParentFont = false;
  captionBar_->Font.Height = -16;
  captionBar_->Font.Style = {ui::fsBold};
  captionBar_->SetCaption(U16(caption));
  captionBar_->SetHeight(32);
  captionBar_->SetAlign(ui::alTop);
  captionBar_->SetParent(this);
}

void TCaptionFrame::CreateParamsFor(CreateParams& params) {
  ui::TFrame::CreateParamsFor(params);
  params.className = L"TWelcomePageCaptionFrame";
}

HRESULT TCaptionFrame::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (Answer<INTAWelcomePageCaptionFrame>(this, iid, IID_IUnknown, object) ||
      Answer<INTAWelcomePageCaptionFrame>(this, iid, IID_INTAWelcomePageCaptionFrame, object))
    return S_OK;
  return E_NOINTERFACE;
}

void TCaptionFrame::SetClientFrame(ui::TFrame* frame) {
  if (client_ != nullptr && client_ != frame) client_->Hide();
  client_ = frame;
  if (frame != nullptr) {
    frame->SetAlign(ui::alClient);
    frame->SetParent(this);
    frame->Show();
  }
  LogLine(L"client frame set " + pluginID_ + (frame == nullptr ? L" (none)" : L""));
}

void TCaptionFrame::RemoveControl(ui::TControl* control) {
  // The client may be freed by its owner before this frame goes.
  if (control == client_) client_ = nullptr;
  ui::TFrame::RemoveControl(control);
}

// ---- TWelcomePageService ----------------------------------------------------------------

HRESULT TWelcomePageService::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (Answer<INTAWelcomePagePluginService>(this, iid, IID_IUnknown, object) ||
      Answer<INTAWelcomePagePluginService>(this, iid, IID_INTAWelcomePagePluginService, object))
    return S_OK;
  return E_NOINTERFACE;
}

const TWelcomePageService::TPlugin* TWelcomePageService::Find(const std::wstring& id) const {
  for (const TPlugin& p : plugins_)
    if (p.id == id) return &p;
  return nullptr;
}

void TWelcomePageService::RegisterPluginCreator(INTAWelcomePageContentPluginCreator* creator) {
  if (creator == nullptr) return;
  const std::wstring id = Wide(creator->GetPluginID());
  const std::wstring name = Wide(creator->GetPluginName());
  if (Find(id) != nullptr) {
    LogLine(L"register refused: " + id + L" is registered already");
    return;
  }
  creator->AddRef();
  plugins_.push_back({id, name, creator});
  LogLine(L"registered " + id + L" \"" + name + L"\"" +
          (creator->GetPluginVisible() ? L"" : L" (not visible)"));
  if (OnPluginsChanged) OnPluginsChanged();
}

void TWelcomePageService::DestroyView(const TPlugin& plugin) {
  if (plugin.creator->GetView() == nullptr) return;
  if (OnViewDestroying) OnViewDestroying(plugin);
  plugin.creator->DestroyView();
  LogLine(L"view destroyed " + plugin.id);
}

void TWelcomePageService::Drop(const TPlugin& plugin, const wchar_t* how) {
  DestroyView(plugin);
  const ULONG left = plugin.creator->Release();
  LogLine(std::wstring(how) + L" " + plugin.id + L" references=" + std::to_wstring(left));
}

void TWelcomePageService::UnRegisterPlugin(const wchar_t* pluginID) {
  const std::wstring id = Text(pluginID);
  const auto it = std::find_if(plugins_.begin(), plugins_.end(),
                               [&](const TPlugin& p) { return p.id == id; });
  if (it == plugins_.end()) {
    LogLine(L"unregister ignored: " + id + L" is not registered");
    return;
  }
  // Off the list first: the creator may unregister again while it is being freed.
  const TPlugin plugin = *it;
  plugins_.erase(it);
  if (OnPluginsChanged) OnPluginsChanged();
  Drop(plugin, L"unregistered");
}

void TWelcomePageService::ReleaseAll() {
  while (!plugins_.empty()) {
    const TPlugin plugin = plugins_.back();
    plugins_.pop_back();
    Drop(plugin, L"still registered at unload, released");
  }
  if (OnPluginsChanged) OnPluginsChanged();
}

ui::TFrame* TWelcomePageService::CreateCaptionFrame(const wchar_t* pluginID, const wchar_t* caption,
                                                    ui::TFrame* clientFrame) {
  auto* frame = new TCaptionFrame(Text(pluginID), Text(caption), pageColor_);
  LogLine(L"caption frame created " + Text(pluginID) + L" \"" + Text(caption) + L"\"");
  if (clientFrame != nullptr) frame->SetClientFrame(clientFrame);
  return frame;
}

}  // namespace devhost
