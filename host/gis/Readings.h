// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

namespace gis {

/// Asked now and then by a reading, from the threads that do it: true once it is to end.
class TEMATICA_HOST_API IReadingStop {
public:
    virtual bool IsStopped() = 0;

protected:
    ~IReadingStop();
};

/// Extension "readings/1": a host whose data lies in files tells whether it could be read. Cells
/// that could not be read are answered as without a value; a query over them would pass that for
/// the answer, and says that the field cannot be read instead. Cells only: whether shapes could be
/// read is not asked for here.
/// Thread: the library's, while no changing call runs.
class TEMATICA_HOST_API IReadings {
public:
    /// Reads the field's cells where they have not been read yet; false when that fails, or failed
    /// before. True for null, for a table of another library and for an index without a field:
    /// nothing of them is missing.
    virtual bool IsReadable(CDBTable* table, int fieldIndex) = 0;
    /// Reads the field's cells where they have not been read yet, so that nobody waits for them
    /// later. False when it was stopped: soon after the stop, and as if it had not been asked.
    /// Thread: any, while no changing call runs. `stop` may be null.
    virtual bool Read(CDBTable* table, int fieldIndex, IReadingStop* stop) = 0;

protected:
    ~IReadings();
};
inline constexpr const char* ReadingsExtension = "readings/1";

} // namespace gis
