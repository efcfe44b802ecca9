#pragma once

#include <VarnelShared/Error.h>

#include <tl/expected.hpp>

namespace Varnel {

/// A value or the reason why there is none.
template <typename T>
using Result = tl::expected<T, Error>;

/// The failing result of any module's error: `return failure(URLError{…});`.
template <typename E>
tl::unexpected<Error> failure(E error) {
    return tl::unexpected<Error>(Error(std::move(error)));
}

} // namespace Varnel
