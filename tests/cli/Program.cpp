// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"

#include "embedded/store/GeoPackage.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>

namespace cli_test {

namespace fs = std::filesystem;

Folder::Folder()
{
    std::string name = (fs::temp_directory_path() / "tematica-cli-XXXXXX").string();
    if (!mkdtemp(name.data()))
        ADD_FAILURE() << "no temporary folder";
    m_path = name;
}

Folder::~Folder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string Folder::path(std::string_view name) const
{
    return name.empty() ? m_path.string() : (m_path / name).string();
}

std::string Folder::library(std::string_view name, std::string_view notation) const
{
    const auto library = support::makeLibrary(notation);
    const auto saved = embedded::saveLibraryAs(*library, path(name));
    EXPECT_TRUE(saved.ok());
    return path(name);
}

std::string Folder::file(std::string_view name, std::string_view bytes) const
{
    std::ofstream(path(name), std::ios::binary)
        .write(bytes.data(), static_cast<long>(bytes.size()));
    return path(name);
}

std::vector<std::string> Folder::names() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::map<std::string, std::string> Folder::bytes() const
{
    std::map<std::string, std::string> bytes;
    for (const auto& entry : fs::recursive_directory_iterator(m_path))
        if (entry.is_regular_file())
            bytes[entry.path().string()] = contents(entry.path().string());
    return bytes;
}

namespace {

[[noreturn]] void become(const std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    std::string program = TEMATICA_PROGRAM;
    arguments.push_back(program.data());
    std::vector<std::string> copies = words;
    for (auto& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(program.c_str(), arguments.data());
    _exit(127);
}

int waitFor(pid_t process)
{
    int status = 0;
    waitpid(process, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// Redirects a descriptor of the child into a file.
void redirect(int descriptor, std::FILE* file)
{
    dup2(fileno(file), descriptor);
}

std::string readAll(std::FILE* file)
{
    std::string text;
    std::rewind(file);
    char buffer[4096];
    for (std::size_t n = 0; (n = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        text.append(buffer, n);
    std::fclose(file);
    return text;
}

/// `meanwhile` is called with the program's number while it runs.
Outcome runBeside(
    const std::vector<std::string>& words, const std::function<void(pid_t)>& meanwhile)
{
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    const pid_t process = fork();
    if (process == 0) {
        redirect(STDOUT_FILENO, out);
        redirect(STDERR_FILENO, err);
        become(words);
    }
    meanwhile(process);
    Outcome outcome;
    outcome.exitCode = waitFor(process);
    outcome.out = readAll(out);
    outcome.err = readAll(err);
    return outcome;
}

} // namespace

Outcome run(const std::vector<std::string>& words)
{
    return runBeside(words, [](pid_t) {});
}

Outcome runInterrupted(const std::vector<std::string>& words, int afterMs)
{
    return runBeside(words, [afterMs](pid_t process) {
        usleep(static_cast<useconds_t>(afterMs) * 1000);
        kill(process, SIGINT);
    });
}

Outcome runSignalled(const std::vector<std::string>& words, const std::string& whenThere,
    const std::vector<int>& signals)
{
    return runBeside(words, [&](pid_t process) {
        // Until the file is there or the program has ended without making it.
        siginfo_t ended {};
        while (!fs::exists(whenThere) && ended.si_pid == 0) {
            usleep(300);
            waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT);
        }
        for (const int signal : signals) {
            kill(process, signal);
            usleep(2000);
        }
    });
}

Outcome runInto(
    const std::vector<std::string>& words, std::size_t readBytes, bool isPipeSignalIgnored)
{
    int ends[2] = {};
    if (pipe(ends) != 0)
        return {};
    std::FILE* err = std::tmpfile();
    const pid_t process = fork();
    if (process == 0) {
        std::signal(SIGPIPE, isPipeSignalIgnored ? SIG_IGN : SIG_DFL);
        dup2(ends[1], STDOUT_FILENO);
        redirect(STDERR_FILENO, err);
        close(ends[0]);
        close(ends[1]);
        become(words);
    }
    close(ends[1]);
    Outcome outcome;
    outcome.out.resize(readBytes);
    const auto count = read(ends[0], outcome.out.data(), readBytes);
    outcome.out.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    close(ends[0]);
    outcome.exitCode = waitFor(process);
    outcome.err = readAll(err);
    return outcome;
}

std::string contents(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
}

} // namespace cli_test
