// Whether the API Server can listen, and whether it does. The library starts
// its server thread and reports a port it cannot bind on standard error
// only, so tvhost checks the port before the start and confirms it after.
#pragma once

#include <cstdint>
#include <string>

// Binds the port on every IPv4 interface, with address reuse as the server
// does, and lets it go again. The port bound (a free one for 0), or 0 with
// the system's reason in `error`.
std::uint16_t ReservePort(std::uint16_t port, std::string& error);

// Whether something accepts connections on the loopback port within
// `seconds`. The connection sends an empty function name, which the API
// Server answers with nothing and does not log.
bool ConfirmListening(std::uint16_t port, double seconds);
