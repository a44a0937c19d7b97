#include "zd/ui/ZdTaskDialog.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <pugixml.hpp>

#include "win/Utf8.h"
#include "win/fs/PathMapping.h"
#include "win/ui/MessageBox.h"
#include "win/ui/UiSink.h"
#include "zd/ui/ZdTaskDialog_testing.h"

namespace {

using std::u16string;
using std::u16string_view;

constexpr u16string_view kComponentMark = u";component/";
// A sink that neither clicks nor closes can't keep a dialog up for ever.
constexpr int kMostActions = 10000;

struct Seam {
  zd_testing::TaskDialogLoad lastLoad;
  std::vector<zd_testing::TaskDialogNotification> notifications;
  std::string componentFolder;
};

Seam& seam() {
  static Seam state;
  return state;
}

// The folder of this library: where the host's components lie beside it.
std::string hostLibraryFolder() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&hostLibraryFolder), &info) || !info.dli_fname) return ".";
  return std::filesystem::path(info.dli_fname).parent_path().string();
}

// The POSIX path of a component reference or a Windows-form path.
std::optional<std::string> resolve(u16string_view file) {
  const std::size_t mark = file.find(kComponentMark);
  if (file.empty() || file[0] != u'/' || mark == u16string_view::npos) return WindowsPathToPosix(file);
  const std::string folder = seam().componentFolder.empty() ? hostLibraryFolder() : seam().componentFolder;
  const std::string library = Utf16ToUtf8(file.substr(1, mark - 1));
  const std::string path = Utf16ToUtf8(file.substr(mark + kComponentMark.size()));
  return folder + "/" + library + "/" + path;
}

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r'; }

// The text with each run of white space made one blank, as XML text reads.
u16string collapsed(u16string_view text) {
  u16string result;
  for (char16_t unit : text) {
    if (!isBlank(unit))
      result += unit;
    else if (result.empty() || result.back() != u' ')
      result += u' ';
  }
  return result;
}

u16string trimmedStart(const u16string& text) {
  return u16string(std::find_if_not(text.begin(), text.end(), isBlank), text.end());
}

u16string trimmedEnd(const u16string& text) {
  return u16string(text.begin(), std::find_if_not(text.rbegin(), text.rend(), isBlank).base());
}

u16string trimmed(const u16string& text) { return trimmedEnd(trimmedStart(text)); }

void replaceAll(u16string& text, u16string_view from, u16string_view to) {
  for (std::size_t at = text.find(from); at != u16string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

// A dialog as its definition gives it, placeholders filled in.
struct DialogDefinition {
  struct Piece {
    u16string text;    // the text, or a link's label
    u16string target;  // a link's target; empty for text
    bool link = false;
  };
  u16string id, title, mainInstruction, footer;
  std::vector<Piece> content;
  std::vector<std::pair<int, u16string>> commonButtons;  // id, caption
  int defaultButton = 0;
};

using Pairs = std::vector<std::pair<u16string, u16string>>;

u16string filled(u16string text, const Pairs& pairs) {
  for (const auto& [key, value] : pairs) replaceAll(text, u"{" + key + u"}", value);
  return text;
}

u16string textOf(const pugi::xml_node& node, const Pairs& pairs) {
  return filled(trimmed(collapsed(Utf8ToUtf16(node.child_value()))), pairs);
}

std::vector<DialogDefinition::Piece> contentOf(const pugi::xml_node& content, const Pairs& pairs) {
  std::vector<DialogDefinition::Piece> pieces;
  for (const pugi::xml_node& node : content.children()) {
    if (node.type() == pugi::node_pcdata)
      pieces.push_back({filled(collapsed(Utf8ToUtf16(node.value())), pairs), u"", false});
    else if (node.type() == pugi::node_element && std::string_view(node.name()) == "a")
      pieces.push_back({textOf(node, pairs), Utf8ToUtf16(node.attribute("href").value()), true});
  }
  if (!pieces.empty() && !pieces.front().link) pieces.front().text = trimmedStart(pieces.front().text);
  if (!pieces.empty() && !pieces.back().link) pieces.back().text = trimmedEnd(pieces.back().text);
  return pieces;
}

std::optional<DialogDefinition> definitionOf(const pugi::xml_node& dialog, const Pairs& pairs) {
  DialogDefinition definition;
  definition.id = Utf8ToUtf16(dialog.attribute("Id").value());
  definition.title = textOf(dialog.child("Title"), pairs);
  definition.mainInstruction = textOf(dialog.child("MainInstruction"), pairs);
  definition.content = contentOf(dialog.child("Content"), pairs);
  definition.footer = textOf(dialog.child("Footer"), pairs);
  for (const pugi::xml_node& button : dialog.children("CommonButton"))
    definition.commonButtons.emplace_back(button.attribute("Id").as_int(), textOf(button, pairs));
  definition.defaultButton = dialog.attribute("DefaultButton").as_int();
  return definition;
}

std::optional<DialogDefinition> load(u16string_view file, u16string_view dialogId, const Pairs& pairs) {
  const std::optional<std::string> path = resolve(file);
  pugi::xml_document document;
  if (!path || !document.load_file(path->c_str())) return std::nullopt;
  const std::string id = Utf16ToUtf8(dialogId);
  const pugi::xml_node dialog = document.child("TaskDialogs").find_child_by_attribute("TaskDialog", "Id", id.c_str());
  if (!dialog) return std::nullopt;
  return definitionOf(dialog, pairs);
}

}  // namespace

struct ZdTaskDialog::Definition : DialogDefinition {
  explicit Definition(DialogDefinition definition) : DialogDefinition(std::move(definition)) {}
};

namespace {

// The content as shown: labels inline with links on, the links' markup with them off.
u16string shownContent(const DialogDefinition& definition, bool linksOn) {
  u16string content;
  for (const DialogDefinition::Piece& piece : definition.content)
    content += !piece.link || linksOn ? piece.text : u"<a href=\"" + piece.target + u"\">" + piece.text + u"</a>";
  return content;
}

std::vector<UiTaskDialogLink> shownLinks(const DialogDefinition& definition) {
  std::vector<UiTaskDialogLink> links;
  for (const DialogDefinition::Piece& piece : definition.content)
    if (piece.link) links.push_back({piece.text, piece.target});
  return links;
}

bool hasButton(const UiTaskDialog& dialog, int id) {
  return std::any_of(dialog.buttons.begin(), dialog.buttons.end(), [id](const auto& b) { return b.id == id; });
}

bool hasLink(const UiTaskDialog& dialog, const u16string& target) {
  return std::any_of(dialog.links.begin(), dialog.links.end(), [&](const auto& l) { return l.target == target; });
}

// The dialog as the sink is to show it: the caller's buttons before the
// common ones; the definition's default button if it is there, else the first.
UiTaskDialog shownDialog(const DialogDefinition& definition, const std::vector<std::pair<int, u16string>>& buttons,
                         DWORD flags, HWND owner) {
  const bool linksOn = (flags & TDF_ENABLE_HYPERLINKS) != 0;
  UiTaskDialog shown{owner,
                     definition.id,
                     definition.title,
                     definition.mainInstruction,
                     shownContent(definition, linksOn),
                     definition.footer,
                     {},
                     0,
                     linksOn ? shownLinks(definition) : std::vector<UiTaskDialogLink>()};
  for (const auto& [id, caption] : buttons) shown.buttons.push_back({id, caption});
  for (const auto& [id, caption] : definition.commonButtons) shown.buttons.push_back({id, caption});
  const bool definedDefault = hasButton(shown, definition.defaultButton) || shown.buttons.empty();
  shown.defaultButton = definedDefault ? definition.defaultButton : shown.buttons.front().id;
  return shown;
}

}  // namespace

ZdTaskDialog::ZdTaskDialog() = default;
ZdTaskDialog::~ZdTaskDialog() = default;

int ZdTaskDialog::LoadFromFile(LPCWSTR file, LPCWSTR dialogId, const TASKDIALOG_KEYVALUE* pairs, int count) {
  Pairs given;
  for (int i = 0; pairs && i < count; ++i)
    if (pairs[i].key) given.emplace_back(pairs[i].key, pairs[i].value ? pairs[i].value : u"");
  seam().lastLoad = {file ? file : u"", dialogId ? dialogId : u"", given};
  if (!file || !dialogId) return 0;
  std::optional<DialogDefinition> definition = load(file, dialogId, given);
  if (!definition) return 0;
  mDefinition = std::make_unique<Definition>(std::move(*definition));
  return 1;
}

void ZdTaskDialog::SetButtons(const TASKDIALOG_BUTTON* buttons, int count) {
  mButtons.clear();
  for (int i = 0; buttons && i < count; ++i)
    mButtons.emplace_back(buttons[i].nButtonID, buttons[i].pszButtonText ? buttons[i].pszButtonText : u"");
}

bool ZdTaskDialog::notify(UINT notification, int buttonId, LPCWSTR hyperlink) {
  ZdTaskDialogEventArgs args{notification, buttonId, hyperlink};
  const bool result = mCallback && mCallback(&args);
  seam().notifications.push_back({notification, buttonId, hyperlink ? hyperlink : u"", result});
  return result;
}

int ZdTaskDialog::ShowDialog(CWnd* owner) {
  if (!mDefinition) return 0;
  const UiTaskDialog shown = shownDialog(*mDefinition, mButtons, mFlags, owner ? owner->GetSafeHwnd() : nullptr);
  for (int step = 0; step < kMostActions; ++step) {
    const UiTaskDialogAction action = CurrentUiSink().taskDialogAction(shown, step);
    if (action.kind == UiTaskDialogAction::kClose) break;
    if (action.kind == UiTaskDialogAction::kClickLink && hasLink(shown, action.target))
      notify(TDN_HYPERLINK_CLICKED, 0, action.target.c_str());
    if (action.kind == UiTaskDialogAction::kClickButton && hasButton(shown, action.buttonId) &&
        !notify(TDN_BUTTON_CLICKED, action.buttonId, nullptr))
      return action.buttonId;
  }
  notify(TDN_BUTTON_CLICKED, IDCANCEL, nullptr);
  return IDCANCEL;
}

namespace zd_testing {

const TaskDialogLoad& lastTaskDialogLoad() { return seam().lastLoad; }
const std::vector<TaskDialogNotification>& taskDialogNotifications() { return seam().notifications; }
void setComponentFolder(const std::string& folder) { seam().componentFolder = folder; }

void resetTaskDialogs() { seam() = Seam{}; }

}  // namespace zd_testing
