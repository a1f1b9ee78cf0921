// A document of the simulated host: its properties, its file (written by
// Save and SaveAs, read back by the collection's Open) and its place in the
// document collection. Two-dimensional documents add their drawing
// (drawing_document.h).
#pragma once

#include <vector>

#include "sim/defaults_application.h"
#include "sim/model/events.h"
#include "sim/support/document_file.h"
#include "sim/support/geometry.h"

namespace tvsim {

class Documents;

class Document : public Object, public Default<tvapi::ITavraDocument> {
public:
    Document(Documents& owner, int type, bool visible, bool read_only);

    tvapi::tvDocumentTypeEnum GetDocumentType() override;
    bool Close(bool save) override;
    bool Save() override;
    bool SaveAs(const tvapi::WString& fileName) override;
    tvapi::WString GetName() override;
    tvapi::WString GetFullPath() override { return path_; }
    tvapi::WString GetPath() override;
    bool IsVisible() override { return visible_; }
    bool IsActive() override;
    void SetActive() override;
    bool IsReadOnly() override { return read_only_; }
    void SetReadOnly(bool value) override { read_only_ = value; }
    bool IsChanged() override { return changed_; }
    bool Delete() override;
    bool SaveToVersion(const tvapi::WString& fileName, tvapi::tvSaveDocumentVersionEnum version) override;
    double GetCreationDate() override { return created_; }
    double GetLastChangeDate() override { return last_change_; }
    tvapi::WString GetOrganization() override { return organization_; }
    void SetOrganization(const tvapi::WString& value) override;
    tvapi::WString GetMetadata() override { return metadata_; }
    void SetMetadata(const tvapi::WString& value) override;
    bool WriteMetadataToFile(const tvapi::WString& fileName) override;
    bool ApplyMetadataFromFile(const tvapi::WString& fileName) override;
    bool ActivateToolbarSet(const tvapi::WString& name) override;
    bool RedrawDocument(bool) override { return IsOpen(); }
    tvapi::WString GetAuthor() override { return author_; }
    void SetAuthor(const tvapi::WString& value) override;
    void SetComment(const tvapi::WString& value) override;
    tvapi::WString GetComment() override { return comment_; }
    void SetDocumentTypeId(const tvapi::WString& value) override;
    tvapi::WString GetDocumentTypeId() override { return type_id_; }
    int GetOpenVersion() override { return open_version_; }
    // A simulated document refers to no other files.
    int GetExternalFilesNames(bool, std::vector<tvapi::WString>& fileNames) override {
        fileNames.clear();
        return 0;
    }
    bool SetChanged(bool value) override;
    bool Draw() override { return IsOpen(); }
    bool GetDocumentGabarit(double* x1, double* y1, double* x2, double* y2) override;
    tvapi::WString GetObjectNameByType(int objectType) override;
    double GetTextLength(const tvapi::WString& value, int textStyleNumber) override;
    tvapi::WString GetActiveToolbarSet() override { return toolbar_set_; }
    // The document's subscribers keep their handlers after it closes.
    tvapi::SmartPtr<tvapi::IAPIObject> Events() override { return events_.As<tvapi::IAPIObject>(); }

    // The model's side.
    int Type() const { return type_; }
    bool IsOpen() const { return owner_ != nullptr; }
    const tvapi::WString& FullPath() const { return path_; }
    void SetUntitledName(tvapi::WString name) { untitled_ = std::move(name); }
    void MarkChanged();
    // Takes a file's content; `path` is where it came from, empty for a template.
    void Load(const ReadResult& file, const tvapi::WString& path);
    // A new document that will be saved to `path`.
    void BindTo(tvapi::WString path) { path_ = std::move(path); }
    const std::vector<tvapi::WString>& LoadCombinations() const { return load_combinations_; }
    int ActiveCombination() const { return active_combination_; }
    bool SelectCombination(int index);
    // Out of the collection: closed, and its content let go.
    void Disconnect();
    DocumentEventLists& Subscribers() { return events_->handlers; }

protected:
    ~Document() override = default;
    virtual void SaveContent(DocumentData&) const {}
    virtual void LoadContent(const DocumentData&) {}
    virtual void DisposeContent() {}
    virtual Box ContentBounds() const { return {}; }
    // A new document's own setting up is no change of it.
    void SettleNew() {
        changed_ = false;
        last_change_ = created_;
    }

private:
    DocumentData Snapshot() const;
    bool Write(const tvapi::WString& path) const;

    Documents* owner_;
    Ref<DocumentEvents> events_ = New<DocumentEvents>();
    int type_;
    tvapi::WString path_, untitled_;
    tvapi::WString author_, comment_, organization_, metadata_, type_id_, toolbar_set_;
    bool visible_, read_only_;
    bool changed_ = false;
    double created_, last_change_;
    int open_version_ = 0;
    std::vector<tvapi::WString> load_combinations_{TVAPI_TEXT("Base")};
    int active_combination_ = 0;
};

// Now as the host writes dates: days since 30 December 1899, UTC.
double NowAsDate();

}  // namespace tvsim
