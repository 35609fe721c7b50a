// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Shapefile.h"

#include "embedded/shapefile/LinkedPointMaker.h"
#include "embedded/shapefile/ShapefileReading.h"
#include "embedded/shapefile/Siblings.h"

#include "host/base/ChangeManager.h"
#include "host/gis/Exchange.h"
#include "host/gis/Merge.h"

#include <chrono>
#include <new>

namespace embedded {

namespace {

constexpr const char* StepName = "Importa Entità";
constexpr std::size_t EntitiesBetweenLooks = 16384;

/// Asks the library's progress at most ten times a second.
class ProgressGate final {
public:
    explicit ProgressGate(IProgress* progress)
        : m_progress(progress)
    {
    }
    bool isToStop(double fraction)
    {
        const auto now = std::chrono::steady_clock::now();
        if (!m_progress || now < m_next)
            return false;
        m_next = now + std::chrono::milliseconds(100);
        return !m_progress->advance(fraction);
    }

private:
    IProgress* m_progress;
    std::chrono::steady_clock::time_point m_next {};
};

/// One step of the library's changes; taken back unless it is kept. A library that keeps no record
/// keeps one for so long.
class ImportStep final {
public:
    explicit ImportStep(Library& library)
        : m_library(library)
        , m_unsaved(library.unsavedWork())
    {
        if (!library.changes()) {
            m_own = std::make_unique<orv::CChangeTransactionManager>();
            library.setChanges(m_own.get());
        }
        m_changes = library.changes();
        m_changes->BeginStep(StepName);
        m_mark = m_changes->OpenChangeCount();
    }
    ImportStep(const ImportStep&) = delete;
    ImportStep& operator=(const ImportStep&) = delete;
    ~ImportStep()
    {
        if (!m_isKept)
            m_changes->TakeBackTo(m_mark);
        m_changes->EndStep();
        if (m_own)
            m_library.setChanges(nullptr);
        if (!m_isKept)
            m_library.restoreUnsavedWork(m_unsaved);
    }
    void keep() { m_isKept = true; }

private:
    Library& m_library;
    Library::UnsavedWork m_unsaved;
    std::unique_ptr<orv::CChangeTransactionManager> m_own;
    orv::CChangeTransactionManager* m_changes = nullptr;
    std::size_t m_mark = 0;
    bool m_isKept = false;
};

/// Entities and linked points are recorded once they are all there; until then they go again when
/// the scope ends.
class UnrecordedAdditions final {
public:
    UnrecordedAdditions(Library& library, gis::CTheme& theme, std::size_t pointsBefore)
        : m_library(library)
        , m_entities(theme.geometry())
        , m_firstEntity(m_entities.entityCount())
        , m_pointsBefore(pointsBefore)
    {
    }
    UnrecordedAdditions(const UnrecordedAdditions&) = delete;
    UnrecordedAdditions& operator=(const UnrecordedAdditions&) = delete;
    ~UnrecordedAdditions()
    {
        if (m_isKept)
            return;
        m_entities.truncate(m_firstEntity);
        m_library.removeLinkedPointsFrom(m_pointsBefore);
    }
    [[nodiscard]] int firstEntity() const { return m_firstEntity; }
    void keep() { m_isKept = true; }

private:
    Library& m_library;
    EntityStore& m_entities;
    int m_firstEntity;
    std::size_t m_pointsBefore;
    bool m_isKept = false;
};

/// Puts a shapefile that was read into a library.
class Importer final {
public:
    Importer(Library& library, ReadShapefile& shapefile, const std::string& name,
        const ShapefileImportOptions& options, ProgressGate& progress, Report& report)
        : m_library(library)
        , m_shapefile(shapefile)
        , m_name(std::string_view(name))
        , m_options(options)
        , m_progress(progress)
        , m_report(report)
    {
    }

    Result<ShapefileImportResult> import(gis::IGisMerger* merger, gis::ILinkImportedEnt* link);

private:
    Result<void> createUnasked();
    Result<void> createThrough(gis::IGisMerger& merger);
    void fillTable(gis::CDBTable& table);
    Result<void> prepareTheme();
    bool addEntities(int firstEntity);
    void addParts(EntityStore& entities, const ShapeView& shape) const;
    void recordPoints(std::size_t before);
    void finish(int firstEntity, gis::ILinkImportedEnt* link);
    [[nodiscard]] Error clash(const orv::String& name) const
    {
        return { ErrorCode::NameClash, name.Bytes(), {} };
    }

    Library& m_library;
    ReadShapefile& m_shapefile;
    orv::String m_name;
    const ShapefileImportOptions& m_options;
    ProgressGate& m_progress;
    Report& m_report;
    std::unique_ptr<LinkedPointMaker> m_points;
    gis::CDBTable* m_table = nullptr;
    gis::CTheme* m_theme = nullptr;
    bool m_wasMerged = false;
    int m_rowOffset = 0;
};

Result<void> Importer::createUnasked()
{
    if (m_library.findTable(m_name) || m_library.findTheme(m_name))
        return clash(m_name);
    m_table = m_library.createTable(m_name);
    fillTable(*m_table);
    const std::int32_t type = m_shapefile.shp.shapeType();
    m_theme = m_library.createTheme(m_table, m_name, shp::entTypeOf(type), shp::coordsOf(type),
        m_library.targetDrawing(), m_shapefile.hasMeasures);
    if (!m_theme)
        return clash(m_name);
    return {};
}

Result<void> Importer::createThrough(gis::IGisMerger& merger)
{
    gis::CLibGis* target = nullptr;
    gis::CDBTable* existing = nullptr;
    gis::CDBTable* loaded = nullptr;
    merger.OnBeforeLoadTable(m_name, target, existing, loaded);
    if (!target || !loaded)
        return clash(m_name);
    fillTable(*loaded);
    std::vector<int> mapping;
    merger.OnAfterLoadTable(target, existing, loaded, mapping);
    merger.GetTable(0, m_table, m_rowOffset);
    if (!m_table && existing && existing->failedColumn())
        return *existing->failedColumn(); // which is why nothing was merged
    const int rows = static_cast<int>(m_shapefile.shapes.size());
    if (!m_table || m_rowOffset < 0 || m_table->rowCount() < m_rowOffset + rows)
        return clash(m_name);
    m_wasMerged = m_table == existing;
    const std::int32_t type = m_shapefile.shp.shapeType();
    // A theme that is there keeps its drawing layer; a new one goes where the library puts them.
    const std::int64_t drawing = m_library.findTheme(m_name) ? 0 : m_library.targetDrawing();
    gis::CTheme* theme
        = merger.OnLoadTheme(m_name, m_table, shp::entTypeOf(type), shp::coordsOf(type), drawing);
    if (!theme || theme->table != m_table || theme->type != shp::entTypeOf(type))
        return clash(m_name);
    m_theme = theme;
    return {};
}

void Importer::fillTable(gis::CDBTable& table)
{
    for (const DbfColumn& column : m_shapefile.columns) {
        gis::CField* field
            = table.addField(orv::String(std::string_view(column.name)), column.format);
        if (column.format == gis::FieldFormat::Decimal)
            field->constraints[3] = column.digits;
    }
    table.addRows(static_cast<int>(m_shapefile.shapes.size()));
    for (std::size_t i = 0; i < m_shapefile.columns.size(); ++i)
        table.setColumn(static_cast<int>(i), std::move(m_shapefile.columns[i].column));
}

/// Errors: those of reading the theme's own shapes, without which it could not be saved.
Result<void> Importer::prepareTheme()
{
    gis::CTheme* const theme = m_theme;
    theme->forgetFailedGeometry();
    const EntityStore& entities = theme->geometry();
    if (const Error* failed = theme->geometryFailure())
        return *failed;
    // What the file says of itself is taken on by a theme that holds nothing yet.
    if (entities.entityCount() == 0 && theme->referenceSystem.definition.empty()
        && !m_shapefile.referenceSystem.definition.empty()) {
        const auto set = [theme](const ReferenceSystem& system) {
            theme->referenceSystem = system;
            theme->attributesChanged = true;
        };
        const ReferenceSystem before = theme->referenceSystem;
        const ReferenceSystem after = m_shapefile.referenceSystem;
        set(after);
        m_library.record([set, before] { set(before); }, [set, after] { set(after); });
    }
    const bool lacksMeasures = m_shapefile.hasMeasures && !entities.hasM();
    if (!lacksMeasures)
        return {};
    if (theme->addMeasures()) {
        m_library.record([theme] { theme->removeMeasures(); },
            [theme] { static_cast<void>(theme->addMeasures()); });
        return {};
    }
    Finding dropped;
    dropped.code = FindingCode::MeasureDropped;
    dropped.count = static_cast<std::int64_t>(m_shapefile.shapes.size());
    m_report.add(std::move(dropped));
    return {};
}

void Importer::addParts(EntityStore& entities, const ShapeView& shape) const
{
    const bool hasZ = entities.hasZ();
    const bool hasM = entities.hasM();
    const bool arePolygons = m_theme->type == gis::EntType::Polygons;
    for (int part = 0; part < shape.partCount(); ++part) {
        const int first = shape.partStart(part);
        const int end = shape.partEnd(part);
        if (first == end)
            continue;
        const bool isOpen = arePolygons
            && (shape.x(first) != shape.x(end - 1) || shape.y(first) != shape.y(end - 1));
        double* out = entities.addPart(end - first + (isOpen ? 1 : 0));
        const auto put = [&](int vertex) {
            *out++ = shape.x(vertex);
            *out++ = shape.y(vertex);
            if (hasZ)
                *out++ = shape.z(vertex);
            if (hasM)
                *out++ = shape.m(vertex);
        };
        for (int vertex = first; vertex < end; ++vertex)
            put(vertex);
        if (isOpen)
            put(first);
    }
}

bool Importer::addEntities(int firstEntity)
{
    EntityStore& entities = m_theme->geometry();
    const std::size_t count = m_shapefile.shapes.size();
    for (std::size_t row = 0; row < count; ++row) {
        if (row % EntitiesBetweenLooks == 0
            && m_progress.isToStop(
                0.6 + 0.4 * static_cast<double>(row) / static_cast<double>(count)))
            return false;
        orv::CResultRow* tableRow = m_table->row(m_rowOffset + static_cast<int>(row));
        gis::CEnt* ent = entities.addEntity(tableRow);
        gis::CDBTable::setEntity(tableRow, ent);
        const std::uint32_t index = m_shapefile.shapes[row];
        ShapeView shape;
        if (index == NoRecord
            || ShapeView::read(m_shapefile.shp, m_shapefile.shp.records()[index], shape)
                != ShapeFault::None)
            continue;
        addParts(entities, shape);
        if (m_points)
            m_points->link(
                entities, firstEntity + static_cast<int>(row), shape, static_cast<int>(row));
    }
    return true;
}

void Importer::recordPoints(std::size_t before)
{
    const std::size_t after = m_library.linkedPointCount();
    if (after == before)
        return;
    Library& library = m_library;
    library.record([&library, before] { library.removeLinkedPointsFrom(before); },
        [&library, after] { library.restoreLinkedPointCount(after); });
}

void Importer::finish(int firstEntity, gis::ILinkImportedEnt* link)
{
    m_library.recordEntitiesAdded(m_theme, firstEntity);
    EntityStore& entities = m_theme->geometry();
    bool hasPredefined = false;
    for (int i = 0; i < m_table->fieldCount(); ++i)
        hasPredefined = hasPredefined || m_table->field(i)->isPredefined();
    for (int i = firstEntity; i < entities.entityCount(); ++i) {
        if (hasPredefined)
            m_library.recalcPredefined(m_theme, entities.entity(i));
        if (link)
            link->OnEntImported(m_theme, entities.entity(i));
    }
    m_library.markModified();
}

Result<ShapefileImportResult> Importer::import(gis::IGisMerger* merger, gis::ILinkImportedEnt* link)
{
    if (m_options.points.createPoints)
        m_points = std::make_unique<LinkedPointMaker>(m_library, m_shapefile.columns,
            m_options.points, shp::entTypeOf(m_shapefile.shp.shapeType()) != gis::EntType::Points);
    ImportStep step(m_library);
    const std::size_t pointsBefore = m_library.linkedPointCount();
    const Result<void> created = merger ? createThrough(*merger) : createUnasked();
    if (!created)
        return created.error();
    if (const auto prepared = prepareTheme(); !prepared)
        return prepared.error();
    UnrecordedAdditions additions(m_library, *m_theme, pointsBefore);
    if (!addEntities(additions.firstEntity()))
        return Error { ErrorCode::Cancelled, m_name.Bytes(), {} };
    recordPoints(pointsBefore);
    finish(additions.firstEntity(), link);
    additions.keep();
    step.keep();
    ShapefileImportResult result;
    result.table = m_table;
    result.theme = m_theme;
    result.tableRenamed = !m_wasMerged && m_table->name() != m_name;
    return result;
}

Result<void> refuseWarnings(const std::string& path, const Report& report, std::size_t from)
{
    for (std::size_t i = from; i < report.findings.size(); ++i)
        if (report.findings[i].severity == FindingSeverity::Warning)
            return Error { ErrorCode::StrictFinding, path,
                report.findings[i].subject.empty() ? report.findings[i].detail
                                                   : report.findings[i].subject };
    return {};
}

} // namespace

Result<ShapefileImportResult> importShapefile(gis::CLibGis& library, const std::string& path,
    const ShapefileImportOptions& options, gis::IGisMerger* merger, gis::ILinkImportedEnt* link,
    Report& report)
{
    Library* target = Library::of(&library);
    if (!target)
        return Error { ErrorCode::Internal, path, "no library" };
    try {
        ProgressGate progress(target->progress());
        const std::size_t before = report.findings.size();
        auto shapefile = readShapefile(path, options.encoding, report,
            [&](double part) { return progress.isToStop(0.6 * part); });
        if (!shapefile)
            return shapefile.error();
        if (options.strict)
            if (const auto refused = refuseWarnings(path, report, before); !refused)
                return refused.error();
        return Importer(*target, shapefile.value(), fileStem(path), options, progress, report)
            .import(merger, link);
    } catch (const std::bad_alloc&) {
        return Error { ErrorCode::Internal, path, "out of memory" };
    } catch (const std::exception& failure) { // no thread could be started
        return Error { ErrorCode::Internal, path, failure.what() };
    }
}

int shapefileEntityType(const std::string& path, gis::EntTypeCoords* coords)
{
    const auto shp = ShpFile::open(path);
    if (!shp)
        return -1;
    const std::int32_t type = shp.value().shapeType();
    if (coords)
        *coords = shp::coordsOf(type);
    return static_cast<int>(shp::entTypeOf(type));
}

} // namespace embedded
