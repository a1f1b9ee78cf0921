#include "sim/model.h"

#include <algorithm>
#include <string>

namespace tvsim {
namespace {

tvapi::WString Widen(const std::string& s) { return tvapi::WString(s.begin(), s.end()); }

// The file name part of a path, either separator.
tvapi::WString FileName(const tvapi::WString& path) {
    auto cut = path.find_last_of(u"/\\");
    return cut == tvapi::WString::npos ? path : path.substr(cut + 1);
}

}  // namespace

Document::Document(Documents& owner, tvapi::tvDocumentTypeEnum type, tvapi::WString path, bool visible,
                   bool read_only)
    : Default<tvapi::ITavraDocument>(this),
      owner_(owner),
      type_(type),
      path_(std::move(path)),
      visible_(visible),
      read_only_(read_only) {
    Expose<tvapi::ITavraDocument>(this);
}

bool Document::Close(bool save) {
    if (save && changed_ && !Save()) return false;
    owner_.Remove(this);  // may drop the last reference: nothing after this
    return true;
}

bool Document::Save() {
    if (path_.empty() || read_only_) return false;
    changed_ = false;
    return true;
}

bool Document::SaveAs(const tvapi::WString& fileName) {
    if (fileName.empty()) return false;
    path_ = fileName;
    read_only_ = false;
    changed_ = false;
    return true;
}

tvapi::WString Document::GetName() { return path_.empty() ? untitled_ : FileName(path_); }

tvapi::WString Document::GetPath() {
    auto cut = path_.find_last_of(u"/\\");
    return cut == tvapi::WString::npos ? tvapi::WString() : path_.substr(0, cut + 1);
}

bool Document::IsActive() { return owner_.Active() == this; }
void Document::SetActive() { owner_.Activate(this); }

bool Document::SetChanged(bool value) {
    bool was = changed_;
    changed_ = value;
    return was;
}

void Document::SetAuthor(const tvapi::WString& value) {
    author_ = value;
    changed_ = true;
}

void Document::SetComment(const tvapi::WString& value) {
    comment_ = value;
    changed_ = true;
}

void Document::SetOrganization(const tvapi::WString& value) {
    organization_ = value;
    changed_ = true;
}

// An A4 sheet in millimetres.
bool Document::GetDocumentGabarit(double* x1, double* y1, double* x2, double* y2) {
    *x1 = 0.0;
    *y1 = 0.0;
    *x2 = 210.0;
    *y2 = 297.0;
    return true;
}

Documents::Documents() : Default<tvapi::IDocuments>(this) { Expose<tvapi::IDocuments>(this); }

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Keep(Document* document) {
    tvapi::SmartPtr<tvapi::ITavraDocument> held(document);
    open_.push_back(held);
    active_ = document;
    return held;
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::GetItem(int index) {
    if (index < 0 || index >= Count()) return {};
    return open_[static_cast<std::size_t>(index)];
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::GetItemByFilePath(const tvapi::WString& filePath) {
    for (auto& d : open_) {
        if (d->GetFullPath() == filePath) return d;
    }
    return {};
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Add(int documentType, bool visible) {
    auto* document = new Document(*this, static_cast<tvapi::tvDocumentTypeEnum>(documentType), {}, visible, false);
    document->Rename(u"Document" + Widen(std::to_string(++untitled_)));
    return Keep(document);
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Open(const tvapi::WString& fileName, bool visible, bool readOnly) {
    if (fileName.empty()) return {};
    if (auto already = GetItemByFilePath(fileName)) return already;
    return Keep(new Document(*this, tvapi::tvDocumentTypeEnum{}, fileName, visible, readOnly));
}

void Documents::Remove(Document* document) {
    if (active_ == document) active_ = nullptr;
    auto it = std::find_if(open_.begin(), open_.end(),
                           [&](const auto& d) { return d.get() == static_cast<tvapi::ITavraDocument*>(document); });
    if (it != open_.end()) open_.erase(it);
    if (!active_ && !open_.empty()) active_ = open_.back().get();
}

Application::Application() {
    documents_impl_ = new Documents();
    documents_ = tvapi::SmartPtr<tvapi::IDocuments>(documents_impl_);
}

void Application::SetActiveDocument(const tvapi::SmartPtr<tvapi::ITavraDocument>& value) {
    if (value) documents_impl_->Activate(value.get());
}

tvapi::SmartPtr<tvapi::ITavraDocument> Application::GetActiveDocument() {
    return tvapi::SmartPtr<tvapi::ITavraDocument>(documents_impl_->Active());
}

tvapi::WString Application::GetApplicationName(bool fullName) {
    return fullName ? u"Tavra simulated host " + Widen(std::to_string(kBuild)) : tvapi::WString(u"Tavra");
}

bool Application::GetSystemVersion(int* major, int* minor, int* release, int* build) {
    *major = 26;
    *minor = 1;
    *release = 0;
    *build = kBuild;
    return true;
}

}  // namespace tvsim
