#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

struct xcb_connection_t;

/// What the adapters of several modules ask of the X server. A library of its own: nothing else links the X server.
namespace Varnel::X11 {

/// The application's own connection; null where it does not run on X11.
xcb_connection_t* connection();

/// The number that the server gives to a name; 0 when the connection is broken.
std::uint32_t atom(xcb_connection_t* connection, std::string_view name);

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// Owns what a function of the X library has returned.
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

} // namespace Varnel::X11
