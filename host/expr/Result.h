// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/PolyValue.h"

/// Result of an evaluation: a value with its kind. Element types are the tags of `orv::CPolyValue`;
/// 0 is empty. Owner, thread: a value. The layout is part of the host contract.
class TEMATICA_HOST_API CEEResult final {
public:
    CEEResult();
    explicit CEEResult(bool value);
    CEEResult(const CEEResult& other);
    CEEResult(CEEResult&& other) noexcept;
    ~CEEResult();
    CEEResult& operator=(const CEEResult& other);
    CEEResult& operator=(CEEResult&& other) noexcept;

    [[nodiscard]] int GetElemType() const noexcept { return m_element.GetType(); }
    /// False for anything but a true boolean.
    [[nodiscard]] bool GetElemBool() const;
    void SetElemBool(bool value);
    /// The value as text, as `orv::CPolyValue::GetStringValue`.
    [[nodiscard]] orv::String GetElemString() const;

    [[nodiscard]] const orv::CPolyValue& GetElem() const noexcept { return m_element; }
    void SetElem(const orv::CPolyValue& value);
    void SetElem(orv::CPolyValue&& value) noexcept;

private:
    orv::CPolyValue m_element;
};
