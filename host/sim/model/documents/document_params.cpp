#include "sim/model/documents/document_params.h"

namespace tvsim {

OpenDocumentParam::OpenDocumentParam() : Default<tvapi::IOpenDocumentParam>(this) {
    ExposePrimary<tvapi::IOpenDocumentParam>(this);
}

LoadCombinationsParam::LoadCombinationsParam(std::vector<tvapi::WString> names, int active)
    : Default<tvapi::ILoadCombinationsParam>(this), names_(std::move(names)), active_(active) {
    ExposePrimary<tvapi::ILoadCombinationsParam>(this);
}

}  // namespace tvsim
