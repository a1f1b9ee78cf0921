// The application's document collection: creates documents, opens them
// from files, keeps the open ones and knows which is active. Also the
// recover mode: reading damaged files record by record.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "sim/defaults_application.h"
#include "sim/model/events.h"
#include "sim/support/document_file.h"

namespace tvsim {

class Document;

class Documents final : public Object, public Default<tvapi::IDocuments> {
public:
    explicit Documents(Ref<ApplicationEvents> events);
    ~Documents() override;

    tvapi::SmartPtr<tvapi::ITavraDocument> GetItem(int index) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> GetItemByFilePath(const tvapi::WString& filePath) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> Add(int documentType, bool visible) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> Open(const tvapi::WString& fileName, bool visible, bool readOnly) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> OpenByLoadCombinationIndex(const tvapi::WString& fileName, bool visible,
                                                                      bool readOnly, int index) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> OpenByLoadCombinationName(const tvapi::WString& fileName, bool visible,
                                                                     bool readOnly,
                                                                     const tvapi::WString& name) override;
    std::vector<tvapi::WString> GetLoadCombinations(const tvapi::WString& fileName, int* activeIndex) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> AddWithDefaultSettings(int documentType, bool visible) override;
    void SetDocumentSynchronize(bool value) override { synchronize_ = value; }
    bool IsDocumentSynchronize() override { return synchronize_; }
    bool IsRecoverMode() override { return recover_; }
    void SetRecoverMode(bool value) override { recover_ = value; }
    tvapi::tvRecoverErrorEnum GetRecoverError() override;
    void ClearRecoverError() override;
    tvapi::SmartPtr<tvapi::ILoadCombinationsParam> GetLoadCombinationsParam(const tvapi::WString& fileName) override;
    tvapi::SmartPtr<tvapi::IOpenDocumentParam> GetOpenDocumentParam() override;
    tvapi::SmartPtr<tvapi::ITavraDocument> OpenDocument(
        const tvapi::WString& fileName, const tvapi::SmartPtr<tvapi::IOpenDocumentParam>& parameters) override;
    std::vector<std::int32_t> GetRecoverModeErrorList() override { return skipped_lines_; }
    tvapi::SmartPtr<tvapi::ITavraDocument> AddNewDocumentFromTemplate(const tvapi::WString& templatePath,
                                                                      bool visible) override;
    bool IsLockTemplatesSettings() override { return lock_templates_; }
    void SetLockTemplatesSettings(bool value) override { lock_templates_ = value; }

    // The model's side.
    Document* Active() const { return active_; }
    // Makes `document` (null: none) the active one, telling the documents
    // and the application's subscribers when that is a change.
    void Activate(Document* document);
    // The open document with that file, if any.
    Document* OpenAt(const tvapi::WString& path) const;
    void Remove(Document& document);
    // Every document, unsaved (the application is going). Subscribers of a
    // document hear it close, unless the whole collection is being destroyed.
    void CloseAll(bool tell = true);

private:
    // Picks the load combination to open among a file's; -1 for none that fits.
    using Pick = std::function<int(const std::vector<tvapi::WString>&, int active)>;

    Ref<Document> Create(int type, bool visible, bool read_only);
    // A new document joins the open ones and becomes the active one; the
    // application's subscribers hear of it by `event` (created or opened).
    using Announcement = HandlerList<tvapi::IApplicationEvents::CreateDocumentHandler> ApplicationEventLists::*;
    tvapi::SmartPtr<tvapi::ITavraDocument> Keep(const Ref<Document>& document, Announcement event);
    bool MayCreate(int type) const;
    ReadResult Read(const tvapi::WString& path);
    tvapi::SmartPtr<tvapi::ITavraDocument> OpenWith(const tvapi::WString& path, bool visible, bool read_only,
                                                    const Pick& pick);

    Ref<ApplicationEvents> events_;
    std::vector<Ref<Document>> open_;
    Document* active_ = nullptr;
    int untitled_ = 0;
    bool synchronize_ = false, recover_ = false, lock_templates_ = false;
    ReadError recover_error_ = ReadError::kNone;
    std::vector<std::int32_t> skipped_lines_;
};

}  // namespace tvsim
