// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfCells.h"
#include "embedded/shapefile/ShpFormat.h"

#include "host/base/Numbers.h"

#include <bit>
#include <cmath>

namespace embedded {

namespace {

const unsigned char* bytesOf(std::string_view cell)
{
    return reinterpret_cast<const unsigned char*>(cell.data());
}

DbfNumber numberFrom(double value)
{
    DbfNumber number;
    number.state = std::isfinite(value) ? CellState::Value : CellState::Unreadable;
    number.value = value;
    number.isWhole = value == std::trunc(value);
    if (number.state == CellState::Value && !number.isWhole)
        number.digits = parseDbfNumber(orv::ShortestText(value)).digits;
    return number;
}

} // namespace

DbfNumber parseFoxProInteger(std::string_view cell)
{
    return numberFrom(shp::little32(bytesOf(cell)));
}
DbfNumber parseFoxProDouble(std::string_view cell)
{
    return numberFrom(shp::littleDouble(bytesOf(cell)));
}
DbfNumber parseFoxProMoney(std::string_view cell)
{
    const auto tenThousandths = static_cast<std::int64_t>(shp::loadLittle64(bytesOf(cell)));
    return numberFrom(static_cast<double>(tenThousandths) / 10000.0);
}
// dBASE 7 keeps numbers so that they sort as bytes: big-endian, the sign's bit inverted, in
// negative doubles all bits; nothing but zero bits is no value.
DbfNumber parseDBaseInteger(std::string_view cell)
{
    const auto bits = static_cast<std::uint32_t>(shp::big32(bytesOf(cell)));
    return bits == 0 ? DbfNumber() : numberFrom(static_cast<std::int32_t>(bits ^ 0x80000000u));
}
DbfNumber parseDBaseDouble(std::string_view cell)
{
    const auto high = static_cast<std::uint32_t>(shp::big32(bytesOf(cell)));
    const auto low = static_cast<std::uint32_t>(shp::big32(bytesOf(cell) + 4));
    const std::uint64_t bits = std::uint64_t { high } << 32 | low;
    if (bits == 0)
        return {};
    const bool isPositive = (bits >> 63) != 0;
    return numberFrom(
        std::bit_cast<double>(isPositive ? bits ^ (std::uint64_t { 1 } << 63) : ~bits));
}

} // namespace embedded
