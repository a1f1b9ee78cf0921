// The server's lines on the standard error stream, "API Server: " and what
// went wrong, which a flood of failing clients cannot multiply. Each kind of
// error (its text) gets at most one line a second; repeats within the second
// are counted, and the kind's next line, or one written when the second is
// over, stands for them all, ending in "(N times)". At most kMaxKinds kinds
// a second get lines of their own; errors of further kinds are counted
// together, in one line a second: "N errors of other kinds".
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tvapic::server {

class ErrorReport {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::duration kInterval = std::chrono::seconds(1);
    static constexpr std::size_t kMaxKinds = 32;

    // `write` takes each line without its end; by default the standard error stream.
    explicit ErrorReport(std::function<void(const std::string&)> write = WriteLine);

    void Add(const std::string& what, Clock::time_point now);
    // Writes the counts whose second is over. When the next count falls due;
    // nothing when none is held.
    std::optional<Clock::time_point> Flush(Clock::time_point now);
    // Writes every count held, due or not.
    void FlushAll();

    static void WriteLine(const std::string& line);

private:
    struct Kind {
        Clock::time_point quiet_until;  // no line of this kind before then
        int held = 0;                   // errors since its last line
    };
    void Write(const std::string& what, int times);
    void WriteOthers();
    // A kind whose second is over and that holds nothing needs no memory.
    void Forget(Clock::time_point now);

    std::function<void(const std::string&)> write_;
    std::map<std::string, Kind> kinds_;
    Kind others_;
};

}  // namespace tvapic::server
