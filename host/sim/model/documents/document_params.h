// Small parameter objects of the document collection: how to open a
// document, and a file's load combinations.
#pragma once

#include <vector>

#include "sim/defaults_application.h"
#include "sim/defaults_drawing.h"

namespace tvsim {

// Visible, writable, and the file's own active load combination (-1) unless set.
class OpenDocumentParam final : public Object, public Default<tvapi::IOpenDocumentParam> {
public:
    OpenDocumentParam();

    int GetApplyingIndex() override { return applying_index_; }
    bool IsReadOnly() override { return read_only_; }
    bool IsVisible() override { return visible_; }
    void SetApplyingIndex(int value) override { applying_index_ = value; }
    void SetReadOnly(bool value) override { read_only_ = value; }
    void SetVisible(bool value) override { visible_ = value; }

private:
    int applying_index_ = -1;
    bool read_only_ = false, visible_ = true;
};

// A file's load combinations as it holds them; none is protected.
class LoadCombinationsParam final : public Object, public Default<tvapi::ILoadCombinationsParam> {
public:
    LoadCombinationsParam(std::vector<tvapi::WString> names, int active);

    int GetApplyingIndex() override { return active_; }
    std::vector<tvapi::WString> GetLoadCombinations() override { return names_; }
    bool GetProtectedFlags(std::vector<bool>& flags) override {
        flags.assign(names_.size(), false);
        return true;
    }

private:
    std::vector<tvapi::WString> names_;
    int active_;
};

}  // namespace tvsim
