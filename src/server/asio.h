// Boost.Asio, included one way everywhere. Debian's Boost 1.74 Asio headers
// use std::exchange without including <utility> under C++20.
#pragma once

#include <utility>

#include <boost/asio.hpp>
