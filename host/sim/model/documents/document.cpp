#include "sim/model/documents/document.h"

#include <chrono>
#include <utility>

#include "sim/model/documents/documents.h"
#include "sim/model/enums.h"
#include "sim/support/text.h"

namespace tvsim {

double NowAsDate() {
    using namespace std::chrono;
    constexpr double kUnixEpochAsDate = 25569.0;  // 1 January 1970
    double seconds = duration<double>(system_clock::now().time_since_epoch()).count();
    return kUnixEpochAsDate + seconds / 86400.0;
}

Document::Document(Documents& owner, int type, bool visible, bool read_only)
    : Default<tvapi::ITavraDocument>(this),
      owner_(&owner),
      type_(type),
      visible_(visible),
      read_only_(read_only),
      created_(NowAsDate()),
      last_change_(created_) {
    ExposePrimary<tvapi::ITavraDocument>(this);
}

tvapi::tvDocumentTypeEnum Document::GetDocumentType() { return static_cast<tvapi::tvDocumentTypeEnum>(type_); }

void Document::MarkChanged() {
    changed_ = true;
    last_change_ = NowAsDate();
}

void Document::Disconnect() {
    owner_ = nullptr;
    DisposeContent();
}

// Saving first when asked to: a changed document that cannot be saved stays
// open, as does one a subscriber refuses to let close.
bool Document::Close(bool save) {
    if (!IsOpen() || !Subscribers().BeginCloseDocument.RaiseAllowing()) return false;
    if (save && changed_ && !Save()) return false;
    Ref<Document> keep(this);  // the collection's reference may be the last
    owner_->Remove(*this);
    Subscribers().CloseDocument.Raise();
    Disconnect();
    return true;
}

// The document and its file, if it has one. A file that will not go keeps
// the document open.
bool Document::Delete() {
    if (!IsOpen()) return false;
    if (!path_.empty() && !RemoveFile(path_)) return false;
    return Close(false);
}

DocumentData Document::Snapshot() const {
    DocumentData data;
    data.type = type_;
    data.type_id = type_id_;
    data.author = author_;
    data.comment = comment_;
    data.organization = organization_;
    data.metadata = metadata_;
    data.toolbar_set = toolbar_set_;
    data.created = created_;
    data.last_change = last_change_;
    data.load_combinations = load_combinations_;
    data.active_combination = active_combination_;
    SaveContent(data);
    return data;
}

bool Document::Write(const tvapi::WString& path) const { return WriteDocumentFile(path, Snapshot()); }

void Document::Load(const ReadResult& file, const tvapi::WString& path) {
    const DocumentData& data = file.data;
    path_ = path;
    type_id_ = data.type_id;
    author_ = data.author;
    comment_ = data.comment;
    organization_ = data.organization;
    metadata_ = data.metadata;
    toolbar_set_ = data.toolbar_set;
    if (!data.load_combinations.empty()) load_combinations_ = data.load_combinations;
    active_combination_ = 0;
    SelectCombination(data.active_combination);
    open_version_ = file.format_version;
    LoadContent(data);
    // Loading is not a change: the dates and the flag are the file's.
    if (data.created > 0.0) created_ = data.created;
    last_change_ = data.last_change > 0.0 ? data.last_change : created_;
    changed_ = false;
}

bool Document::SelectCombination(int index) {
    if (index < 0 || index >= static_cast<int>(load_combinations_.size())) return false;
    active_combination_ = index;
    return true;
}

bool Document::Save() {
    if (!IsOpen() || path_.empty() || read_only_) return false;
    if (!Subscribers().BeginSaveDocument.RaiseAllowing(path_) || !Write(path_)) return false;
    changed_ = false;
    Subscribers().SaveDocument.Raise();
    return true;
}

// Another open document's file is refused: two documents never share one.
bool Document::SaveAs(const tvapi::WString& fileName) {
    if (!IsOpen() || fileName.empty()) return false;
    if (Document* other = owner_->OpenAt(fileName); other && other != this) return false;
    if (!Subscribers().BeginSaveAsDocument.RaiseAllowing() || !Write(fileName)) return false;
    path_ = AgainstCurrentFolder(fileName);
    read_only_ = false;
    changed_ = false;
    Subscribers().SaveDocument.Raise();
    return true;
}

// A copy in the given format version: 0, the current one, is the only one
// the simulated host writes. The document keeps its own file and state.
bool Document::SaveToVersion(const tvapi::WString& fileName, tvapi::tvSaveDocumentVersionEnum version) {
    if (!IsOpen() || fileName.empty() || version != 0) return false;
    if (Document* other = owner_->OpenAt(fileName); other && other != this) return false;
    return Write(fileName);
}

tvapi::WString Document::GetName() { return path_.empty() ? untitled_ : FileNamePart(path_); }

tvapi::WString Document::GetPath() { return FolderPart(path_); }

bool Document::IsActive() { return IsOpen() && owner_->Active() == this; }

void Document::SetActive() {
    if (IsOpen()) owner_->Activate(this);
}

void Document::SetOrganization(const tvapi::WString& value) {
    organization_ = value;
    MarkChanged();
}

void Document::SetMetadata(const tvapi::WString& value) {
    metadata_ = value;
    MarkChanged();
}

// The metadata as a UTF-8 text file of its own.
bool Document::WriteMetadataToFile(const tvapi::WString& fileName) {
    return WriteWholeFile(fileName, ToUtf8(metadata_));
}

// A file that cannot be read, or is not UTF-8, leaves the metadata as it was.
bool Document::ApplyMetadataFromFile(const tvapi::WString& fileName) {
    std::string bytes;
    tvapi::WString text;
    if (!ReadWholeFile(fileName, bytes) || !FromUtf8(bytes, text)) return false;
    SetMetadata(text);
    return true;
}

bool Document::ActivateToolbarSet(const tvapi::WString& name) {
    if (!IsOpen() || name.empty()) return false;
    tvapi::WString previous = std::exchange(toolbar_set_, name);
    Subscribers().ActivateToolbarSet.Raise(previous, toolbar_set_);
    return true;
}

void Document::SetAuthor(const tvapi::WString& value) {
    author_ = value;
    MarkChanged();
}

void Document::SetComment(const tvapi::WString& value) {
    comment_ = value;
    MarkChanged();
}

void Document::SetDocumentTypeId(const tvapi::WString& value) {
    type_id_ = value;
    MarkChanged();
}

bool Document::SetChanged(bool value) {
    bool was = changed_;
    if (value) MarkChanged();
    else changed_ = false;
    return was;
}

// The sheet, an A4 page in millimetres, and whatever is drawn beyond it.
bool Document::GetDocumentGabarit(double* x1, double* y1, double* x2, double* y2) {
    Box box = Box::Between({0.0, 0.0}, {210.0, 297.0});
    box.Add(ContentBounds());
    *x1 = box.X1();
    *y1 = box.Y1();
    *x2 = box.X2();
    *y2 = box.Y2();
    return true;
}

tvapi::WString Document::GetObjectNameByType(int objectType) {
    return objectType == object_type::kLineSegment ? tvapi::WString(TVAPI_TEXT("Line segment")) : tvapi::WString();
}

// Every text style is a fixed-pitch font 3.5 high, 2.5 per character.
double Document::GetTextLength(const tvapi::WString& value, int) {
    double characters = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        auto unit = static_cast<char16_t>(value[i]);
        if (unit < 0xDC00 || unit >= 0xE000) ++characters;  // the second half of a pair adds nothing
    }
    return characters * 2.5;
}

}  // namespace tvsim
