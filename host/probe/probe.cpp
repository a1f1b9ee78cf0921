#include "probe/probe.h"

#include "tvapi/accessor_setters.h"

#include <cstring>
#include <mutex>
#include <stdexcept>
#include <unordered_map>

namespace tvprobe {
namespace {

std::mutex faces_mutex;
std::unordered_map<const void*, Object*>& FaceOwners() {
    static std::unordered_map<const void*, Object*> owners;
    return owners;
}
int next_id = 1;

// The IAPIObject face every probe object has.
class BaseFace final : public tvapi::IAPIObject, public FaceBase {
public:
    explicit BaseFace(Object& o) : o_(o) {}
    void HostReserved() override {}
    int AddRef() override { return o_.AddRef(); }
    int Release() override { return o_.Release(); }
    void* QueryInterface(const char* iid) override { return o_.Query(iid); }

private:
    Object& o_;
};

}  // namespace

Object::Object() : id_(next_id++) {
    auto base = std::make_unique<BaseFace>(*this);
    base_ = static_cast<tvapi::IAPIObject*>(base.get());
    by_iid_[tvapi::IAPIObjectIID<tvapi::IAPIObject>::text] = base_;
    by_name_["IAPIObject"] = base_;
    std::lock_guard lock(faces_mutex);
    FaceOwners()[base_] = this;
    owners_.push_back(std::move(base));
}

Object::~Object() {
    std::lock_guard lock(faces_mutex);
    for (auto& [name, face] : by_name_) FaceOwners().erase(face);
}

Object* Object::Create(std::initializer_list<const char*> interfaces) {
    return Create(std::vector<std::string>(interfaces.begin(), interfaces.end()));
}

Object* Object::Create(const std::vector<std::string>& interfaces) {
    auto* o = new Object();
    for (const auto& name : interfaces) o->AddFace(name);
    return o;
}

void Object::AddFace(const std::string& name) {
    if (by_name_.count(name)) return;
    const FaceFactory* factory = FindFace(name);
    if (!factory) throw std::invalid_argument("probe: no interface named " + name);
    FaceMade made = factory->make(*this);
    by_name_[name] = made.face;
    if (factory->iid) by_iid_[factory->iid] = made.face;
    std::lock_guard lock(faces_mutex);
    FaceOwners()[made.face] = this;
    owners_.push_back(std::move(made.owner));
}

Object* Object::Owning(const void* face) {
    std::lock_guard lock(faces_mutex);
    auto it = FaceOwners().find(face);
    return it == FaceOwners().end() ? nullptr : it->second;
}

int Object::AddRef() {
    if (watch) watch("AddRef", nullptr);
    ++addrefs;
    return ++refs_;
}

int Object::Release() {
    if (watch) watch("Release", nullptr);
    ++releases;
    int left = --refs_;
    if (left == 0) delete this;
    return left;
}

void* Object::Query(const char* iid) {
    ++queries;
    auto it = by_iid_.find(iid);
    void* face = it == by_iid_.end() ? nullptr : it->second;
    if (watch) watch("Query", iid);  // after the lookup: a watch may write on the text
    return face;
}

void* Object::Face(const std::string& interface) const {
    auto it = by_name_.find(interface);
    return it == by_name_.end() ? nullptr : it->second;
}

void InstallAsRoot(Object* object, const std::string& root) {
    void* face = object ? object->Face(root) : nullptr;
    if (root == "ITransferService") tvapi_standin::SetTransferService(static_cast<tvapi::ITransferService*>(face));
    else tvapi_standin::SetApplication(static_cast<tvapi::IApplication*>(face));
}

std::string DescribeObject(const void* face) {
    Object* o = Object::Owning(face);
    return o ? "obj" + std::to_string(o->id()) : "foreign";
}

std::string Narrow(const tvapi::WString& text) {
    std::string out;
    for (auto c : text) out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

}  // namespace tvprobe
