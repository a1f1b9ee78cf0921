// The simulated application: the root object with the document collection,
// its own settings, a headless message box and a record of the commands it
// was asked to run.
#pragma once

#include <vector>

#include "sim/defaults_application.h"
#include "sim/model/events.h"
#include "sim/object.h"
#include "sim/support/text.h"

namespace tvsim {

class Documents;

// What the last message box or dialog showed.
struct ShownMessage {
    tvapi::WString message, caption;
};

class Application final : public Default<tvapi::IApplication> {
public:
    Application();
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    void SetVisible(bool visible) override { visible_ = visible; }
    bool IsVisible() override { return visible_; }
    tvapi::SmartPtr<tvapi::IDocuments> GetDocuments() override;
    void Quit() override;
    tvapi::SmartPtr<tvapi::IAPIObject> Events() override { return events_.As<tvapi::IAPIObject>(); }
    void SetActiveDocument(const tvapi::SmartPtr<tvapi::ITavraDocument>& value) override;
    tvapi::SmartPtr<tvapi::ITavraDocument> GetActiveDocument() override;
    void SetHideMessage(tvapi::tvHideMessageEnum value) override { hide_message_ = value; }
    tvapi::tvHideMessageEnum GetHideMessage() override { return hide_message_; }
    bool ExecuteTavraCommand(int command, bool wait) override;
    bool IsTavraCommandEnable(int command) override { return command > 0; }
    tvapi::WString GetApplicationName(bool fullName) override;
    int ShowMessageBox(const tvapi::WString& message, const tvapi::WString& caption,
                       tvapi::tvMessageBoxButtonsEnum buttons, tvapi::tvMessageBoxIconEnum icon,
                       int defaultButton) override;
    int ShowMessageDialog(const tvapi::WString& message, const tvapi::WString& caption, const tvapi::WString& details,
                          tvapi::tvMessageBoxButtonsEnum buttons, tvapi::tvMessageBoxIconEnum icon,
                          int defaultButton, const tvapi::WString& button1Caption,
                          const tvapi::WString& button2Caption, const tvapi::WString& button3Caption,
                          bool showCheckBox, const tvapi::WString& checkBoxCaption) override;
    // Relative paths of every file operation resolve against it.
    tvapi::WString GetCurrentDirectory() override { return CurrentFolder(); }
    void SetCurrentDirectory(const tvapi::WString& value) override { SetCurrentFolder(value); }
    bool GetSystemVersion(int* major, int* minor, int* release, int* build) override;
    void SetEnableTaskAccess(bool value) override { task_access_ = value; }
    bool IsEnableTaskAccess() override { return task_access_; }
    void PumpWaitingMessages() override {}
    void SetLockPumpMessages(bool value) override { pump_locked_ = value; }
    bool IsLockPumpMessages() override { return pump_locked_; }
    int GetBuildNumber() override { return kBuild; }

    // Where the current directory starts: the process's working directory.
    static tvapi::WString StartDirectory();

    const ShownMessage& LastMessage() const { return last_message_; }
    const std::vector<int>& ExecutedCommands() const { return executed_; }
    bool QuitRequested() const { return quit_requested_; }

    static constexpr int kBuild = 2611;

private:
    bool visible_ = true;
    tvapi::tvHideMessageEnum hide_message_{};
    bool task_access_ = true, pump_locked_ = false, quit_requested_ = false;
    ShownMessage last_message_;
    std::vector<int> executed_;
    Ref<ApplicationEvents> events_;
    Ref<Documents> documents_;
};

}  // namespace tvsim
