#include "sim/model/application/application.h"

#include <filesystem>
#include <system_error>

#include "sim/model/documents/document.h"
#include "sim/model/documents/documents.h"
#include "sim/support/text.h"

namespace tvsim {

Application::Application() : events_(New<ApplicationEvents>()), documents_(New<Documents>(events_)) {
    SetCurrentFolder(StartDirectory());
}

tvapi::WString Application::StartDirectory() {
    std::error_code error;
    std::filesystem::path working = std::filesystem::current_path(error);
    return error ? tvapi::WString() : FromPath(working);
}

// Documents still held by callers stay valid objects, closed.
Application::~Application() { documents_->CloseAll(false); }

tvapi::SmartPtr<tvapi::IDocuments> Application::GetDocuments() { return documents_.As<tvapi::IDocuments>(); }

// There is no process to end: quitting closes every document unsaved and
// hides the application. A subscriber may refuse to let the documents close;
// the application then stays as it is.
void Application::Quit() {
    if (!events_->handlers.BeginCloseAllDocument.RaiseAllowing()) return;
    quit_requested_ = true;
    documents_->CloseAll();
    visible_ = false;
    events_->handlers.ApplicationDestroy.Raise();
}

// Only an open document of this application can become active.
void Application::SetActiveDocument(const tvapi::SmartPtr<tvapi::ITavraDocument>& value) {
    if (!value) return;
    value->SetActive();
}

tvapi::SmartPtr<tvapi::ITavraDocument> Application::GetActiveDocument() {
    return Share<tvapi::ITavraDocument>(documents_->Active());
}

// Commands are recorded, not run; positive numbers are the valid ones.
bool Application::ExecuteTavraCommand(int command, bool) {
    if (command <= 0) return false;
    executed_.push_back(command);
    return true;
}

tvapi::WString Application::GetApplicationName(bool fullName) {
    return fullName ? TVAPI_TEXT("Tavra simulated host ") + Widen(std::to_string(kBuild)) : tvapi::WString(TVAPI_TEXT("Tavra"));
}

namespace {
// Nobody is there to answer: the default button is taken, or the first.
int Answer(int defaultButton) { return defaultButton >= 1 && defaultButton <= 3 ? defaultButton : 1; }
}  // namespace

int Application::ShowMessageBox(const tvapi::WString& message, const tvapi::WString& caption,
                                tvapi::tvMessageBoxButtonsEnum, tvapi::tvMessageBoxIconEnum, int defaultButton) {
    last_message_ = {message, caption};
    return Answer(defaultButton);
}

int Application::ShowMessageDialog(const tvapi::WString& message, const tvapi::WString& caption,
                                   const tvapi::WString&, tvapi::tvMessageBoxButtonsEnum,
                                   tvapi::tvMessageBoxIconEnum, int defaultButton, const tvapi::WString&,
                                   const tvapi::WString&, const tvapi::WString&, bool, const tvapi::WString&) {
    last_message_ = {message, caption};
    return Answer(defaultButton);
}

bool Application::GetSystemVersion(int* major, int* minor, int* release, int* build) {
    *major = 26;
    *minor = 1;
    *release = 0;
    *build = kBuild;
    return true;
}

}  // namespace tvsim
