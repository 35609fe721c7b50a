// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cxxabi.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>

namespace {

std::string demangled(const std::string& symbol)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : symbol;
}

/// Names of the symbols that a library defines for others; a class's several constructors and
/// destructors share a name.
std::set<std::string> definedSymbols(const std::string& library)
{
    const std::string command = "nm -D --defined-only '" + library + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::set<std::string> names;
    std::array<char, 4096> line {};
    while (pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get())) {
        std::string text(line.data());
        text.erase(text.find_last_not_of("\n") + 1);
        names.insert(demangled(text.substr(text.rfind(' ') + 1)));
    }
    return names;
}

const std::set<std::string> Expected {
    "FDlgTableListGIS(gis::CLibGis*)",
    "FDlgTableEditGIS(gis::CLibGis*, gis::CDBTable*)",
    "FDlgCompileTableGIS(gis::CLibGis*, gis::CTheme*, orv::CResultRow*)",
    "FDlgShowTableGIS(gis::CLibGis*, gis::CDBTable*)",
    "FDlgThemeListGIS(CDravoEng*, CDocSymbolManager*, gis::CLibGis*, CLibCmp*, CLibGps*, CLibPnt*)",
    "FDlgQuery(long, CDravoEng*, gis::CLibGis*)",
    "FExportEnt(gis::CLibGis*)",
    "FImportEnt(gis::CLibGis*, gis::ILinkImportedEnt*, bool)",
    "OrvFieldFormatToString(gis::FieldFormat)",
    "CQueryExecute::CQueryExecute(gis::CLibGis*, gis::CTheme*)",
    "CQueryExecute::CQueryExecute(CQueryExecute const&)",
    "CQueryExecute::operator=(CQueryExecute const&)",
    "CQueryExecute::~CQueryExecute()",
    "CQueryExecute::SetQueryFilter(orv::String const&)",
    "CQueryExecute::Execute(std::vector<gis::CEnt*, std::allocator<gis::CEnt*> >&)",
    "CQueryExecute::CreateSymbolTable()",
    "CQueryExecute::ParseFilter(orv::String const&) const",
    "gis::CGisMerger::CGisMerger(gis::CLibGis*)",
    "gis::CGisMerger::CGisMerger(gis::CGisMerger const&)",
    "gis::CGisMerger::operator=(gis::CGisMerger const&)",
    "gis::CGisMerger::~CGisMerger()",
    "gis::CGisMerger::OnBeforeLoadTable(orv::String const&, gis::CLibGis*&, gis::CDBTable*&, "
    "gis::CDBTable*&)",
    "gis::CGisMerger::OnAfterLoadTable(gis::CLibGis*, gis::CDBTable*, gis::CDBTable*, "
    "std::vector<int, std::allocator<int> >&)",
    "gis::CGisMerger::GetTable(int, gis::CDBTable*&, int&)",
    "gis::CGisMerger::OnLoadTheme(orv::String const&, gis::CDBTable*, gis::EntType, "
    "gis::EntTypeCoords, long)",
    "gis::CGisMerger::ProvideLibGis()",
    "vtable for CQueryExecute",
    "typeinfo for CQueryExecute",
    "typeinfo name for CQueryExecute",
    "vtable for gis::CGisMerger",
    "typeinfo for gis::CGisMerger",
    "typeinfo name for gis::CGisMerger",
};

TEST(ExportedSymbolsTest, TheLibraryShowsHostsTheseNamesAndNoOthers)
{
    auto symbols = definedSymbols(TEMATICA_LIBRARY);
#ifdef __SANITIZE_ADDRESS__
    // The sanitizer marks the standard library's constants for its check of one definition.
    std::erase_if(symbols, [](const auto& name) { return name.starts_with("std::"); });
#endif
    EXPECT_EQ(symbols, Expected);
}

} // namespace
