// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <QString>
#include <QStringList>

namespace tables {

/// Names of sources and formats as the structure editor shows them; empty for a value outside the
/// enumeration.
[[nodiscard]] QString typeName(gis::FieldType type);
[[nodiscard]] QString formatName(gis::FieldFormat format);

/// The value of a name, compared letter for letter; the first value for a text that is no name.
[[nodiscard]] gis::FieldType typeOf(const QString& name);
[[nodiscard]] gis::FieldFormat formatOf(const QString& name);

/// The names in the order in which the lists offer them. Formats run by the numbers of their texts,
/// which is not the order of their values.
[[nodiscard]] QStringList typeChoices();
[[nodiscard]] QStringList formatChoices();

} // namespace tables
