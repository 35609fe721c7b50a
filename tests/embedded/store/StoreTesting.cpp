// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/StoreTesting.h"

#include "embedded/store/Wkb.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

namespace storetest {
namespace {

// The functions that the standard triggers of a layer call; the tests' shapes are points.
void boxSide(sqlite3_context* context, int, sqlite3_value** values)
{
    const auto side = *static_cast<const int*>(sqlite3_user_data(context));
    const std::string_view blob(static_cast<const char*>(sqlite3_value_blob(values[0])),
        static_cast<std::size_t>(sqlite3_value_bytes(values[0])));
    embedded::store::ShapeBuffer shape;
    const embedded::store::ShapeLayout layout;
    if (decodeShape(blob, {}, layout, shape) == embedded::store::ShapeState::Taken)
        sqlite3_result_double(context, shape.coordinates[static_cast<std::size_t>(side)]);
    else
        sqlite3_result_null(context);
}
void isEmpty(sqlite3_context* context, int, sqlite3_value**)
{
    sqlite3_result_int(context, 0);
}

constexpr int XSide = 0, YSide = 1;

struct Database {
    explicit Database(const std::string& path)
    {
        if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            throw std::runtime_error("cannot open " + path);
        sqlite3_busy_timeout(handle, 2000);
        for (const auto& [name, side] :
            { std::pair("ST_MinX", &XSide), std::pair("ST_MaxX", &XSide),
                std::pair("ST_MinY", &YSide), std::pair("ST_MaxY", &YSide) })
            sqlite3_create_function_v2(handle, name, 1, SQLITE_UTF8, const_cast<int*>(side),
                &boxSide, nullptr, nullptr, nullptr);
        sqlite3_create_function_v2(
            handle, "ST_IsEmpty", 1, SQLITE_UTF8, nullptr, &isEmpty, nullptr, nullptr, nullptr);
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database() { sqlite3_close(handle); }
    sqlite3* handle = nullptr;
};

int addRow(void* out, int count, char** values, char**)
{
    auto& text = *static_cast<std::string*>(out);
    if (!text.empty())
        text += '\n';
    for (int i = 0; i < count; ++i)
        text += (i > 0 ? "|" : "") + std::string(values[i] ? values[i] : "NULL");
    return 0;
}

} // namespace

CTemporaryFolder::CTemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "tematica-store-XXXXXX");
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    m_path = pattern;
}

CTemporaryFolder::~CTemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(m_path, ignored);
}

std::unique_ptr<gis::CLibGis> opened(
    const std::string& path, embedded::OpenMode mode, embedded::Report* report)
{
    embedded::Report own;
    auto library = embedded::openLibrary(path, mode, nullptr, report ? *report : own);
    if (!library) {
        ADD_FAILURE() << "not opened: " << path << ", " << static_cast<int>(library.error().code)
                      << ", " << library.error().detail;
        return nullptr;
    }
    return std::move(library.value());
}

embedded::Error refusal(const std::string& path, embedded::OpenMode mode)
{
    embedded::Report report;
    const auto library = embedded::openLibrary(path, mode, nullptr, report);
    if (library) {
        ADD_FAILURE() << "was opened: " << path;
        return {};
    }
    return library.error();
}

void runSql(const std::string& path, const std::string& sql)
{
    const Database database(path);
    char* message = nullptr;
    if (sqlite3_exec(database.handle, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK)
        ADD_FAILURE() << sql << ": " << message;
    sqlite3_free(message);
}

std::string sqlAnswer(const std::string& path, const std::string& sql)
{
    const Database database(path);
    std::string answer;
    char* message = nullptr;
    if (sqlite3_exec(database.handle, sql.c_str(), &addRow, &answer, &message) != SQLITE_OK)
        answer = std::string("error: ") + message;
    sqlite3_free(message);
    return answer;
}

std::string programOutput(const std::string& command)
{
    std::string output;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return output;
    std::array<char, 4096> buffer {};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    ::pclose(pipe);
    return output;
}

bool isInstalled(const std::string& program)
{
    return !programOutput("command -v " + program).empty();
}

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

void writeBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace storetest
