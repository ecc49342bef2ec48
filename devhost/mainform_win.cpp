#include "devhost/mainform.h"

#include "devhost/log.h"

namespace devhost {

namespace {
std::u16string U16(const std::wstring& s) { return std::u16string(s.begin(), s.end()); }
}  // namespace

// ---- TPluginList ------------------------------------------------------------------------

void TPluginList::CreateParamsFor(CreateParams& params) {
  ui::TWinControl::CreateParamsFor(params);
  params.className = L"LISTBOX";
  params.systemClass = true;
  params.style |= LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL;
  params.exStyle |= WS_EX_CLIENTEDGE;
}

void TPluginList::CreateWnd() {
  ui::TWinControl::CreateWnd();
  Fill();
}

void TPluginList::SetItems(const std::vector<std::wstring>& names, int selected) {
  names_ = names;
  selected_ = selected;
  if (HandleAllocated()) Fill();
}

void TPluginList::Fill() {
  HWND list = Handle();
  SendMessageW(list, LB_RESETCONTENT, 0, 0);
  for (const std::wstring& name : names_)
    SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(selected_), 0);
}

LRESULT TPluginList::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == ui::CN_COMMAND && HIWORD(wParam) == LBN_SELCHANGE) {
    selected_ = static_cast<int>(SendMessageW(Handle(), LB_GETCURSEL, 0, 0));
    if (selected_ >= 0 && OnSelect) OnSelect(selected_);
    return 0;
  }
  return ui::TWinControl::WndProc(msg, wParam, lParam);
}

// ---- TDevHostForm -----------------------------------------------------------------------

TDevHostForm::TDevHostForm(TWelcomePageService& pages, TColor pageColor)
    : ui::TForm(nullptr),
      pages_(pages),
      list_(new TPluginList(this)),
      page_(new ui::TPanel(this)),
      status_(new ui::TPanel(this)) {
  SetCaption(u"Development host");
  Position = ui::poDesigned;
  SetBounds(20, 20, 1000, 700);
  Color = ui::clBtnFace;

  status_->SetHeight(24);
  status_->BevelOuter = ui::bvLowered;
  status_->SetAlign(ui::alBottom);
  status_->SetParent(this);

  list_->SetWidth(200);
  list_->SetAlign(ui::alLeft);
  list_->SetParent(this);
  list_->OnSelect = [this](int index) {
    std::vector<std::wstring> ids;
    for (const auto& p : pages_.Plugins())
      if (p.creator->GetPluginVisible()) ids.push_back(p.id);
    if (index < static_cast<int>(ids.size())) ShowPlugin(ids[static_cast<size_t>(index)]);
  };

  page_->BevelOuter = ui::bvNone;
  page_->Color = pageColor;
  page_->ParentBackground = false;
  page_->ShowCaption = false;
  page_->SetAlign(ui::alClient);
  page_->SetParent(this);

  pages_.OnPluginsChanged = [this] { PluginsChanged(); };
  pages_.OnViewDestroying = [this](const TWelcomePageService::TPlugin& p) { ViewDestroying(p); };
}

void TDevHostForm::SetStatus(const std::wstring& text) {
  status_->SetCaption(U16(text));
  LogLine(L"status \"" + text + L"\"");
}

void TDevHostForm::PluginsChanged() {
  std::vector<std::wstring> names;
  int selected = -1;
  for (const auto& p : pages_.Plugins()) {
    if (!p.creator->GetPluginVisible()) continue;
    if (p.id == shownID_) selected = static_cast<int>(names.size());
    names.push_back(p.name);
  }
  list_->SetItems(names, selected);
}

bool TDevHostForm::ShowPlugin(const std::wstring& id) {
  const TWelcomePageService::TPlugin* plugin = pages_.Find(id);
  if (plugin == nullptr) {
    LogLine(L"show refused: no plug-in " + id);
    return false;
  }
  if (shown_ != nullptr && id == shownID_) return true;
  // The IDE asks for a view only when the plug-in has none: each CreateView would give
  // the page a fresh client frame.
  ui::TFrame* view = plugin->creator->GetView();
  if (view == nullptr) {
    view = plugin->creator->CreateView();
    LogLine(L"view created " + id + (view == nullptr ? L" (null)" : L""));
    if (view == nullptr) return false;
  }
  if (shown_ != nullptr) shown_->Hide();
  shown_ = view;
  shownID_ = id;
  view->SetAlign(ui::alClient);
  view->SetParent(page_);
  view->Show();
  PluginsChanged();
  SetStatus(L"Showing " + plugin->name);
  LogLine(L"view shown " + id);
  return true;
}

void TDevHostForm::ViewDestroying(const TWelcomePageService::TPlugin& plugin) {
  ui::TFrame* view = plugin.creator->GetView();
  if (view != nullptr && view == shown_) {
    // The frame stays in the page until the creator frees it: taken out, it would lose
    // its window while its client frames still expect one.
    shown_ = nullptr;
    shownID_.clear();
    SetStatus(L"");
  }
}

void TDevHostForm::DestroyViews() {
  for (const auto& p : std::vector<TWelcomePageService::TPlugin>(pages_.Plugins()))
    pages_.DestroyView(p);
}

}  // namespace devhost
