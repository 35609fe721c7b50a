// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Shapefile.h"

#include "embedded/shapefile/DbfWriter.h"
#include "embedded/shapefile/OutputFiles.h"
#include "embedded/shapefile/ReferenceSystems.h"
#include "embedded/shapefile/ShpWriter.h"
#include "embedded/shapefile/Siblings.h"

#include "host/base/Numbers.h"
#include "host/gis/Exchange.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <new>
#include <system_error>
#include <thread>

namespace embedded {

namespace {

namespace files = std::filesystem;

constexpr std::array<std::string_view, 5> Extensions { ".shp", ".shx", ".dbf", ".cpg", ".prj" };
/// Indexes that other programs keep of a .shp; wrong as soon as it is replaced.
constexpr std::array<std::string_view, 3> IndexExtensions { ".sbn", ".sbx", ".qix" };

std::string fileNameOf(const gis::CTheme& theme)
{
    std::string name;
    for (const char c : theme.name.View()) {
        const auto byte = static_cast<unsigned char>(c);
        name += byte < 0x20 || byte == 0x7F || c == '/' ? '_' : c;
    }
    return name.empty() ? "_" : name;
}

/// Files of a folder named `stem` with one of the extensions in any case.
std::vector<files::path> filesOf(const std::string& folder, const std::string& stem,
    const std::vector<std::string_view>& extensions)
{
    std::vector<files::path> found;
    std::error_code failed;
    for (files::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(stem))
            continue;
        for (const std::string_view extension : extensions)
            if (orv::CompareIgnoreAsciiCase(std::string_view(name).substr(stem.size()), extension)
                == 0)
                found.push_back(entry->path());
    }
    return found;
}

Result<void> checkFolder(const std::string& folder)
{
    if (!files::path(folder).is_absolute())
        return Error { ErrorCode::FolderNotAbsolute, folder, {} };
    std::error_code failed;
    if (!files::is_directory(files::path(folder), failed))
        return Error { ErrorCode::FolderNotFound, folder, {} };
    return {};
}

int flagOf(std::string_view fileName)
{
    return fileName.ends_with(".dbf") || fileName.ends_with(".cpg") ? ExportDbfNotWritten
                                                                    : ExportShpNotWritten;
}

/// Row indexes of a theme's entities, in their order.
std::vector<int> rowsOf(const EntityStore& entities)
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(entities.entityCount()));
    for (int i = 0; i < entities.entityCount(); ++i) {
        const orv::CResultRow* row = EntityStore::rowOf(entities.entity(i));
        rows.push_back(row ? gis::CDBTable::indexOf(row) : -1);
    }
    return rows;
}

/// One theme on its way into files.
class Exporter final {
public:
    Exporter(gis::CTheme& theme, const std::string& folder, const ShapefileExportOptions& options,
        int& errorFlags, Report& report)
        : m_theme(theme)
        , m_folder(folder)
        , m_name(fileNameOf(theme))
        , m_options(options)
        , m_errorFlags(errorFlags)
        , m_report(report)
        , m_outputs(folder)
    {
    }

    Result<void> write();

private:
    Result<void> readAll();
    void openFiles(const std::string& prj);
    void writeBeside(const ShapeLayout& layout);
    bool isToStop(double fraction);
    Result<void> failures();
    Result<void> takePlaces();

    gis::CTheme& m_theme;
    std::string m_folder;
    std::string m_name;
    const ShapefileExportOptions& m_options;
    int& m_errorFlags;
    Report& m_report;
    OutputSet m_outputs;
    std::array<OutputFile, Extensions.size()> m_files; // as `Extensions`
    std::size_t m_fileCount = 0;
    std::chrono::steady_clock::time_point m_nextLook {};
    std::atomic<bool> m_isStopped { false };
};

void Exporter::openFiles(const std::string& prj)
{
    m_fileCount = prj.empty() ? Extensions.size() - 1 : Extensions.size();
    for (std::size_t i = 0; i < m_fileCount; ++i)
        m_outputs.add(m_files[i], m_name + std::string(Extensions[i]));
    m_files[3].write("UTF-8");
    if (!prj.empty())
        m_files[4].write(prj);
}

bool Exporter::isToStop(double fraction)
{
    IProgress* progress = m_theme.library().progress();
    const auto now = std::chrono::steady_clock::now();
    if (!progress || now < m_nextLook)
        return m_isStopped;
    m_nextLook = now + std::chrono::milliseconds(100);
    if (!progress->advance(fraction))
        m_isStopped = true;
    return m_isStopped;
}

void Exporter::writeBeside(const ShapeLayout& layout)
{
    const EntityStore& entities = m_theme.geometry();
    gis::CDBTable& table = *m_theme.table;
    const std::vector<int> rows = rowsOf(entities);
    std::atomic<std::int64_t> shapesDone { 0 };
    std::atomic<bool> shapesFailed { false };
    std::int64_t unusable = 0; // written by the other thread until it is joined
    std::jthread shapes([&] { // joined also when the table cannot be written
        try {
            unusable
                = writeShapes(entities, layout, m_files[0], m_files[1], m_isStopped, shapesDone);
        } catch (const std::bad_alloc&) {
            shapesFailed = true;
        }
    });
    try {
        const auto columns = dbfLayout(table, rows, m_options.maxTextBytes, m_report);
        writeDbf(
            table, rows, columns, m_files[2], [this](double part) { return isToStop(part); },
            m_report);
    } catch (const std::bad_alloc&) {
        m_files[2].fail("out of memory");
    }
    shapes.join();
    if (shapesFailed)
        m_files[0].fail("out of memory");
    if (unusable > 0) {
        Finding finding;
        finding.code = FindingCode::ShapesNotWritten;
        finding.count = unusable;
        m_report.add(std::move(finding));
    }
}

Result<void> Exporter::failures()
{
    Result<void> first;
    for (std::size_t i = 0; i < m_fileCount; ++i) {
        m_files[i].close();
        if (m_files[i].ok())
            continue;
        m_errorFlags |= flagOf(Extensions[i]);
        if (first)
            first = m_files[i].state();
    }
    return first;
}

Result<void> Exporter::takePlaces()
{
    std::vector<std::string_view> replaced(Extensions.begin(), Extensions.end());
    replaced.insert(replaced.end(), IndexExtensions.begin(), IndexExtensions.end());
    const std::vector<files::path> before = filesOf(m_folder, m_name, replaced);
    std::string failedName;
    Result<void> placed = m_outputs.commit(failedName);
    if (!placed) {
        m_errorFlags |= flagOf(failedName);
        return placed;
    }
    for (const files::path& old : before) {
        const std::string name = old.filename().string();
        const bool isNew = std::any_of(Extensions.begin(),
            Extensions.begin() + static_cast<std::ptrdiff_t>(m_fileCount),
            [&](std::string_view extension) { return name == m_name + std::string(extension); });
        std::error_code ignored;
        if (!isNew)
            files::remove(old, ignored);
    }
    return {};
}

/// Before the other thread runs. What could not be read shows as empty, and must not be written as
/// that; other themes of the library are no matter.
Result<void> Exporter::readAll()
{
    m_theme.forgetFailedGeometry(); // the reason may be gone
    static_cast<void>(m_theme.geometry());
    static_cast<void>(m_theme.table->readAllColumns());
    const Error* failed = m_theme.geometryFailure();
    if (!failed)
        failed = m_theme.table->failedColumn();
    if (!failed)
        return {};
    m_errorFlags = ExportShpNotWritten | ExportDbfNotWritten;
    return *failed;
}

Result<void> Exporter::write()
{
    if (auto read = readAll(); !read)
        return read;
    const ShapeLayout layout = shapeLayout(m_theme, m_options.coordinates, m_report);
    const std::string prj = prjText(m_theme.referenceSystem);
    if (prj.empty()) {
        Finding missing;
        missing.code = FindingCode::ReferenceSystemMissing;
        missing.severity = FindingSeverity::Note;
        m_report.add(std::move(missing));
    }
    openFiles(prj);
    writeBeside(layout);
    if (m_isStopped)
        return Error { ErrorCode::Cancelled, m_theme.name.Bytes(), {} };
    Result<void> written = failures();
    return written ? takePlaces() : written;
}

} // namespace

bool shapefileExists(gis::CTheme& theme, const std::string& folder, std::string& path)
{
    const std::string name = fileNameOf(theme);
    path = pathIn(folder, name);
    return !filesOf(folder, name, { Extensions.begin(), Extensions.end() }).empty();
}

Result<void> exportShapefile(gis::CTheme& theme, const std::string& folder,
    const ShapefileExportOptions& options, int& errorFlags, Report& report)
{
    errorFlags = 0;
    if (auto checked = checkFolder(folder); !checked) {
        errorFlags = ExportShpNotWritten | ExportDbfNotWritten;
        return checked;
    }
    try {
        return Exporter(theme, folder, options, errorFlags, report).write();
    } catch (const std::bad_alloc&) {
        errorFlags = ExportShpNotWritten | ExportDbfNotWritten;
        return Error { ErrorCode::Internal, theme.name.Bytes(), "out of memory" };
    } catch (const std::system_error& failure) {
        errorFlags = ExportShpNotWritten | ExportDbfNotWritten;
        return Error { ErrorCode::Internal, theme.name.Bytes(), failure.what() };
    }
}

} // namespace embedded
