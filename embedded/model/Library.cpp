// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/LibraryData.h"

#include "embedded/model/TableData.h"
#include "host/base/Numbers.h"

#include <algorithm>

namespace embedded {

namespace {

class FunctionChange final : public orv::IChange {
public:
    FunctionChange(std::weak_ptr<const Library::Life> library, std::function<void()> undo,
        std::function<void()> redo)
        : m_library(std::move(library))
        , m_undo(std::move(undo))
        , m_redo(std::move(redo))
    {
    }
    void Undo() override
    {
        if (!m_library.expired())
            m_undo();
    }
    void Redo() override
    {
        if (!m_library.expired())
            m_redo();
    }

private:
    std::weak_ptr<const Library::Life> m_library; // a record may outlive the library
    std::function<void()> m_undo;
    std::function<void()> m_redo;
};

template <typename Object> const orv::String& nameOf(const Object* object);
template <> const orv::String& nameOf(const gis::CDBTable* object)
{
    return object->name();
}
template <> const orv::String& nameOf(const gis::CTheme* object)
{
    return object->name;
}

/// Exact name first, else the first that is equal but for the case of ASCII letters.
template <typename Object>
Object* findByName(const std::vector<Object*>& objects, const orv::String& name)
{
    Object* folded = nullptr;
    for (Object* object : objects) {
        const orv::String& candidate = nameOf<Object>(object);
        if (candidate == name)
            return object;
        if (!folded && candidate.Length() == name.Length()
            && candidate.CompareIgnoreCase(name) == 0)
            folded = object;
    }
    return folded;
}

template <typename Find> orv::String freeName(const orv::String& wanted, const Find& isUsed)
{
    orv::String name = wanted;
    for (int number = 2; isUsed(name); ++number)
        name = wanted + " (" + orv::String::ValueOf(number) + ")";
    return name;
}

template <typename Object> bool contains(const std::vector<Object*>& objects, const Object* object)
{
    return std::find(objects.begin(), objects.end(), object) != objects.end();
}

template <typename Object>
std::vector<std::int64_t> goneIds(
    const std::vector<std::int64_t>& saved, const std::vector<Object*>& present)
{
    std::vector<std::int64_t> gone;
    for (std::int64_t id : saved)
        if (std::none_of(present.begin(), present.end(),
                [&](const Object* object) { return object->storeId == id; }))
            gone.push_back(id);
    return gone;
}

} // namespace

Library::Library(
    gis::CLibGis& facade, orv::CChangeTransactionManager* changes, std::int64_t targetDrawing)
    : m_data(std::make_unique<Data>(facade, changes, targetDrawing))
{
    if (changes)
        m_data->savedPosition = changes->Position();
}
Library::~Library() = default;

gis::CLibGis& Library::facade() const
{
    return m_data->facade;
}
orv::CChangeTransactionManager* Library::changes() const
{
    return m_data->changes;
}

void Library::markModified()
{
    // The base operation by name: the embedded library must not show up among the calls that a
    // dialog made.
    m_data->facade.CLibGen::SetModifiedFlag(true);
}

Library::UnsavedWork Library::unsavedWork() const
{
    return { m_data->changeCount, m_data->facade.CLibGen::GetModifiedFlag() };
}

void Library::restoreUnsavedWork(const UnsavedWork& before)
{
    m_data->changeCount = before.changeCount;
    m_data->facade.CLibGen::SetModifiedFlag(before.isModified);
}

void Library::setChanges(orv::CChangeTransactionManager* changes)
{
    m_data->changes = changes;
}

void Library::record(std::function<void()> undo, std::function<void()> redo)
{
    ++m_data->changeCount;
    if (m_data->changes && !m_data->changes->IsReplaying())
        m_data->changes->Record(
            std::make_unique<FunctionChange>(m_data->life, std::move(undo), std::move(redo)));
}

const std::vector<gis::CDBTable*>& Library::tables() const
{
    return m_data->tables;
}
const std::vector<gis::CTheme*>& Library::themes() const
{
    return m_data->themes;
}
gis::CDBTable* Library::findTable(const orv::String& name) const
{
    return findByName(m_data->tables, name);
}
gis::CTheme* Library::findTheme(const orv::String& name) const
{
    return findByName(m_data->themes, name);
}
orv::String Library::freeTableName(const orv::String& wanted) const
{
    return freeName(wanted, [this](const orv::String& name) { return findTable(name) != nullptr; });
}
orv::String Library::freeThemeName(const orv::String& wanted) const
{
    return freeName(wanted, [this](const orv::String& name) { return findTheme(name) != nullptr; });
}

gis::CDBTable* Library::adoptTable(std::unique_ptr<gis::CDBTable> table)
{
    m_data->ownedTables.emplace_back(std::move(table));
    m_data->listTables();
    return m_data->tables.back();
}

gis::CTheme* Library::adoptTheme(std::unique_ptr<gis::CTheme> theme)
{
    m_data->ownedThemes.emplace_back(std::move(theme));
    m_data->listThemes();
    return m_data->themes.back();
}

void Library::insertTable(std::shared_ptr<gis::CDBTable> table, std::size_t position)
{
    auto& owned = m_data->ownedTables;
    owned.insert(owned.begin() + static_cast<std::ptrdiff_t>(std::min(position, owned.size())),
        std::move(table));
    m_data->listTables();
}

void Library::eraseTable(const gis::CDBTable* table)
{
    std::erase_if(m_data->ownedTables, [&](const auto& owned) { return owned.get() == table; });
    m_data->listTables();
}

void Library::insertTheme(std::shared_ptr<gis::CTheme> theme, std::size_t position)
{
    EntityStore& entities = theme->entities();
    for (int i = 0; i < entities.entityCount(); ++i)
        gis::CDBTable::setEntity(EntityStore::rowOf(entities.entity(i)), entities.entity(i));
    auto& owned = m_data->ownedThemes;
    owned.insert(owned.begin() + static_cast<std::ptrdiff_t>(std::min(position, owned.size())),
        std::move(theme));
    m_data->listThemes();
}

void Library::eraseTheme(gis::CTheme* theme)
{
    for (int i = 0; i < theme->entities().entityCount(); ++i)
        gis::CDBTable::setEntity(EntityStore::rowOf(theme->entities().entity(i)), nullptr);
    m_data->runs.erase(theme);
    std::erase_if(m_data->ownedThemes, [&](const auto& owned) { return owned.get() == theme; });
    m_data->listThemes();
}

gis::CDBTable* Library::createTable(const orv::String& name)
{
    auto table = std::make_shared<gis::CDBTable>(*this, name);
    const std::size_t position = m_data->ownedTables.size();
    insertTable(table, position);
    record([this, table] { eraseTable(table.get()); },
        [this, table, position] { insertTable(table, position); });
    markModified();
    return table.get();
}

gis::CDBTable* Library::createTableAsCopyOf(gis::CDBTable* source)
{
    if (!source)
        return nullptr;
    if (!source->readAllColumns())
        return nullptr;
    const orv::ChangeStep step(m_data->changes, orv::String());
    gis::CDBTable* copy = createTable(freeTableName(source->name()));
    copy->addRows(source->rowCount());
    for (int i = 0; i < source->fieldCount(); ++i) {
        const gis::CField& from = *source->field(i);
        gis::CField& to = *copy->addField(from.name, from.format);
        to.type = from.type;
        to.requested = from.requested;
        to.constraints = from.constraints;
        copy->setColumn(i, source->column(i));
    }
    return copy;
}

bool Library::isUsedByThemes(const gis::CDBTable* table) const
{
    return table
        && std::any_of(m_data->themes.begin(), m_data->themes.end(),
            [&](const gis::CTheme* theme) { return theme->table == table; });
}

void Library::deleteTable(gis::CDBTable* table)
{
    const auto found = std::find(m_data->tables.begin(), m_data->tables.end(), table);
    if (found == m_data->tables.end() || isUsedByThemes(table))
        return;
    const auto position = static_cast<std::size_t>(found - m_data->tables.begin());
    for (int i = 0; i < table->fieldCount(); ++i)
        static_cast<void>(table->column(i)); // the next save takes them out of the store
    const std::shared_ptr<gis::CDBTable> kept = m_data->ownedTables[position];
    eraseTable(table);
    record([this, kept, position] { insertTable(kept, position); },
        [this, kept] { eraseTable(kept.get()); });
    markModified();
}

gis::CTheme* Library::createTheme(gis::CDBTable* table, const orv::String& name, gis::EntType type,
    gis::EntTypeCoords coords, std::int64_t drawing, bool hasM)
{
    if (!table || &table->library() != this)
        return nullptr;
    const orv::ChangeStep step(m_data->changes, orv::String());
    auto theme = std::make_shared<gis::CTheme>(*this, table, name, type, coords, hasM);
    theme->targetDrawing = drawing;
    const std::size_t position = m_data->ownedThemes.size();
    insertTheme(theme, position);
    record([this, theme] { eraseTheme(theme.get()); },
        [this, theme, position] { insertTheme(theme, position); });
    if (!m_data->active)
        setActiveTheme(theme.get());
    markModified();
    return theme.get();
}

bool Library::deleteTheme(gis::CTheme* theme)
{
    if (!theme || theme == m_data->active || theme->entities().entityCount() > 0
        || !contains(m_data->themes, theme))
        return false;
    removeTheme(theme);
    return true;
}

void Library::removeTheme(gis::CTheme* theme)
{
    const auto found = std::find(m_data->themes.begin(), m_data->themes.end(), theme);
    if (found == m_data->themes.end())
        return;
    const orv::ChangeStep step(m_data->changes, orv::String());
    if (theme == m_data->active)
        setActiveTheme(nullptr);
    static_cast<void>(theme->geometry()); // the next save takes it out of the store
    const auto position = static_cast<std::size_t>(found - m_data->themes.begin());
    const std::shared_ptr<gis::CTheme> kept = m_data->ownedThemes[position];
    eraseTheme(theme);
    record([this, kept, position] { insertTheme(kept, position); },
        [this, kept] { eraseTheme(kept.get()); });
    markModified();
}

void Library::renameTable(gis::CDBTable* table, const orv::String& name)
{
    if (!table)
        return;
    markModified();
    const orv::String old = table->name();
    if (old == name)
        return;
    table->setName(name);
    record([table, old] { table->setName(old); }, [table, name] { table->setName(name); });
}

void Library::replaceStructure(gis::CDBTable* table, Structure structure)
{
    if (!table)
        return;
    // Swapped, not kept twice: cells that are written later add texts to a column's dictionary, and
    // making them again needs the codes that those texts got.
    auto other = std::make_shared<Structure>(std::move(structure));
    const auto swap = [table, other] {
        Structure present = table->structure();
        table->applyStructure(*other);
        *other = std::move(present);
    };
    swap();
    record(swap, swap);
    markModified();
}

void Library::replaceFields(gis::CDBTable* table, std::vector<FieldChange> fields)
{
    if (!table)
        return;
    const Structure before = table->structure();
    Structure after;
    for (FieldChange& change : fields) {
        FieldState state { change.field, change.name, change.format, change.type, change.requested,
            change.constraints, ColumnSlot(change.format) };
        const auto old = std::find_if(before.begin(), before.end(),
            [&](const FieldState& known) { return change.field && known.handle == change.field; });
        if (change.column)
            state.slot.column = std::move(*change.column);
        else if (old != before.end())
            state.slot = old->slot;
        else
            state.slot.column.appendEmpty(table->rowCount());
        after.push_back(std::move(state));
    }
    replaceStructure(table, std::move(after));
}

void Library::recordRowsAdded(gis::CDBTable* table, int firstRow)
{
    if (!table)
        return;
    auto after = std::make_shared<std::vector<Column>>();
    const int rowCount = table->rowCount();
    record(
        [table, firstRow, after] {
            // Taken now, with every text that later cells added to the dictionaries.
            after->clear();
            for (int i = 0; i < table->fieldCount(); ++i)
                after->push_back(table->column(i));
            table->truncateRows(firstRow);
        },
        [table, firstRow, rowCount, after] {
            table->addRows(rowCount - firstRow);
            for (int i = 0; i < table->fieldCount(); ++i)
                table->restoreColumn(i, (*after)[static_cast<std::size_t>(i)]);
        });
    markModified();
}

void Library::recordEntitiesAdded(gis::CTheme* theme, int firstEntity)
{
    if (!theme)
        return;
    const int entityCount = theme->entities().entityCount();
    const int partCount = theme->entities().totalPartCount();
    record(
        [this, theme, firstEntity] {
            theme->entities().truncate(firstEntity);
            m_data->runs.erase(theme);
        },
        [this, theme, entityCount, partCount] {
            theme->entities().restore(entityCount, partCount);
            m_data->runs.erase(theme);
        });
    markModified();
}

LinkedPoint* Library::addLinkedPoint()
{
    if (m_data->pointCount < m_data->points.size())
        m_data->points[m_data->pointCount] = {};
    else
        m_data->points.emplace_back();
    return &m_data->points[m_data->pointCount++];
}

void Library::removeLinkedPointsFrom(std::size_t count)
{
    m_data->pointCount = std::min(count, m_data->pointCount);
}

void Library::restoreLinkedPointCount(std::size_t count)
{
    m_data->pointCount = std::min(count, m_data->points.size());
}

std::size_t Library::linkedPointCount() const
{
    return m_data->pointCount;
}

const std::deque<LinkedPoint>& Library::linkedPoints() const
{
    return m_data->points;
}

const std::vector<Layer>& Library::layers() const
{
    return m_data->layers;
}

std::int64_t Library::addLayer(const orv::String& name)
{
    std::int64_t highest = 0;
    for (const Layer& layer : m_data->layers) {
        if (layer.name == name)
            return layer.id;
        highest = std::max(highest, layer.id);
    }
    const std::vector<Layer> before = m_data->layers;
    m_data->layers.push_back({ highest + 1, name });
    const std::vector<Layer> after = m_data->layers;
    record([this, before] { m_data->layers = before; }, [this, after] { m_data->layers = after; });
    markModified();
    return highest + 1;
}

void Library::restoreLayers(std::vector<Layer> layers)
{
    m_data->layers = std::move(layers);
}
std::int64_t Library::targetDrawing() const
{
    return m_data->targetDrawing;
}
void Library::setTargetDrawing(std::int64_t drawing)
{
    m_data->targetDrawing = drawing;
}

void Library::setStore(std::shared_ptr<IStore> store)
{
    m_data->store = std::move(store);
}
IStore* Library::store() const
{
    return m_data->store.get();
}
std::mutex& Library::readingMutex() const
{
    return m_data->readingMutex;
}

Result<void> Library::loadAll()
{
    retryFailedReads();
    for (gis::CDBTable* table : m_data->tables)
        for (int i = 0; i < table->fieldCount(); ++i)
            static_cast<void>(table->column(i));
    for (gis::CTheme* theme : m_data->themes)
        static_cast<void>(theme->geometry());
    // What could not be read shows as empty, and must not be taken for it.
    if (const Error* failed = failedRead())
        return *failed;
    return {};
}

const Error* Library::failedRead() const
{
    for (const gis::CDBTable* table : m_data->tables)
        if (const Error* failed = table->failedColumn())
            return failed;
    for (const gis::CTheme* theme : m_data->themes)
        if (const Error* failed = theme->geometryFailure())
            return failed;
    return nullptr;
}

void Library::retryFailedReads()
{
    for (gis::CDBTable* table : m_data->tables)
        table->forgetFailedColumns();
    for (gis::CTheme* theme : m_data->themes)
        theme->forgetFailedGeometry();
}

void Library::restoreActiveTheme(gis::CTheme* theme)
{
    m_data->active = theme;
}

std::vector<std::int64_t> Library::deletedTableStoreIds() const
{
    return goneIds(m_data->savedTables, m_data->tables);
}
std::vector<std::int64_t> Library::deletedThemeStoreIds() const
{
    return goneIds(m_data->savedThemes, m_data->themes);
}

void Library::markSaved()
{
    m_data->savedTables.clear();
    m_data->savedThemes.clear();
    for (gis::CDBTable* table : m_data->tables) {
        table->markSaved();
        m_data->savedTables.push_back(table->storeId);
    }
    for (gis::CTheme* theme : m_data->themes) {
        theme->attributesChanged = false;
        theme->storedEntityCount = theme->entities().entityCount();
        m_data->savedThemes.push_back(theme->storeId);
    }
    m_data->savedChangeCount = m_data->changeCount;
    if (m_data->changes)
        m_data->savedPosition = m_data->changes->Position();
    m_data->facade.CLibGen::SetModifiedFlag(false);
}

bool Library::isSaved() const
{
    return m_data->changes ? m_data->savedPosition == m_data->changes->Position()
                           : m_data->savedChangeCount == m_data->changeCount;
}

const Report& Library::lastReport() const
{
    return m_data->report;
}
Report& Library::beginReport()
{
    m_data->report = {};
    return m_data->report;
}
const Error& Library::lastFailure() const
{
    return m_data->failure;
}
void Library::noteFailure(const Error& error)
{
    m_data->failure = error;
}
Report& Library::report()
{
    return m_data->report;
}
void Library::setProgress(IProgress* progress)
{
    m_data->progress = progress;
}
IProgress* Library::progress() const
{
    return m_data->progress;
}

} // namespace embedded
