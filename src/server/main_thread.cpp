#include "server/main_thread.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>

#include "tvEventsBus/EventsBus.h"

namespace tvapic::server {
namespace {

// A call posted to the main thread. The server thread and the message each
// hold it; the last of the two to let go deletes it, so a message that
// arrives after the server stopped waiting still finds it.
class PostedCall {
public:
    explicit PostedCall(std::function<void()> work) : work_(std::move(work)) {}

    void Run() {
        {
            std::lock_guard lock(mutex_);
            if (state_ != State::Posted) return;  // dropped at a stop
            state_ = State::Running;
        }
        std::exception_ptr error;
        try {
            work_();
        } catch (...) {
            error = std::current_exception();
        }
        {
            std::lock_guard lock(mutex_);
            error_ = error;
            state_ = State::Done;
        }
        done_.notify_all();
    }

    bool Wait(const std::atomic<bool>& stopping) {
        using namespace std::chrono_literals;
        std::unique_lock lock(mutex_);
        // The stop flag has no way to wake this wait: look at it a few times a second.
        while (!done_.wait_for(lock, 50ms, [this] { return state_ == State::Done; })) {
            if (stopping && state_ == State::Posted) {
                state_ = State::Dropped;
                return false;
            }
        }
        if (error_) std::rethrow_exception(error_);
        return true;
    }

    void Release() {
        if (holders_.fetch_sub(1) == 1) delete this;
    }

private:
    enum class State { Posted, Running, Done, Dropped };

    std::function<void()> work_;
    std::mutex mutex_;
    std::condition_variable done_;
    State state_ = State::Posted;
    std::exception_ptr error_;
    std::atomic<int> holders_{2};  // the server thread and the message
};

}  // namespace

bool RunOnMainThread(std::function<void()> work, const std::atomic<bool>& stopping) {
    auto* call = new PostedCall(std::move(work));
    try {
        EventsBus::Post(kRunCallMessage, 0, reinterpret_cast<std::int64_t>(call), nullptr);
    } catch (...) {
        call->Release();  // the message's hold: it never left
        call->Release();
        throw;
    }
    struct Letgo {
        PostedCall* call;
        ~Letgo() { call->Release(); }
    } letgo{call};
    return call->Wait(stopping);
}

void RunPostedCall(std::int64_t posted) {
    auto* call = reinterpret_cast<PostedCall*>(posted);
    call->Run();
    call->Release();
}

}  // namespace tvapic::server
