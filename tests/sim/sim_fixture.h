// Tests of the simulated host through the library's C exports: each test
// starts the simulated application, works through handles, gives every
// handle back and stops it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/c_heap.h"
#include "sim/sim.h"
#include "tvAPIC.h"

namespace sim_test {

// Text of the library's unit; literals are written TVAPIC_TEXT("...").
using Text = std::basic_string<tvWChar>;

// A returned text as a string; the block is freed.
inline Text Take(tvWChar* text) {
    if (!text) return TVAPIC_TEXT("(null)");
    Text s(text);
    c_heap::Free(text);
    return s;
}

// One reference on a handle, given back when it goes.
struct Release {
    void operator()(void* handle) const { IAPIObject_Release(handle); }
};
using Handle = std::unique_ptr<void, Release>;

// The references the host counts on a handle's object.
inline int Refs(void* handle) {
    int count = IAPIObject_AddRef(handle);
    IAPIObject_Release(handle);
    return count - 1;
}

// An argument list of borrowed handles.
class List {
public:
    List(std::initializer_list<void*> handles) : v_(ObjectReferenceVector_Create(handles.size())) {
        uint64_t i = 0;
        for (void* h : handles) ObjectReferenceVector_Set(v_, i++, h);
    }
    ~List() { ObjectReferenceVector_Delete(v_); }
    ObjectReferenceVector_t* get() const { return v_; }

private:
    ObjectReferenceVector_t* v_;
};

// A drawing's views and layers manager, its views, its active view and that
// view's line segments.
struct Sheet {
    Handle manager, views, view, segments;
};
inline Sheet SheetOf(void* drawing) {
    Sheet s;
    s.manager = Handle(ITavraDocument2D_GetViewsAndLayersManager(drawing));
    s.views = Handle(IViewsAndLayersManager_GetViews(s.manager.get()));
    s.view = Handle(IViews_GetActiveView(s.views.get()));
    s.segments = Handle(IDrawingContainer_GetLineSegments(s.view.get()));
    return s;
}

class SimTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvsim_start();
        documents_ = Handle(IApplication_GetDocuments());
        folder_ = std::filesystem::temp_directory_path() /
                  ("tvsim-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
                   std::to_string(std::random_device()()));
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override {
        documents_ = Handle();
        tvsim_stop();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    void* documents() const { return documents_.get(); }
    const std::filesystem::path& folder() const { return folder_; }
    // A path in the test's own folder, as text.
    Text PathTo(const std::string& name) const { return (folder_ / name).string<tvWChar>(); }
    void WriteFile(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }
    std::string ReadFile(const std::string& name) const {
        std::ifstream in(folder_ / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }

    Handle NewDrawing() { return Handle(IDocuments_Add(documents(), 1, 1)); }

    // A new segment from (x1, y1) to (x2, y2).
    static Handle AddSegment(void* segments, double x1, double y1, double x2, double y2) {
        Handle segment(ILineSegments_Add(segments));
        ILineSegment_SetX1(segment.get(), x1);
        ILineSegment_SetY1(segment.get(), y1);
        ILineSegment_SetX2(segment.get(), x2);
        ILineSegment_SetY2(segment.get(), y2);
        return segment;
    }

private:
    Handle documents_;
    std::filesystem::path folder_;
};

}  // namespace sim_test
