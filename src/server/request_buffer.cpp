#include "server/request_buffer.h"

#include <algorithm>

namespace tvapic::server {

std::span<char> RequestBuffer::Room() {
    std::size_t lacking = needed_ > used_ ? needed_ - used_ : 0;
    std::size_t room = std::clamp(lacking, kSmallRead, kReadPiece);
    bytes_.resize(used_ + room);
    return {bytes_.data() + used_, room};
}

Decoded RequestBuffer::Arrived(std::size_t n) {
    used_ += std::min(n, bytes_.size() - used_);
    if (used_ < needed_) return NeedBytes{needed_};
    Decoded decoded = Decode(std::string_view(bytes_.data(), used_));
    if (const auto* need = std::get_if<NeedBytes>(&decoded)) needed_ = need->total;
    return decoded;
}

}  // namespace tvapic::server
