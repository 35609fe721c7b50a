// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"

#include <exception>
#include <new>
#include <string>
#include <utility>

namespace embedded::store {

/// Carries an error from the depth of a save or a read to the store's edge, where `guarded` makes a
/// result of it. Inside the store every line may meet a full disk; passing results through all of
/// them would bury the work. Never leaves the store.
class StoreFailure final : public std::exception {
public:
    explicit StoreFailure(Error error)
        : m_error(std::move(error))
    {
    }
    [[nodiscard]] const Error& error() const { return m_error; }
    [[nodiscard]] const char* what() const noexcept override { return m_error.detail.c_str(); }

private:
    Error m_error;
};

[[noreturn]] inline void failWith(ErrorCode code, std::string subject, std::string detail = {})
{
    throw StoreFailure(Error { code, std::move(subject), std::move(detail) });
}

/// Runs `work` and makes a result of whatever it throws.
template <typename Work> auto guarded(Work&& work) -> Result<decltype(work())>
{
    try {
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (const StoreFailure& failure) {
        return failure.error();
    } catch (const std::bad_alloc&) {
        return Error { ErrorCode::Internal, {}, "out of memory" };
    } catch (const std::exception& problem) {
        return Error { ErrorCode::Internal, {}, problem.what() };
    }
}

} // namespace embedded::store
