// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace embedded {

/// One field of the row that is being edited: what it is, what it holds, and what a text entered
/// for it stands for. No window.
class RowEntry final {
public:
    RowEntry(gis::CLibGis& library, gis::CDBTable* table, orv::CResultRow* row, int fieldIndex);

    [[nodiscard]] int fieldIndex() const { return m_fieldIndex; }
    [[nodiscard]] const orv::String& name() const { return m_name; }
    [[nodiscard]] gis::FieldFormat format() const { return m_format; }
    [[nodiscard]] bool isPredefined() const { return m_isPredefined; }
    [[nodiscard]] bool isRequired() const { return m_isRequired; }
    /// What the editor shows at first.
    [[nodiscard]] const QString& storedText() const { return m_storedText; }
    /// The texts to choose from, the one for no value first; a stored text that the list has no
    /// more comes last. Empty for fields whose text is typed.
    [[nodiscard]] const QStringList& choices() const { return m_choices; }

    /// The value that a text stands for: the stored one, with all its digits, where the text was
    /// not changed. Nothing for a text that is wrong (no number, no real day, outside the bounds).
    [[nodiscard]] std::optional<orv::CPolyValue> valueOf(const QString& text) const;
    [[nodiscard]] const orv::CPolyValue& storedValue() const { return m_stored; }
    /// The value was written: from now on it is the stored one, shown as `text`.
    void setStored(const orv::CPolyValue& value, const QString& text);

private:
    [[nodiscard]] QString textOf(const orv::CPolyValue& value) const;
    void makeChoices(gis::CLibGis& library, gis::CField* field);
    [[nodiscard]] bool isInside(double value) const;
    [[nodiscard]] std::optional<orv::CPolyValue> numberOf(const QString& text) const;

    int m_fieldIndex;
    orv::String m_name;
    gis::FieldFormat m_format;
    bool m_isPredefined;
    bool m_isRequired;
    orv::CPolyValue m_constraints[gis::ConstraintCount];
    orv::CPolyValue m_stored;
    QString m_storedText;
    QStringList m_choices;
};

} // namespace embedded
