// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/IniFile.h"

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Tree = boost::property_tree::ptree;

/// $TEMATICA_INI, else tematica/tematica.ini in the user's configuration folder; empty where the
/// process has none.
fs::path defaultPath()
{
    if (const char* given = std::getenv("TEMATICA_INI"); given && *given)
        return given;
    const fs::path file = fs::path("tematica") / "tematica.ini";
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config == '/')
        return config / file;
    if (const char* home = std::getenv("HOME"); home && *home)
        return fs::path(home) / ".config" / file;
    return {};
}

enum class Content { Read, Missing, Unreadable };

Content readTree(const fs::path& path, Tree& tree)
{
    std::error_code error;
    if (path.empty() || !fs::exists(path, error))
        return error ? Content::Unreadable : Content::Missing;
    std::ifstream in(path);
    in.imbue(std::locale::classic());
    if (!in)
        return Content::Unreadable;
    boost::property_tree::read_ini(in, tree);
    return Content::Read;
}

const Tree* childOf(const Tree* tree, const std::string& name)
{
    if (!tree)
        return nullptr;
    // By name and not by path: a point is a letter like any other in a name.
    const auto found = tree->find(name);
    return found == tree->not_found() ? nullptr : &found->second;
}

bool hasAny(const std::string& text, std::string_view bytes)
{
    return text.find_first_of(bytes) != std::string::npos;
}

bool hasBlankEnds(const std::string& text)
{
    constexpr std::string_view Blanks = " \t\v\f\r\n";
    return !text.empty()
        && (Blanks.find(text.front()) != std::string_view::npos
            || Blanks.find(text.back()) != std::string_view::npos);
}

constexpr std::string_view LineEnds("\n\r\0", 3);

/// What would be read back as something else is not written.
bool canBeWritten(const std::string& section, const std::string& key, const std::string& value)
{
    return !section.empty() && !hasBlankEnds(section) && !hasAny(section, LineEnds)
        && !hasAny(section, "]") && !key.empty() && !hasBlankEnds(key) && !hasAny(key, LineEnds)
        && !hasAny(key, "=") && key.front() != '[' && key.front() != ';' && key.front() != '#'
        && !hasBlankEnds(value) && !hasAny(value, LineEnds);
}

/// A file that is there only until it takes another one's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : m_path(target.string() + ".XXXXXX")
        , m_handle(mkostemp(m_path.data(), O_CLOEXEC))
    {
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (m_handle < 0)
            return;
        close(m_handle);
        if (!m_isInPlace)
            unlink(m_path.c_str());
    }
    bool write(std::string_view bytes)
    {
        if (m_handle < 0)
            return false;
        while (!bytes.empty()) {
            const ssize_t written = ::write(m_handle, bytes.data(), bytes.size());
            if (written <= 0)
                return false;
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return true;
    }
    /// On the disk before its name is, so that a crash leaves the old file or the new one.
    bool replace(const fs::path& target)
    {
        struct stat before { };
        constexpr mode_t NewFile = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
        const bool isKnown = stat(target.c_str(), &before) == 0;
        m_isInPlace = fchmod(m_handle, isKnown ? before.st_mode & 07777 : NewFile) == 0
            && fsync(m_handle) == 0 && std::rename(m_path.c_str(), target.c_str()) == 0;
        return m_isInPlace;
    }

private:
    std::string m_path;
    int m_handle;
    bool m_isInPlace = false;
};

bool writeTree(const fs::path& path, const Tree& tree)
{
    std::error_code error;
    // A link to a file stays a link; what it leads to is replaced.
    const fs::path target = fs::weakly_canonical(path, error);
    if (error || target.empty())
        return false;
    fs::create_directories(target.parent_path(), error);
    std::ostringstream text;
    text.imbue(std::locale::classic());
    boost::property_tree::write_ini(text, tree);
    TemporaryFile file(target);
    return file.write(text.str()) && file.replace(target);
}

/// Runs what may throw: a path or a file that the libraries cannot take is a failure like others.
template <typename Act> bool succeeds(Act act)
{
    try {
        return act();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

class CIniFile::Impl final {
public:
    fs::path path;
};

CIniFile::CIniFile()
    : m_impl(std::make_unique<Impl>())
{
    m_impl->path = defaultPath();
}

CIniFile::CIniFile(const orv::String& path)
    : m_impl(std::make_unique<Impl>())
{
    m_impl->path = path.Bytes();
}

CIniFile::~CIniFile() = default;

long CIniFile::GetLong(const orv::String& section, const orv::String& key, long defaultValue) const
{
    const orv::String text = GetString(section, key, {});
    std::string_view digits = text.View();
    if (digits.starts_with('+'))
        digits.remove_prefix(1);
    long value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isWhole = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    return isWhole ? value : defaultValue;
}

orv::String CIniFile::GetString(
    const orv::String& section, const orv::String& key, const orv::String& defaultValue) const
{
    Tree tree;
    if (!succeeds([&] { return readTree(m_impl->path, tree) == Content::Read; }))
        return defaultValue;
    const Tree* value = childOf(childOf(&tree, section.Bytes()), key.Bytes());
    return value ? orv::String(std::string_view(value->data())) : defaultValue;
}

bool CIniFile::WriteLong(const orv::String& section, const orv::String& key, long value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return WriteString(section, key, orv::String(std::string_view(digits, end)));
}

bool CIniFile::WriteString(
    const orv::String& section, const orv::String& key, const orv::String& value)
{
    if (!canBeWritten(section.Bytes(), key.Bytes(), value.Bytes()))
        return false;
    return succeeds([&] {
        Tree tree;
        // A file that cannot be read is not overwritten: it may hold what somebody needs.
        if (readTree(m_impl->path, tree) == Content::Unreadable)
            return false;
        const auto place = tree.find(section.Bytes());
        Tree& keys = place == tree.not_found() ? tree.push_back({ section.Bytes(), Tree() })->second
                                               : tree.to_iterator(place)->second;
        const auto old = keys.find(key.Bytes());
        if (old == keys.not_found())
            keys.push_back({ key.Bytes(), Tree(value.Bytes()) });
        else
            old->second.data() = value.Bytes();
        return writeTree(m_impl->path, tree);
    });
}
