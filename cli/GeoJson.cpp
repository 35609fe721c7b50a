// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/RowWriters.h"

#include "embedded/model/Theme.h"
#include "embedded/store/Rings.h"

#include <fmt/format.h>

#include <cmath>

namespace cli {

namespace {

using embedded::EntityStore;
using embedded::PartView;

class GeoJsonWriter final : public IRowWriter {
public:
    GeoJsonWriter(gis::CTheme& theme, std::vector<OutputColumn> columns, Output& output)
        : m_theme(theme)
        , m_entities(theme.geometry())
        , m_output(output)
    {
        for (std::size_t i = 1; i < columns.size(); ++i) {
            m_keys.emplace_back(i > 1 ? "," : "");
            appendJsonText(m_keys.back(), columns[i].name);
            m_keys.back() += ':';
        }
        m_output.write("{\"type\":\"FeatureCollection\"," + referenceSystem() + "\"features\":[");
    }

    bool row(const std::vector<orv::CPolyValue>& cells, gis::CEnt* ent) override
    {
        std::string line = m_isFirst ? "\n" : ",\n";
        m_isFirst = false;
        line += "{\"type\":\"Feature\",\"id\":";
        appendJson(line, cells[0]);
        line += ",\"properties\":{";
        for (std::size_t i = 0; i < m_keys.size(); ++i) {
            line += m_keys[i];
            appendJson(line, cells[i + 1]);
        }
        line += "},\"geometry\":";
        appendGeometry(line, EntityStore::indexOf(ent));
        return m_output.write(line += '}');
    }
    bool end() override { return m_output.write("\n]}\n"); }

private:
    gis::CTheme& m_theme;
    const EntityStore& m_entities;
    std::vector<std::string> m_keys;
    Output& m_output;
    bool m_isFirst = true;

    /// RFC 7946 knows longitude and latitude only; any other system is named as its forerunner of
    /// 2008 did, which readers still understand.
    [[nodiscard]] std::string referenceSystem() const
    {
        const auto& system = m_theme.referenceSystem;
        if (system.authority != "EPSG" || system.code == 0 || system.code == 4326)
            return {};
        return fmt::format("\"crs\":{{\"type\":\"name\",\"properties\":{{\"name\":"
                           "\"urn:ogc:def:crs:EPSG::{}\"}}}},",
            system.code);
    }

    void appendVertex(std::string& out, const PartView& part, int index) const
    {
        const double* vertex = part.coordinates + static_cast<std::ptrdiff_t>(index) * part.stride;
        out += '[';
        appendJsonNumber(out, vertex[0]);
        out += ',';
        appendJsonNumber(out, vertex[1]);
        if (m_entities.hasZ() && std::isfinite(vertex[2])) {
            out += ',';
            appendJsonNumber(out, vertex[2]);
        }
        out += ']';
    }

    void appendVertices(std::string& out, const PartView& part, bool isReversed) const
    {
        for (int i = 0; i < part.count; ++i) {
            out += i > 0 ? "," : "[";
            appendVertex(out, part, isReversed ? part.count - 1 - i : i);
        }
        out += part.count > 0 ? "]" : "[]";
    }

    /// Outer rings counter-clockwise, holes clockwise: the reverse of how they are kept.
    void appendPolygon(std::string& out, int entity, const std::vector<int>& rings) const
    {
        for (std::size_t i = 0; i < rings.size(); ++i) {
            const PartView ring = m_entities.part(entity, rings[i]);
            const bool runsCounterClockwise = embedded::store::doubledArea(ring) > 0;
            out += i > 0 ? "," : "[";
            appendVertices(out, ring, runsCounterClockwise != (i == 0));
        }
        out += ']';
    }

    void appendPolygons(std::string& out, int entity) const
    {
        const auto groups = embedded::store::groupRings(m_entities, entity).polygons;
        appendMembers(out, "Polygon", static_cast<int>(groups.size()),
            [&](int i) { appendPolygon(out, entity, groups[static_cast<std::size_t>(i)]); });
    }

    /// One member as itself, several as the "Multi" form.
    template <typename Append>
    static void appendMembers(std::string& out, const char* type, int count, const Append& append)
    {
        out += fmt::format("{{\"type\":\"{}{}\",\"coordinates\":", count == 1 ? "" : "Multi", type);
        out += count == 1 ? "" : "[";
        for (int i = 0; i < count; ++i) {
            out += i > 0 ? "," : "";
            append(i);
        }
        out += count == 1 ? "}" : "]}";
    }

    /// A position is two numbers at least: a shape without them has no geometry here.
    [[nodiscard]] bool isFinite(int entity) const
    {
        for (int p = 0; p < m_entities.partCount(entity); ++p) {
            const PartView part = m_entities.part(entity, p);
            for (int i = 0; i < part.count; ++i)
                if (!std::isfinite(part.x(i)) || !std::isfinite(part.y(i)))
                    return false;
        }
        return true;
    }

    void appendGeometry(std::string& out, int entity) const
    {
        const int partCount = m_entities.partCount(entity);
        if (partCount == 0 || !isFinite(entity)) {
            out += "null";
        } else if (m_theme.type == gis::EntType::Polygons) {
            appendPolygons(out, entity);
        } else if (m_theme.type == gis::EntType::Lines) {
            appendMembers(out, "LineString", partCount,
                [&](int i) { appendVertices(out, m_entities.part(entity, i), false); });
        } else {
            appendPoints(out, entity, partCount);
        }
    }

    /// Each vertex is a point, whether the parts have one or many.
    void appendPoints(std::string& out, int entity, int partCount) const
    {
        std::vector<std::pair<int, int>> vertices;
        for (int p = 0; p < partCount; ++p)
            for (int v = 0; v < m_entities.part(entity, p).count; ++v)
                vertices.emplace_back(p, v);
        appendMembers(out, "Point", static_cast<int>(vertices.size()), [&](int i) {
            const auto [p, v] = vertices[static_cast<std::size_t>(i)];
            appendVertex(out, m_entities.part(entity, p), v);
        });
    }
};

} // namespace

std::unique_ptr<IRowWriter> makeGeoJsonWriter(
    gis::CTheme& theme, std::vector<OutputColumn> columns, Output& output)
{
    return std::make_unique<GeoJsonWriter>(theme, std::move(columns), output);
}

} // namespace cli
