// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/Export.h"

/// Base of the host's libraries: a drawing's data with a mark that it changed.
class TEMATICA_HOST_API CLibGen {
public:
    CLibGen() = default;
    CLibGen(const CLibGen&) = delete;
    CLibGen& operator=(const CLibGen&) = delete;
    virtual ~CLibGen();

    virtual void SetModifiedFlag(bool modified);
    [[nodiscard]] virtual bool GetModifiedFlag() const;

private:
    bool m_modified = false;
};

/// What sends notices to the rest of the host.
class TEMATICA_HOST_API ORVNotifySource {
public:
    ORVNotifySource() = default;
    ORVNotifySource(const ORVNotifySource&) = delete;
    ORVNotifySource& operator=(const ORVNotifySource&) = delete;
    virtual ~ORVNotifySource();

    /// `code` and `value` are the host's; `data` may be null.
    virtual void Notify(int code, int value, void* data);
};
