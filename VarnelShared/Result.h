#pragma once

#include <QString>

#include <tl/expected.hpp>

#include <concepts>
#include <memory>
#include <typeinfo>

namespace Varnel {

/// What every module's error offers: one sentence that a person can read.
template <typename E>
concept DescribedError = requires(const E& error) {
    { error.localizedDescription() } -> std::convertible_to<QString>;
};

/// Any module's error as one value. Copies share the held error, which never changes.
class Error {
public:
    template <DescribedError E>
        requires(!std::same_as<std::remove_cvref_t<E>, Error>)
    Error(E error) // NOLINT(google-explicit-constructor): an error is returned as itself
        : m_held(std::make_shared<const Model<E>>(std::move(error))) {}

    QString localizedDescription() const { return m_held->description(); }

    /// The typed error, or null when another type is held. Valid as long as this value.
    template <typename E>
    const E* as() const {
        const auto* model = dynamic_cast<const Model<E>*>(m_held.get());
        return model ? &model->error : nullptr;
    }

private:
    struct Held {
        Held() = default;
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        virtual ~Held() = default;
        virtual QString description() const = 0;
    };
    template <typename E>
    struct Model final : Held {
        explicit Model(E held)
            : error(std::move(held)) {}
        QString description() const override { return error.localizedDescription(); }
        E error;
    };

    std::shared_ptr<const Held> m_held;
};

/// A value or the reason why there is none.
template <typename T>
using Result = tl::expected<T, Error>;

/// What converts to the failing `Result` of any type.
using Failure = tl::unexpected<Error>;

/// The failing result of any module's error, or of one that is handed on: `return failure(URLError{…});`.
inline Failure failure(Error error) {
    return Failure(std::move(error));
}

} // namespace Varnel
