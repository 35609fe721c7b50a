// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "entry/ModuleRecord.h"
#include "entry/ResourceGuard.h"
#include "kit/texts/TextIds.h"

namespace {

/// The numbers do not follow the values: yes/no has the last but one.
int textOf(gis::FieldFormat format)
{
    switch (format) {
    case gis::FieldFormat::Text:
        return texts::FormatText;
    case gis::FieldFormat::Boolean:
        return texts::FormatBoolean;
    case gis::FieldFormat::Integer:
        return texts::FormatInteger;
    case gis::FieldFormat::Decimal:
        return texts::FormatDecimal;
    case gis::FieldFormat::List:
        return texts::FormatList;
    case gis::FieldFormat::Date:
        return texts::FormatDate;
    default:
        return 0;
    }
}

} // namespace

orv::String OrvFieldFormatToString(gis::FieldFormat format)
{
    try {
        const entry::ResourceGuard guard(entry::moduleRecord().resourceHandle);
        return kit::textBytes(textOf(format));
    } catch (...) {
        return {};
    }
}
