// The simulated host's object model: an application with a document
// collection and documents that keep real state (names, paths, authors,
// changes), enough to drive the library end to end without the host.
#pragma once

#include <vector>

#include "sim/defaults_application.h"

namespace tvsim {

class Documents;

class Document final : public Object, public Default<tvapi::ITavraDocument> {
public:
    Document(Documents& owner, tvapi::tvDocumentTypeEnum type, tvapi::WString path, bool visible, bool read_only);

    tvapi::tvDocumentTypeEnum GetDocumentType() override { return type_; }
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
    bool SetChanged(bool value) override;
    tvapi::WString GetAuthor() override { return author_; }
    void SetAuthor(const tvapi::WString& value) override;
    tvapi::WString GetComment() override { return comment_; }
    void SetComment(const tvapi::WString& value) override;
    tvapi::WString GetOrganization() override { return organization_; }
    void SetOrganization(const tvapi::WString& value) override;
    bool GetDocumentGabarit(double* x1, double* y1, double* x2, double* y2) override;

    void Rename(tvapi::WString untitled) { untitled_ = std::move(untitled); }

private:
    Documents& owner_;
    tvapi::tvDocumentTypeEnum type_;
    tvapi::WString path_;
    tvapi::WString untitled_;
    tvapi::WString author_, comment_, organization_;
    bool visible_, read_only_;
    bool changed_ = false;
};

class Documents final : public Object, public Default<tvapi::IDocuments> {
public:
    Documents();

    tvapi::SmartPtr<tvapi::ITavraDocument> GetItem(int index) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> GetItemByFilePath(const tvapi::WString& filePath) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> Add(int documentType, bool visible) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> Open(const tvapi::WString& fileName, bool visible, bool readOnly) override;

    int Count() const { return static_cast<int>(open_.size()); }
    void Remove(Document* document);
    tvapi::ITavraDocument* Active() const { return active_; }
    void Activate(tvapi::ITavraDocument* document) { active_ = document; }

private:
    tvapi::SmartPtr<tvapi::ITavraDocument> Keep(Document* document);

    std::vector<tvapi::SmartPtr<tvapi::ITavraDocument>> open_;
    tvapi::ITavraDocument* active_ = nullptr;
    int untitled_ = 0;
};

class Application final : public Default<tvapi::IApplication> {
public:
    Application();

    void SetVisible(bool visible) override { visible_ = visible; }
    bool IsVisible() override { return visible_; }
    tvapi::SmartPtr<tvapi::IDocuments> GetDocuments() override { return documents_; }
    void SetActiveDocument(const tvapi::SmartPtr<tvapi::ITavraDocument>& value) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> GetActiveDocument() override;
    tvapi::WString GetApplicationName(bool fullName) override;
    tvapi::WString GetCurrentDirectory() override { return directory_; }
    void SetCurrentDirectory(const tvapi::WString& value) override { directory_ = value; }
    bool GetSystemVersion(int* major, int* minor, int* release, int* build) override;
    int GetBuildNumber() override { return kBuild; }

    static constexpr int kBuild = 2611;

private:
    bool visible_ = true;
    tvapi::WString directory_ = u"/home/user";
    tvapi::SmartPtr<tvapi::IDocuments> documents_;
    Documents* documents_impl_;
};

}  // namespace tvsim
