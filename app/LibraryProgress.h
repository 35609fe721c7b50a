// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"

#include <memory>

namespace kit {
class Progress;
}

namespace app {

/// Shows how far long work of the open library is (import, structure, saving), with "Annulla";
/// nothing while it is quick. Thread: the user interface's.
class LibraryProgress final : public embedded::IProgress {
public:
    LibraryProgress();
    LibraryProgress(const LibraryProgress&) = delete;
    LibraryProgress& operator=(const LibraryProgress&) = delete;
    ~LibraryProgress();

    bool advance(double fraction) override;
    /// The work has ended, however: what is shown goes.
    void finish() override;
    void failed(const embedded::Error& error) override;
    /// Whether a failure of the open library has been told, here or by others.
    [[nodiscard]] bool isFailureTold() const { return m_isFailureTold; }
    void setFailureTold(bool isTold) { m_isFailureTold = isTold; }

private:
    std::unique_ptr<kit::Progress> m_shown;
    double m_last = 0;
    bool m_isFailureTold = false;
};

} // namespace app
