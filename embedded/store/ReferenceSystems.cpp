// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Schema.h"
#include "embedded/store/Statement.h"

#include "host/base/Numbers.h"

#include <algorithm>

namespace embedded::store {
namespace {

constexpr std::int64_t Undefined = -1;
constexpr std::int64_t FirstCustom = 100000; // below are the numbers of the EPSG

// WKT begins with a keyword and the name in quotes.
std::string nameOf(const ReferenceSystem& system)
{
    const auto from = system.definition.find('"');
    const auto to = from == std::string::npos ? from : system.definition.find('"', from + 1);
    if (to != std::string::npos && to > from + 1)
        return system.definition.substr(from + 1, to - from - 1);
    return system.code > 0 ? system.authority + ":" + std::to_string(system.code)
                           : std::string("custom");
}

std::int64_t insertSystem(Connection& connection, const ReferenceSystem& system, std::int64_t srsId,
    const std::string& organization, std::int64_t code)
{
    const std::string name = nameOf(system);
    Statement insert(connection,
        "INSERT INTO gpkg_spatial_ref_sys (srs_name, srs_id, organization, "
        "organization_coordsys_id, definition) VALUES (?1, ?2, ?3, ?4, ?5)");
    insert.bindText(1, name);
    insert.bindInteger(2, srsId);
    insert.bindText(3, organization);
    insert.bindInteger(4, code);
    insert.bindText(5,
        system.definition.empty() ? std::string_view("undefined")
                                  : std::string_view(system.definition));
    insert.run();
    return srsId;
}

std::int64_t freeCustomId(Connection& connection)
{
    return std::max(
        FirstCustom, connection.integerOf("SELECT max(srs_id) FROM gpkg_spatial_ref_sys") + 1);
}

std::int64_t registeredCode(Connection& connection, const ReferenceSystem& system)
{
    Statement known(connection,
        "SELECT srs_id FROM gpkg_spatial_ref_sys WHERE lower(organization) = lower(?1) "
        "AND organization_coordsys_id = ?2");
    known.bindText(1, system.authority);
    known.bindInteger(2, system.code);
    if (known.step())
        return known.integer(0);
    Statement taken(connection, "SELECT 1 FROM gpkg_spatial_ref_sys WHERE srs_id = ?1");
    taken.bindInteger(1, system.code);
    const std::int64_t id = taken.step() ? freeCustomId(connection) : system.code;
    taken.reset();
    return insertSystem(connection, system, id, system.authority, system.code);
}

std::int64_t registeredCustom(Connection& connection, const ReferenceSystem& system)
{
    Statement known(connection,
        "SELECT srs_id FROM gpkg_spatial_ref_sys WHERE upper(organization) = 'NONE' "
        "AND definition = ?1");
    known.bindText(1, system.definition);
    if (known.step())
        return known.integer(0);
    const std::int64_t id = freeCustomId(connection);
    return insertSystem(connection, system, id, "NONE", id);
}

} // namespace

std::int32_t registeredReferenceSystem(Connection& connection, const ReferenceSystem& system)
{
    std::int64_t id = Undefined;
    if (!system.authority.empty() && system.code > 0)
        id = registeredCode(connection, system);
    else if (!system.definition.empty())
        id = registeredCustom(connection, system);
    return static_cast<std::int32_t>(id);
}

ReferenceSystem referenceSystemOf(Connection& connection, std::int64_t srsId)
{
    ReferenceSystem system;
    Statement find(connection,
        "SELECT organization, organization_coordsys_id, definition FROM gpkg_spatial_ref_sys "
        "WHERE srs_id = ?1");
    find.bindInteger(1, srsId);
    if (srsId == -1 || srsId == 0 || !find.step())
        return system;
    if (orv::CompareIgnoreAsciiCase(find.text(0), "epsg") == 0 && find.integer(1) > 0
        && find.integer(1) <= 0x7FFFFFFF) {
        system.authority = "EPSG";
        system.code = static_cast<int>(find.integer(1));
    }
    if (find.text(2) != "undefined")
        system.definition = find.text(2);
    return system;
}

} // namespace embedded::store
