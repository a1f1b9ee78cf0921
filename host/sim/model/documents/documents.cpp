#include "sim/model/documents/documents.h"

#include <algorithm>

#include "sim/model/documents/document.h"
#include "sim/model/documents/document_params.h"
#include "sim/model/drawing/drawing_document.h"
#include "sim/model/enums.h"
#include "sim/support/text.h"

namespace tvsim {

Documents::Documents(Ref<ApplicationEvents> events)
    : Default<tvapi::IDocuments>(this), events_(std::move(events)) {
    ExposePrimary<tvapi::IDocuments>(this);
}

Documents::~Documents() { CloseAll(false); }

Ref<Document> Documents::Create(int type, bool visible, bool read_only) {
    if (!document_type::IsKnown(type)) return {};
    if (document_type::IsTwoDimensional(type)) {
        return Ref<Document>(New<DrawingDocument>(*this, type, visible, read_only).get());
    }
    return New<Document>(*this, type, visible, read_only);
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Keep(const Ref<Document>& document, Announcement event) {
    if (!document) return {};
    open_.push_back(document);
    auto face = document.As<tvapi::ITavraDocument>();
    (events_->handlers.*event).Raise(face);
    Activate(document.get());
    return face;
}

// Subscribers may refuse a new document before it is made.
bool Documents::MayCreate(int type) const {
    return document_type::IsKnown(type) &&
           events_->handlers.BeginCreate.RaiseAllowing(static_cast<tvapi::DocumentTypeEnum>(type));
}

void Documents::Activate(Document* document) {
    if (document == active_) return;
    Ref<Document> previous(active_);
    active_ = document;
    if (previous) previous->Subscribers().DeactivateDocument.Raise();
    if (document) document->Subscribers().ActivateDocument.Raise();
    events_->handlers.ChangeActiveDocument.Raise(Share<tvapi::ITavraDocument>(document));
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::GetItem(int index) {
    if (index < 0 || index >= static_cast<int>(open_.size())) return {};
    return open_[static_cast<std::size_t>(index)].As<tvapi::ITavraDocument>();
}

Document* Documents::OpenAt(const tvapi::WString& path) const {
    if (path.empty()) return nullptr;
    tvapi::WString absolute = AgainstCurrentFolder(path);
    for (const auto& document : open_) {
        if (document->FullPath() == absolute) return document.get();
    }
    return nullptr;
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::GetItemByFilePath(const tvapi::WString& filePath) {
    return Share<tvapi::ITavraDocument>(OpenAt(filePath));
}

// Untitled documents are named "Document1", "Document2", ... in order of creation.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Add(int documentType, bool visible) {
    if (!MayCreate(documentType)) return {};
    Ref<Document> document = Create(documentType, visible, false);
    if (document) document->SetUntitledName(TVAPI_TEXT("Document") + Widen(std::to_string(++untitled_)));
    return Keep(document, &ApplicationEventLists::CreateDocument);
}

// The simulated host has no settings apart from the defaults.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::AddWithDefaultSettings(int documentType, bool visible) {
    return Add(documentType, visible);
}

ReadResult Documents::Read(const tvapi::WString& path) {
    ReadResult file = ReadDocumentFile(path, recover_);
    if (file.ok && !document_type::IsKnown(file.data.type)) {
        file.ok = false;
        file.error = ReadError::kNotDocument;
    }
    recover_error_ = file.error;
    if (recover_) skipped_lines_.assign(file.skipped_lines.begin(), file.skipped_lines.end());
    return file;
}

// A document keeps its file's path absolute: the current directory may change.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::OpenWith(const tvapi::WString& fileName, bool visible,
                                                           bool read_only, const Pick& pick) {
    const tvapi::WString path = AgainstCurrentFolder(fileName);
    if (Document* already = OpenAt(path)) {
        int index = pick(already->LoadCombinations(), already->ActiveCombination());
        if (index < 0) return {};
        already->SelectCombination(index);
        return Share<tvapi::ITavraDocument>(already);
    }
    if (!events_->handlers.BeginOpenDocument.RaiseAllowing(path)) return {};
    Ref<Document> document;
    if (IsFree(path)) {
        // No file there yet: a new drawing, to be saved there.
        ClearRecoverError();
        document = Create(document_type::kDrawing, visible, read_only);
        document->BindTo(path);
    } else {
        ReadResult file = Read(path);
        if (!file.ok) return {};
        document = Create(file.data.type, visible, read_only);
        document->Load(file, path);
    }
    int index = pick(document->LoadCombinations(), document->ActiveCombination());
    if (index < 0) {
        document->Disconnect();
        return {};
    }
    document->SelectCombination(index);
    return Keep(document, &ApplicationEventLists::OpenDocument);
}

// An open document's file gives that document back.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::Open(const tvapi::WString& fileName, bool visible, bool readOnly) {
    return OpenWith(fileName, visible, readOnly, [](const auto&, int active) { return active; });
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::OpenByLoadCombinationIndex(const tvapi::WString& fileName,
                                                                             bool visible, bool readOnly, int index) {
    return OpenWith(fileName, visible, readOnly, [index](const std::vector<tvapi::WString>& names, int) {
        return index >= 0 && index < static_cast<int>(names.size()) ? index : -1;
    });
}

tvapi::SmartPtr<tvapi::ITavraDocument> Documents::OpenByLoadCombinationName(const tvapi::WString& fileName,
                                                                            bool visible, bool readOnly,
                                                                            const tvapi::WString& name) {
    return OpenWith(fileName, visible, readOnly, [&name](const std::vector<tvapi::WString>& names, int) {
        auto it = std::find(names.begin(), names.end(), name);
        return it == names.end() ? -1 : static_cast<int>(it - names.begin());
    });
}

// The names as the file holds them, and its active one; nothing, with the
// index untouched, for a file that does not read.
std::vector<tvapi::WString> Documents::GetLoadCombinations(const tvapi::WString& fileName, int* activeIndex) {
    ReadResult file = Read(fileName);
    if (!file.ok) return {};
    if (file.data.load_combinations.empty()) file.data.load_combinations.push_back(TVAPI_TEXT("Base"));
    int count = static_cast<int>(file.data.load_combinations.size());
    int active = file.data.active_combination;
    *activeIndex = active >= 0 && active < count ? active : 0;
    return file.data.load_combinations;
}

tvapi::tvRecoverErrorEnum Documents::GetRecoverError() {
    return static_cast<tvapi::tvRecoverErrorEnum>(recover_error_);
}

void Documents::ClearRecoverError() {
    recover_error_ = ReadError::kNone;
    skipped_lines_.clear();
}

tvapi::SmartPtr<tvapi::ILoadCombinationsParam> Documents::GetLoadCombinationsParam(const tvapi::WString& fileName) {
    int active = 0;
    std::vector<tvapi::WString> names = GetLoadCombinations(fileName, &active);
    if (names.empty()) return {};
    return New<LoadCombinationsParam>(std::move(names), active).As<tvapi::ILoadCombinationsParam>();
}

tvapi::SmartPtr<tvapi::IOpenDocumentParam> Documents::GetOpenDocumentParam() {
    return New<OpenDocumentParam>().As<tvapi::IOpenDocumentParam>();
}

// Any object answering IOpenDocumentParam will do; none means the defaults.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::OpenDocument(
    const tvapi::WString& fileName, const tvapi::SmartPtr<tvapi::IOpenDocumentParam>& parameters) {
    if (!parameters) return Open(fileName, true, false);
    int wanted = parameters->GetApplyingIndex();
    return OpenWith(fileName, parameters->IsVisible(), parameters->IsReadOnly(),
                    [wanted](const std::vector<tvapi::WString>& names, int active) {
                        if (wanted < 0) return active;
                        return wanted < static_cast<int>(names.size()) ? wanted : -1;
                    });
}

// A new untitled document with the template file's content.
tvapi::SmartPtr<tvapi::ITavraDocument> Documents::AddNewDocumentFromTemplate(const tvapi::WString& templatePath,
                                                                             bool visible) {
    ReadResult file = Read(templatePath);
    if (!file.ok || !MayCreate(file.data.type)) return {};
    Ref<Document> document = Create(file.data.type, visible, false);
    document->Load(file, {});
    document->SetUntitledName(TVAPI_TEXT("Document") + Widen(std::to_string(++untitled_)));
    return Keep(document, &ApplicationEventLists::CreateDocument);
}

void Documents::Remove(Document& document) {
    auto it = std::find_if(open_.begin(), open_.end(), [&](const auto& d) { return d.get() == &document; });
    if (it == open_.end()) return;
    Ref<Document> keep = *it;
    open_.erase(it);
    if (active_ == &document) Activate(open_.empty() ? nullptr : open_.back().get());
}

void Documents::CloseAll(bool tell) {
    std::vector<Ref<Document>> closing;
    closing.swap(open_);
    active_ = nullptr;
    for (auto& document : closing) {
        if (tell) document->Subscribers().CloseDocument.Raise();
        document->Disconnect();
    }
}

}  // namespace tvsim
