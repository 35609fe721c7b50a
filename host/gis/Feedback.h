// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <vector>

namespace gis {

/// Extension "feedback/1": the dialogs tell the host what is found and which row is current, for it
/// to highlight. Thread: the library's. The host copies what it wants to keep.
class TEMATICA_HOST_API IFeedback {
public:
    virtual void ShowFound(std::int64_t drawing, const std::vector<CEnt*>& entities) = 0;
    /// Null: no row is current.
    virtual void ShowRow(CEnt* entity) = 0;
    /// Entities the user selected in the drawing, to be preselected in a grid.
    virtual void GetSelected(std::vector<CEnt*>& entities) = 0;

protected:
    ~IFeedback();
};
inline constexpr const char* FeedbackExtension = "feedback/1";

} // namespace gis
