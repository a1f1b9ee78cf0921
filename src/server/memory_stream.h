// A ByteStream over memory: the request is given whole, the response is
// collected. Reading past the request's end fails as a closed socket does.
#pragma once

#include <cstring>
#include <string>

#include <boost/asio/error.hpp>
#include <boost/system/system_error.hpp>

#include "server/stream.h"

namespace tvapic::server {

class MemoryStream final : public ByteStream {
public:
    explicit MemoryStream(std::string request) : request_(std::move(request)) {}

    void ReadExact(void* buffer, std::size_t n) override {
        if (closed_ || request_.size() - read_ < n) {
            read_ = request_.size();
            throw boost::system::system_error(boost::asio::error::eof, "read");
        }
        std::memcpy(buffer, request_.data() + read_, n);
        read_ += n;
    }
    void WriteExact(const void* data, std::size_t n) override {
        if (closed_) throw boost::system::system_error(boost::asio::error::not_connected, "write");
        response_.append(static_cast<const char*>(data), n);
    }
    void Close() override { closed_ = true; }

    const std::string& response() const { return response_; }
    std::size_t unread() const { return request_.size() - read_; }
    bool closed() const { return closed_; }

private:
    std::string request_;
    std::string response_;
    std::size_t read_ = 0;
    bool closed_ = false;
};

}  // namespace tvapic::server
