// server_load: drives a running API Server over loopback with many clients
// at once and checks every answer it can.
//
//   server_load --port N [--calls 3000] [--threads 8] [--seconds 120]
//               [--fault-rate 0.05] [--silent 1] [--seed 1]
//
// Each client thread issues calls of the remotable functions with handles the
// host gave out, null handles and forged ones. A call whose object handle is
// null or forged has one right answer, its signature's null answer, compared
// byte for byte; any other answer must parse exactly by the function's
// response kinds (slot flags as sent, texts of valid UTF-8) with nothing left
// over. Mixed in are faults: clients that reset the connection in the middle
// of their request or of the response, and a client that connects and stays
// silent, which the server must drop at its deadline while the others wait.
//
// Reports calls made, answered correctly, wrong, and lost (no complete
// answer: refused, reset or timed out). Exits with 0 only when every call
// was answered correctly and every silent client was dropped in time.
//
// The simulated host saves and deletes documents as files under the names
// it is given: start it in a scratch directory. Every text the tool sends is
// empty or a relative name starting with "server_load".
#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>

#include "server/wire_signatures.h"

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// ---------------------------------------------------------------------------
// Signatures

enum class Kind { U64, I32, F64, String, I32Slot, F64Slot, StringVector };

std::optional<Kind> KindNamed(std::string_view name) {
    if (name == "u64") return Kind::U64;
    if (name == "i32") return Kind::I32;
    if (name == "f64") return Kind::F64;
    if (name == "string") return Kind::String;
    if (name == "i32 slot") return Kind::I32Slot;
    if (name == "f64 slot") return Kind::F64Slot;
    if (name == "string vector") return Kind::StringVector;
    return std::nullopt;
}

struct Function {
    std::string name;
    std::string interface_name;
    std::vector<Kind> request;
    std::vector<Kind> response;
    // Operations of a rooted interface act on the application itself: they
    // take no object handle of their own, so a null one cannot be sent.
    bool rooted = false;
};

std::vector<Kind> KindList(const char* list, const char* function) {
    std::vector<Kind> out;
    std::stringstream in(list);
    for (std::string name; std::getline(in, name, ',');) {
        auto kind = KindNamed(name);
        if (!kind) {
            std::fprintf(stderr, "server_load: %s: unknown kind '%s'\n", function, name.c_str());
            std::exit(2);
        }
        out.push_back(*kind);
    }
    return out;
}

std::vector<Function> RemotableFunctions() {
    std::vector<Function> out;
    for (const auto& signature : tvapic::server::kWireSignatures) {
        Function f;
        f.name = signature.name;
        f.interface_name = f.name.substr(0, f.name.find('_'));
        f.request = KindList(signature.request, signature.name);
        f.response = KindList(signature.response, signature.name);
        f.rooted = f.interface_name == "IApplication" || f.interface_name == "ITransferService";
        out.push_back(std::move(f));
    }
    return out;
}

const Function* Find(const std::vector<Function>& functions, std::string_view name) {
    for (const auto& f : functions) {
        if (f.name == name) return &f;
    }
    return nullptr;
}

// ---------------------------------------------------------------------------
// Encoding

template <class T>
void Put(std::string& out, T value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out.append(bytes, sizeof value);
}

void PutText(std::string& out, std::string_view utf8) {
    Put<std::uint64_t>(out, utf8.size());
    out.append(utf8);
}

std::string Hex(std::string_view bytes, std::size_t limit = 96) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (std::size_t i = 0; i < bytes.size() && i < limit; ++i) {
        auto b = static_cast<unsigned char>(bytes[i]);
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    if (bytes.size() > limit) out += "...";
    return out.empty() ? "(nothing)" : out;
}

// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates,
// nothing above U+10FFFF), as the server's encoder writes it.
bool ValidUtf8(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size()) {
        auto b = static_cast<unsigned char>(s[i]);
        std::size_t n;
        std::uint32_t cp;
        if (b < 0x80) {
            ++i;
            continue;
        } else if ((b & 0xE0) == 0xC0) {
            n = 1, cp = b & 0x1F;
        } else if ((b & 0xF0) == 0xE0) {
            n = 2, cp = b & 0x0F;
        } else if ((b & 0xF8) == 0xF0) {
            n = 3, cp = b & 0x07;
        } else {
            return false;
        }
        if (i + n >= s.size()) return false;
        for (std::size_t k = 1; k <= n; ++k) {
            auto c = static_cast<unsigned char>(s[i + k]);
            if ((c & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (c & 0x3F);
        }
        static const std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
        if (cp < smallest[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
        i += n + 1;
    }
    return true;
}

// ---------------------------------------------------------------------------
// The answers a call may get

struct Expectation {
    // Exact: the answer is `exact`, byte for byte. Otherwise it must parse by
    // `kinds`, each slot's flag being the one in `slot_flags`.
    bool is_exact = false;
    std::string exact;
    std::vector<Kind> kinds;
    std::vector<std::uint8_t> slot_flags;
};

enum class Verdict { Correct, Incomplete, Wrong };

struct Reader {
    std::string_view bytes;
    std::size_t at = 0;
    bool Take(std::size_t n, std::string_view* out = nullptr) {
        if (bytes.size() - at < n) return false;
        if (out) *out = bytes.substr(at, n);
        at += n;
        return true;
    }
    std::optional<std::uint64_t> U64() {
        std::string_view raw;
        if (!Take(8, &raw)) return std::nullopt;
        std::uint64_t v;
        std::memcpy(&v, raw.data(), 8);
        return v;
    }
};

// Parses one text; Incomplete when the bytes end inside it.
Verdict ParseText(Reader& in, std::string& why) {
    auto count = in.U64();
    if (!count) return Verdict::Incomplete;
    std::string_view text;
    if (*count > in.bytes.size() - in.at) return Verdict::Incomplete;
    in.Take(static_cast<std::size_t>(*count), &text);
    if (!ValidUtf8(text)) {
        why = "text is not valid UTF-8";
        return Verdict::Wrong;
    }
    return Verdict::Correct;
}

Verdict Judge(const Expectation& e, std::string_view answer, std::string& why) {
    if (e.is_exact) {
        if (answer == e.exact) return Verdict::Correct;
        if (answer.size() < e.exact.size() && e.exact.compare(0, answer.size(), answer) == 0) {
            why = "answer ends early";
            return Verdict::Incomplete;
        }
        why = "expected " + Hex(e.exact);
        return Verdict::Wrong;
    }
    Reader in{answer};
    std::size_t slot = 0;
    for (Kind kind : e.kinds) {
        switch (kind) {
            case Kind::I32Slot:
            case Kind::F64Slot: {
                std::string_view flag;
                if (!in.Take(1, &flag)) return Verdict::Incomplete;
                if (static_cast<std::uint8_t>(flag[0]) != e.slot_flags.at(slot)) {
                    why = "slot " + std::to_string(slot) + " has flag " + std::to_string(std::uint8_t(flag[0])) +
                          ", sent " + std::to_string(e.slot_flags[slot]);
                    return Verdict::Wrong;
                }
                ++slot;
                if (flag[0] == 0 && !in.Take(kind == Kind::I32Slot ? 4 : 8)) return Verdict::Incomplete;
                break;
            }
            case Kind::I32:
                if (!in.Take(4)) return Verdict::Incomplete;
                break;
            case Kind::U64:
            case Kind::F64:
                if (!in.Take(8)) return Verdict::Incomplete;
                break;
            case Kind::String: {
                Verdict v = ParseText(in, why);
                if (v != Verdict::Correct) return v;
                break;
            }
            case Kind::StringVector: {
                // A null vector is nothing at all: read one only if bytes remain.
                if (in.at == answer.size()) break;
                auto count = in.U64();
                if (!count) return Verdict::Incomplete;
                for (std::uint64_t i = 0; i < *count; ++i) {
                    Verdict v = ParseText(in, why);
                    if (v != Verdict::Correct) return v;
                }
                break;
            }
        }
    }
    if (in.at != answer.size()) {
        why = std::to_string(answer.size() - in.at) + " bytes left over";
        return Verdict::Wrong;
    }
    return Verdict::Correct;
}

// ---------------------------------------------------------------------------
// Connections with deadlines

class Connection {
public:
    Connection(asio::io_context& io, std::uint16_t port) : io_(io), port_(port), socket_(io) {}

    bool Connect(Clock::time_point deadline) {
        tcp::endpoint server(asio::ip::address_v4::loopback(), port_);
        return !Await(deadline, [&](auto done) { socket_.async_connect(server, [done](auto e) { done(e, 0); }); });
    }
    // Sends what the server takes; a server that closes early is no error here.
    void Send(std::string_view bytes, Clock::time_point deadline) {
        Await(deadline, [&](auto done) { asio::async_write(socket_, asio::buffer(bytes.data(), bytes.size()), done); });
    }
    void EndSending() {
        boost::system::error_code ignored;
        socket_.shutdown(tcp::socket::shutdown_send, ignored);
    }
    // Reads until the server closes (true) or a reset, error or the deadline
    // ends the connection (false); bytes that came stay in `into`.
    bool ReadToEnd(std::string& into, Clock::time_point deadline, std::size_t at_most = SIZE_MAX) {
        char buffer[4096];
        while (into.size() < at_most) {
            std::size_t n = 0;
            std::size_t room = std::min(sizeof buffer, at_most - into.size());
            auto error = Await(deadline, [&](auto done) { socket_.async_read_some(asio::buffer(buffer, room), done); },
                               &n);
            into.append(buffer, n);
            if (error == asio::error::eof) return true;
            if (error) return false;
        }
        return false;
    }
    // Ends the connection with a reset rather than an orderly close.
    void Reset() {
        boost::system::error_code ignored;
        socket_.set_option(asio::socket_base::linger(true, 0), ignored);
        socket_.close(ignored);
    }

private:
    // Runs one operation on this thread's context until it completes or the
    // deadline passes; then the socket is closed, which cancels it.
    template <class Start>
    boost::system::error_code Await(Clock::time_point deadline, Start start, std::size_t* transferred = nullptr) {
        boost::system::error_code result = asio::error::would_block;
        std::size_t n = 0;
        start([&](boost::system::error_code e, std::size_t k) {
            result = e;
            n = k;
        });
        io_.restart();
        io_.run_until(deadline);
        if (result == asio::error::would_block) {
            boost::system::error_code ignored;
            socket_.close(ignored);
            io_.restart();
            io_.run();
            result = asio::error::timed_out;
        }
        if (transferred) *transferred = n;
        return result;
    }

    asio::io_context& io_;
    std::uint16_t port_;
    tcp::socket socket_;
};

// ---------------------------------------------------------------------------
// Handles the host gave out

// Calls that give handles of the remotable interfaces, in an order in which
// each one's own handle is already known: the handle is filed under the
// interfaces a client would use it with.
struct Producer {
    const char* function;
    std::vector<const char*> yields;
};

const std::vector<Producer> kProducers = {
    {"IApplication_GetDocuments", {"IDocuments"}},
    {"IDocuments_Add", {"ITavraDocument", "ITavraDocument2D", "IDrawingContainer"}},
    {"IApplication_GetActiveDocument", {"ITavraDocument", "ITavraDocument2D", "IDrawingContainer"}},
    {"ITavraDocument2D_GetViewsAndLayersManager", {"IViewsAndLayersManager"}},
    {"IViewsAndLayersManager_GetViews", {"IViews"}},
    {"IViews_GetActiveView", {"IDrawingContainer"}},
    {"IViews_GetView", {"IDrawingContainer"}},
    {"IViews_Add", {"IDrawingContainer"}},
    {"IDrawingContainer_GetLineSegments", {"ILineSegments"}},
    {"ILineSegments_Add", {"ILineSegment", "IDrawingObject"}},
    {"ILineSegments_GetLineSegment", {"ILineSegment", "IDrawingObject"}},
};

struct HandlePool {
    std::map<std::string, std::vector<std::uint64_t>> by_interface;
    std::vector<std::uint64_t> all;

    void Add(std::uint64_t handle, const std::vector<const char*>& interfaces) {
        if (!handle) return;
        for (const char* name : interfaces) {
            auto& list = by_interface[name];
            if (std::find(list.begin(), list.end(), handle) == list.end()) list.push_back(handle);
        }
        if (std::find(all.begin(), all.end(), handle) == all.end()) all.push_back(handle);
    }
};

// ---------------------------------------------------------------------------
// Requests

// What a call's object handle is; the application's own functions take none.
enum class HandleMode { Valid, Null, Forged, Application, UnknownName };
constexpr const char* kModeNames[] = {"valid handle", "null handle", "forged handle", "application, no handle",
                                      "unknown name"};
constexpr std::size_t kModes = std::size(kModeNames);

struct Call {
    const Function* function = nullptr;
    std::string request;
    Expectation expected;
    HandleMode mode = HandleMode::Valid;
};

class Generator {
public:
    Generator(const std::vector<Function>& functions, const HandlePool& pool, std::uint64_t seed)
        : functions_(functions), pool_(pool), random_(seed) {}

    Call Next() {
        Call call;
        if (Chance(0.01)) return UnknownName();
        const Function& f = functions_[Below(functions_.size())];
        call.function = &f;
        call.mode = HandleMode::Application;
        if (!f.rooted) {
            double r = Uniform();
            call.mode = r < 0.6 ? HandleMode::Valid : r < 0.75 ? HandleMode::Null : HandleMode::Forged;
        }
        Encode(f, call.mode, call);
        return call;
    }

    // A request built as for a call, for fault injection.
    std::string AnyRequest() { return Next().request; }
    std::size_t Below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
    double Uniform() { return std::uniform_real_distribution<double>(0, 1)(random_); }
    bool Chance(double p) { return Uniform() < p; }

private:
    Call UnknownName() {
        Call call;
        call.mode = HandleMode::UnknownName;
        const Function& f = functions_[Below(functions_.size())];
        std::string name = f.name;
        // Names are compared byte for byte: a changed letter case is unknown.
        if (Chance(0.5)) {
            for (char& c : name) {
                auto u = static_cast<unsigned char>(c);
                c = static_cast<char>(std::islower(u) ? std::toupper(u) : std::tolower(u));
            }
        } else {
            name += "_Unknown";
        }
        PutText(call.request, name);
        Put<std::uint64_t>(call.request, 0);
        call.expected.is_exact = true;  // nothing read after the name, nothing answered
        return call;
    }

    void Encode(const Function& f, HandleMode self_mode, Call& call) {
        std::string& out = call.request;
        Expectation& e = call.expected;
        PutText(out, f.name);
        std::string null_answer_slots;
        bool first = true;
        for (Kind kind : f.request) {
            switch (kind) {
                case Kind::U64:
                    if (first && !f.rooted) Put<std::uint64_t>(out, Handle(self_mode, f.interface_name));
                    else Put<std::uint64_t>(out, Argument());
                    break;
                case Kind::I32:
                    Put<std::int32_t>(out, Int());
                    break;
                case Kind::F64:
                    Put<double>(out, Real());
                    break;
                case Kind::String:
                    PutText(out, Text());
                    break;
                case Kind::I32Slot:
                case Kind::F64Slot: {
                    std::uint8_t flag = Chance(0.7) ? 0 : static_cast<std::uint8_t>(1 + Below(255));
                    std::string slot(1, static_cast<char>(flag));
                    if (flag == 0 && kind == Kind::I32Slot) Put<std::int32_t>(slot, Int());
                    if (flag == 0 && kind == Kind::F64Slot) Put<double>(slot, Real());
                    out += slot;
                    // A function not called leaves its slots as they came.
                    null_answer_slots += slot;
                    e.slot_flags.push_back(flag);
                    break;
                }
                case Kind::StringVector:
                    break;  // not a request kind
            }
            first = false;
        }
        e.kinds = f.response;
        if (self_mode == HandleMode::Valid || self_mode == HandleMode::Application) return;
        e.is_exact = true;
        e.exact = null_answer_slots;
        for (Kind kind : f.response) {
            if (kind == Kind::I32) e.exact.append(4, '\0');
            if (kind == Kind::U64 || kind == Kind::String) e.exact.append(8, '\0');  // null object, empty text
        }
    }

    // A value no handle given out can have: odd (objects are aligned), in the
    // kernel's half of the address space, or in the never-mapped first page.
    std::uint64_t Forged() {
        switch (Below(3)) {
            case 0:
                return pool_.all.empty() ? 1 : pool_.all[Below(pool_.all.size())] + 1;
            case 1:
                return random_() | (std::uint64_t{1} << 63);
            default:
                return 1 + Below(4095);
        }
    }

    std::uint64_t Handle(HandleMode mode, const std::string& interface_name) {
        if (mode == HandleMode::Null) return 0;
        if (mode == HandleMode::Forged) return Forged();
        auto typed = pool_.by_interface.find(interface_name);
        if (typed != pool_.by_interface.end() && !typed->second.empty() && Chance(0.85))
            return typed->second[Below(typed->second.size())];
        return pool_.all.empty() ? 0 : pool_.all[Below(pool_.all.size())];
    }

    // A u64 argument other than the object itself: another object, null, a
    // forged handle or an integer.
    std::uint64_t Argument() {
        switch (Below(4)) {
            case 0:
                return pool_.all.empty() ? 0 : pool_.all[Below(pool_.all.size())];
            case 1:
                return 0;
            case 2:
                return Forged();
            default:
                return Below(1000);
        }
    }

    std::int32_t Int() {
        static const std::int32_t edges[] = {0, 1, 2, 3, -1, INT32_MIN, INT32_MAX};
        if (Chance(0.7)) return edges[Below(std::size(edges))];
        return static_cast<std::int32_t>(random_());
    }

    double Real() {
        static const double edges[] = {0.0, 1.0, -2.5, 1e300, -0.0, std::numeric_limits<double>::infinity(),
                                       std::numeric_limits<double>::quiet_NaN()};
        if (Chance(0.5)) return edges[Below(std::size(edges))];
        return std::uniform_real_distribution<double>(-1e4, 1e4)(random_);
    }

    // Empty, or a name that the host may take for a file's: always relative
    // and starting with "server_load", so that whatever the host saves or
    // deletes under it is the tool's own, in the host's working directory.
    std::string Text() {
        static const char* const pieces[] = {"a", "Document", "/", "\xc3\xa9", "\xe2\x9c\x93",
                                             "\xf0\x9d\x84\x9e", " ", "\\", "0", ".txt"};
        std::size_t n = Below(12);
        if (n == 0) return {};
        std::string out = "server_load";
        while (n-- > 0) out += pieces[Below(std::size(pieces))];
        return out;
    }

    const std::vector<Function>& functions_;
    const HandlePool& pool_;
    std::mt19937_64 random_;
};

// ---------------------------------------------------------------------------
// The run

struct Options {
    std::uint16_t port = 0;
    std::uint64_t calls = 3000;
    unsigned threads = 8;
    double seconds = 120;
    double fault_rate = 0.05;
    unsigned silent = 1;
    std::uint64_t seed = 1;
    double call_timeout = 30;  // longer than a silent client can hold the server
};

struct Tally {
    std::atomic<std::uint64_t> made{0}, correct{0}, wrong{0}, lost{0};
    std::atomic<std::uint64_t> reset_in_request{0}, reset_in_response{0};
    std::atomic<std::uint64_t> issued{0};
    std::atomic<std::uint64_t> by_mode[kModes] = {};
    std::mutex report_mutex;
    int reports_left = 8;

    void Report(const Call& call, std::string_view answer, const char* what, const std::string& why) {
        std::lock_guard<std::mutex> lock(report_mutex);
        if (reports_left-- <= 0) return;
        std::fprintf(stderr, "server_load: %s answer to %s (%s): %s\n  request %s\n  answer  %s\n", what,
                     call.function ? call.function->name.c_str() : "an unknown name",
                     kModeNames[static_cast<std::size_t>(call.mode)], why.c_str(),
                     Hex(call.request).c_str(), Hex(answer).c_str());
    }
};

class Runner {
public:
    Runner(const Options& options, const std::vector<Function>& functions)
        : options_(options), functions_(functions) {}

    // One call: connect, send the whole request, read until the server closes.
    // A reset after a complete answer is its end.
    Verdict Exchange(asio::io_context& io, const Call& call, std::string& answer, std::string& why) {
        auto deadline = CallDeadline();
        Connection connection(io, options_.port);
        if (!connection.Connect(deadline)) {
            why = "no connection";
            return Verdict::Incomplete;
        }
        connection.Send(call.request, deadline);
        connection.EndSending();
        bool closed = connection.ReadToEnd(answer, deadline);
        Verdict verdict = Judge(call.expected, answer, why);
        if (verdict == Verdict::Incomplete && closed) {
            why = "the server closed before the answer was complete";
            return Verdict::Wrong;
        }
        if (verdict == Verdict::Incomplete && why.empty()) why = "reset or timed out before the answer was complete";
        return verdict;
    }

    // Finds handles of the remotable interfaces by calling the producers with
    // each handle of their own interface and a few small integers.
    HandlePool Discover() {
        HandlePool pool;
        asio::io_context io;
        for (const Producer& producer : kProducers) {
            const Function* f = Find(functions_, producer.function);
            if (!f) continue;
            std::vector<std::uint64_t> selves{0};
            if (!f->rooted) selves = pool.by_interface[f->interface_name];
            for (std::uint64_t self : selves) {
                for (std::int32_t small = 0; small < 4; ++small) {
                    Call call;
                    call.function = f;
                    PutText(call.request, f->name);
                    bool first = true;
                    for (Kind kind : f->request) {
                        if (kind == Kind::U64) Put<std::uint64_t>(call.request, first && !f->rooted ? self : 0);
                        if (kind == Kind::I32) Put<std::int32_t>(call.request, small);
                        if (kind == Kind::F64) Put<double>(call.request, 0.0);
                        if (kind == Kind::String) PutText(call.request, "");
                        if (kind == Kind::I32Slot || kind == Kind::F64Slot) {
                            call.request += '\x01';  // an empty slot
                            call.expected.slot_flags.push_back(1);
                        }
                        first = false;
                    }
                    call.expected.kinds = f->response;
                    std::string answer, why;
                    if (Exchange(io, call, answer, why) != Verdict::Correct || answer.size() < 8) continue;
                    std::uint64_t handle;
                    std::memcpy(&handle, answer.data() + answer.size() - 8, 8);
                    pool.Add(handle, producer.yields);
                    if (std::find(f->request.begin(), f->request.end(), Kind::I32) == f->request.end()) break;
                }
            }
        }
        return pool;
    }

    void Client(unsigned index, const HandlePool& pool) {
        asio::io_context io;
        Generator generator(functions_, pool, options_.seed * 1000003 + index);
        while (Clock::now() < stop_at_) {
            if (generator.Chance(options_.fault_rate)) {
                Fault(io, generator);
                continue;
            }
            if (tally_.issued++ >= options_.calls) break;
            Call call = generator.Next();
            std::string answer, why;
            Verdict verdict = Exchange(io, call, answer, why);
            ++tally_.made;
            ++tally_.by_mode[static_cast<std::size_t>(call.mode)];
            if (verdict == Verdict::Correct) {
                ++tally_.correct;
            } else if (verdict == Verdict::Wrong) {
                ++tally_.wrong;
                tally_.Report(call, answer, "wrong", why);
            } else {
                ++tally_.lost;
                tally_.Report(call, answer, "lost", why);
            }
        }
    }

    // A client that goes away with a reset: after part of its request, or
    // after its request and part of the answer.
    void Fault(asio::io_context& io, Generator& generator) {
        auto deadline = CallDeadline();
        std::string request = generator.AnyRequest();
        Connection connection(io, options_.port);
        if (!connection.Connect(deadline)) return;
        if (generator.Chance(0.5)) {
            connection.Send(std::string_view(request).substr(0, 1 + generator.Below(request.size() - 1)), deadline);
            if (generator.Chance(0.5)) std::this_thread::sleep_for(std::chrono::microseconds(generator.Below(2000)));
            ++tally_.reset_in_request;
        } else {
            connection.Send(request, deadline);
            std::string part;
            connection.ReadToEnd(part, deadline, generator.Below(3));
            ++tally_.reset_in_response;
        }
        connection.Reset();
    }

    // A client that connects and sends nothing, or the start of a name, and
    // waits to be dropped. Returns the seconds until the server closed, or a
    // negative value when it did not within the call timeout.
    double Silent(bool with_part_of_a_name) {
        asio::io_context io;
        auto start = Clock::now();
        auto deadline = CallDeadline();
        Connection connection(io, options_.port);
        if (!connection.Connect(deadline)) return -1;
        if (with_part_of_a_name) connection.Send(std::string("\x10\x00\x00\x00\x00\x00\x00\x00IApp", 12), deadline);
        std::string answer;
        connection.ReadToEnd(answer, deadline);
        double held = Seconds(Clock::now() - start).count();
        return Clock::now() < deadline && answer.empty() ? held : -1;
    }

    int Run() {
        auto started = Clock::now();
        stop_at_ = started + std::chrono::duration_cast<Clock::duration>(Seconds(options_.seconds));
        HandlePool pool = Discover();
        std::printf("server_load: %zu remotable functions; %zu handles found (", functions_.size(), pool.all.size());
        bool comma = false;
        for (const auto& [name, list] : pool.by_interface) {
            if (list.empty()) continue;
            std::printf("%s%s %zu", comma ? ", " : "", name.c_str(), list.size());
            comma = true;
        }
        std::printf(")\n");
        std::fflush(stdout);

        std::vector<double> silences;
        std::thread silent([&] {
            // Once the clients are busy, so that they wait behind it.
            while (tally_.issued < options_.calls / 5 && Clock::now() < stop_at_)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            for (unsigned i = 0; i < options_.silent; ++i) silences.push_back(Silent(i % 2 == 1));
        });
        std::vector<std::thread> clients;
        for (unsigned i = 0; i < options_.threads; ++i) clients.emplace_back([this, i, &pool] { Client(i, pool); });
        for (auto& t : clients) t.join();
        silent.join();

        double elapsed = Seconds(Clock::now() - started).count();
        std::printf("server_load: calls %llu, correct %llu, wrong %llu, lost %llu (%.1f s, %.0f calls/s)\n",
                    (unsigned long long)tally_.made, (unsigned long long)tally_.correct,
                    (unsigned long long)tally_.wrong, (unsigned long long)tally_.lost, elapsed, tally_.made / elapsed);
        std::printf("server_load: of the calls");
        for (std::size_t m = 0; m < kModes; ++m)
            std::printf("%s %llu %s", m ? "," : "", (unsigned long long)tally_.by_mode[m], kModeNames[m]);
        std::printf("\n");
        std::printf("server_load: faults: %llu resets mid-request, %llu resets mid-response\n",
                    (unsigned long long)tally_.reset_in_request, (unsigned long long)tally_.reset_in_response);
        bool silent_ok = true;
        for (double held : silences) {
            // The server's deadline runs from its accept, which comes after our connect.
            if (held < 0) std::printf("server_load: silent client not dropped\n");
            else if (held < 9.5) std::printf("server_load: silent client dropped early, after %.1f s\n", held);
            else std::printf("server_load: silent client dropped after %.1f s\n", held);
            silent_ok = silent_ok && held >= 9.5;
        }
        std::fflush(stdout);
        bool all_made = tally_.made >= options_.calls;
        if (!all_made) std::printf("server_load: the time limit ended the run early\n");
        return tally_.wrong == 0 && tally_.lost == 0 && silent_ok && all_made ? 0 : 1;
    }

private:
    Clock::time_point CallDeadline() const {
        return Clock::now() + std::chrono::duration_cast<Clock::duration>(Seconds(options_.call_timeout));
    }

    const Options& options_;
    const std::vector<Function>& functions_;
    Tally tally_;
    Clock::time_point stop_at_;
};

bool Parse(int argc, char** argv, Options& o) {
    for (int i = 1; i + 1 < argc; i += 2) {
        std::string flag = argv[i];
        char* end = nullptr;
        const char* value = argv[i + 1];
        if (flag == "--port") {
            unsigned long port = std::strtoul(value, &end, 10);
            if (*end || port == 0 || port > 65535) return false;
            o.port = static_cast<std::uint16_t>(port);
        } else if (flag == "--calls") {
            o.calls = std::strtoull(value, &end, 10);
        } else if (flag == "--threads") {
            o.threads = static_cast<unsigned>(std::strtoul(value, &end, 10));
            if (o.threads == 0 || o.threads > 64) return false;
        } else if (flag == "--seconds") {
            o.seconds = std::strtod(value, &end);
        } else if (flag == "--fault-rate") {
            o.fault_rate = std::strtod(value, &end);
            if (o.fault_rate < 0 || o.fault_rate > 1) return false;
        } else if (flag == "--silent") {
            o.silent = static_cast<unsigned>(std::strtoul(value, &end, 10));
        } else if (flag == "--seed") {
            o.seed = std::strtoull(value, &end, 10);
        } else {
            return false;
        }
        if (*end) return false;
    }
    return argc % 2 == 1 && o.port != 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!Parse(argc, argv, options)) {
        std::fprintf(stderr,
                     "usage: %s --port N [--calls 3000] [--threads 8] [--seconds 120] [--fault-rate 0.05]"
                     " [--silent 1] [--seed 1]\n",
                     argv[0]);
        return 2;
    }
    std::vector<Function> functions = RemotableFunctions();
    return Runner(options, functions).Run();
}
