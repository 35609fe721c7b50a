// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/IniFile.h"

#include "host/base/Numbers.h"

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Tree = boost::property_tree::ptree;

/// $TEMATICA_INI, else tematica/tematica.ini in the user's configuration folder.
fs::path defaultPath()
{
    if (const char* given = std::getenv("TEMATICA_INI"); given && *given)
        return given;
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
        return fs::path(config) / "tematica" / "tematica.ini";
    const char* home = std::getenv("HOME");
    return fs::path(home && *home ? home : ".") / ".config" / "tematica" / "tematica.ini";
}

/// A path of one level under a section; the separator cannot occur in a name that an ini file can
/// hold.
Tree::path_type pathOf(const orv::String& section, const orv::String& key)
{
    return Tree::path_type(section.Bytes() + '\n' + key.Bytes(), '\n');
}

} // namespace

class CIniFile::Impl final {
public:
    explicit Impl(fs::path path)
        : m_path(std::move(path))
    {
    }
    [[nodiscard]] Tree read() const
    {
        Tree tree;
        try {
            std::ifstream in(m_path);
            if (in)
                boost::property_tree::read_ini(in, tree);
        } catch (const std::exception&) {
            tree.clear(); // an unreadable file gives the defaults
        }
        return tree;
    }
    [[nodiscard]] bool write(const Tree& tree) const
    {
        try {
            if (m_path.has_parent_path())
                fs::create_directories(m_path.parent_path());
            fs::path aside = m_path;
            aside += "." + std::to_string(getpid()) + ".tmp";
            {
                std::ofstream out(aside, std::ios::trunc);
                boost::property_tree::write_ini(out, tree);
                out.flush();
                if (!out) {
                    fs::remove(aside);
                    return false;
                }
            }
            fs::rename(aside, m_path);
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

private:
    fs::path m_path;
};

CIniFile::CIniFile()
    : m_impl(std::make_unique<Impl>(defaultPath()))
{
}
CIniFile::CIniFile(const orv::String& path)
    : m_impl(std::make_unique<Impl>(path.Bytes()))
{
}
CIniFile::~CIniFile() = default;

long CIniFile::GetLong(const orv::String& section, const orv::String& key, long defaultValue) const
{
    const orv::String text = GetString(section, key, {});
    double value = 0;
    // What is no whole number counts as missing.
    return orv::ParseDouble(text.View(), value) && value == static_cast<double>(LongRound(value))
        ? LongRound(value)
        : defaultValue;
}

orv::String CIniFile::GetString(
    const orv::String& section, const orv::String& key, const orv::String& defaultValue) const
{
    const auto found = m_impl->read().get_optional<std::string>(pathOf(section, key));
    return found ? orv::String(std::string_view(*found)) : defaultValue;
}

bool CIniFile::WriteLong(const orv::String& section, const orv::String& key, long value)
{
    return WriteString(section, key, orv::String(std::string_view(std::to_string(value))));
}

bool CIniFile::WriteString(
    const orv::String& section, const orv::String& key, const orv::String& value)
{
    Tree tree = m_impl->read();
    tree.put(pathOf(section, key), value.Bytes());
    return m_impl->write(tree);
}
