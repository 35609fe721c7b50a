// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>

#include <pthread.h>

namespace support {

/// Runs on a stack of its own size, since a host may call from any thread.
inline void runOnStack(std::size_t sizeBytes, const std::function<void()>& act)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, sizeBytes), 0);
    pthread_t thread {};
    auto run = [](void* given) -> void* {
        (*static_cast<const std::function<void()>*>(given))();
        return nullptr;
    };
    auto* argument = const_cast<std::function<void()>*>(&act);
    ASSERT_EQ(pthread_create(&thread, &attributes, run, argument), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

} // namespace support
