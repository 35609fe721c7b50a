// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);
#endif

namespace query {

/// A point at which threads hand over what they wrote. It costs nothing and only tells the thread
/// sanitizer what oneTBB, which is built without it, does anyway.
class Handover final {
public:
    void give()
    {
#if defined(__SANITIZE_THREAD__)
        __tsan_release(&m_token);
#endif
    }
    void take()
    {
#if defined(__SANITIZE_THREAD__)
        __tsan_acquire(&m_token);
#endif
    }

private:
    [[maybe_unused]] char m_token = 0;
};

/// Calls `work(begin, end)` for pieces of 0 to `count`, each some `grain` long, on several threads;
/// returns when all are done.
template <typename Index, typename Work>
void forEachRange(Index count, Index grain, const Work& work)
{
    Handover start;
    Handover end;
    start.give();
    tbb::parallel_for(tbb::blocked_range<Index>(0, count, grain), [&](const auto& part) {
        start.take();
        work(part.begin(), part.end());
        end.give();
    });
    end.take();
}

} // namespace query
