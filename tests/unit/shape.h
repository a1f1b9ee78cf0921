// A small host interface of the tests' own, outside the catalogue, over
// which the frame's and the converters' templates are instantiated, and a
// host object of it that counts its references and can lack a face or fail.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "tvapi/core.h"

class IShape : public tvapi::IAPIObject {
public:
    virtual int Corners() = 0;
    // An object handed back through an out-parameter.
    virtual void Find(tvapi::SmartPtr<IShape>* found) = 0;
    // A list the host refills.
    virtual void Collect(std::vector<tvapi::SmartPtr<IShape>>& shapes) = 0;

protected:
    ~IShape() = default;
};

template <>
struct tvapi::IAPIObjectIID<IShape> {
    static constexpr char text[37] = "0badf00d-0000-4000-8000-000000000001";
};

class Shape final : public IShape {
public:
    void HostReserved() override {}
    int AddRef() override { return ++refs; }
    int Release() override { return --refs; }
    void* QueryInterface(const char* iid) override {
        asked = iid;
        if (throws) throw std::runtime_error("query failed");
        if (is_shape && asked == tvapi::IAPIObjectIID<IShape>::text) return static_cast<IShape*>(this);
        if (has_object_face && asked == tvapi::IAPIObjectIID<tvapi::IAPIObject>::text)
            return static_cast<tvapi::IAPIObject*>(this);
        return nullptr;
    }
    int Corners() override { return 4; }
    void Find(tvapi::SmartPtr<IShape>* found) override { *found = tvapi::SmartPtr<IShape>(answer); }
    void Collect(std::vector<tvapi::SmartPtr<IShape>>& shapes) override {
        for (IShape* s : answers) shapes.emplace_back(s);
    }

    void* face() { return static_cast<tvapi::IAPIObject*>(this); }

    int refs = 1;
    bool is_shape = true;
    bool has_object_face = true;
    bool throws = false;
    std::string asked;
    IShape* answer = nullptr;
    std::vector<IShape*> answers;
};
