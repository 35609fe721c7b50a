// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What every host must do behind the interfaces of host/, as tests over those interfaces only.
//
// To check a host of your own, link the suite's objects (target tematica_contract), the notation
// (tematica_test_notation) and your host library into a program that defines `contract::hosts()`.

#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include "host/base/ChangeManager.h"
#include "host/gis/LibGis.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace contract {

/// A host under test.
struct HostCase {
    std::string name; // letters and digits
    std::function<std::unique_ptr<gis::CLibGis>(
        orv::CChangeTransactionManager* manager, std::int64_t targetDrawing)>
        makeLibrary;
    /// Brings tables, rows, themes and entities into a library, by the host's own means.
    std::function<void(gis::CLibGis& library, const support::LibraryPlan& plan)> fill;
};

inline void PrintTo(const HostCase& one, std::ostream* out)
{
    *out << one.name;
}

/// A path in the temporary folder that no other running test uses.
inline std::filesystem::path temporaryPath(std::string name)
{
    std::replace(name.begin(), name.end(), '/', '-');
    return std::filesystem::temp_directory_path()
        / ("tematica-" + std::to_string(::getpid()) + "-" + name);
}

/// The hosts to test: each program with the suite defines it.
std::vector<HostCase> hosts();

/// Those of the hosts that have an extension.
inline std::vector<HostCase> hostsWith(const char* extension)
{
    std::vector<HostCase> all = hosts();
    all.erase(std::remove_if(all.begin(), all.end(),
                  [&](const HostCase& one) {
                      orv::CChangeTransactionManager changes;
                      return !one.makeLibrary(&changes, 0)->Extension(extension);
                  }),
        all.end());
    return all;
}

class ContractTest : public testing::TestWithParam<HostCase> {
protected:
    /// A new library with what the notation says; lives as long as the test.
    gis::CLibGis& make(std::string_view notation, std::int64_t targetDrawing = 0)
    {
        m_libraries.push_back(GetParam().makeLibrary(&m_changes, targetDrawing));
        gis::CLibGis& library = *m_libraries.back();
        GetParam().fill(library, support::planFrom(notation));
        library.SetModifiedFlag(false);
        return library;
    }

    static std::string cell(gis::CLibGis& library, gis::CDBTable* table, int row, int field)
    {
        orv::CPolyValue value;
        library.GetRowValue(library.GetRow(table, row), field, value);
        return support::describe(value);
    }

    /// Names and formats of the fields, one after the other.
    static std::string fields(gis::CLibGis& library, gis::CDBTable* table)
    {
        std::string out;
        for (int i = 0; i < library.GetNumFields(table); ++i) {
            gis::CField* field = library.GetField(table, i);
            out += (i ? ", " : "") + library.GetFieldName(field).Bytes() + " "
                + support::describe(library.GetFieldFormat(field));
        }
        return out;
    }

    /// The rows' cells, a row in parentheses.
    static std::string rows(gis::CLibGis& library, gis::CDBTable* table)
    {
        std::string out;
        for (int row = 0; row < library.GetNumRows(table); ++row) {
            out += "(";
            for (int i = 0; i < library.GetNumFields(table); ++i)
                out += (i ? ", " : "") + cell(library, table, row, i);
            out += ")";
        }
        return out;
    }

    static std::string constraints(gis::CLibGis& library, gis::CField* field)
    {
        orv::CPolyValue values[gis::ConstraintCount];
        library.GetFieldConstraints(field, values);
        std::string out;
        for (int i = 0; i < gis::ConstraintCount; ++i)
            out += (i ? "; " : "") + support::describe(values[i]);
        return out;
    }

private:
    orv::CChangeTransactionManager m_changes; // outlives the libraries
    std::vector<std::unique_ptr<gis::CLibGis>> m_libraries;
};

inline std::string hostName(const testing::TestParamInfo<HostCase>& info)
{
    return info.param.name;
}

#define CONTRACT_SUITE(Name)                                                                       \
    class Name : public contract::ContractTest { };                                                \
    INSTANTIATE_TEST_SUITE_P(Host, Name, testing::ValuesIn(contract::hosts()), contract::hostName)

// A host without the extension has nothing to show here; a suite that no host takes part in is no
// failure.
#define CONTRACT_SUITE_WITH(Name, extension)                                                       \
    class Name : public contract::ContractTest { };                                                \
    GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Name);                                           \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        Host, Name, testing::ValuesIn(contract::hostsWith(extension)), contract::hostName)

} // namespace contract
