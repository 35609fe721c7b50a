// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace gis {
class CLibGis;
}

namespace app {

class Document;

/// Unsaved work that a program left when it ended early.
struct RecoveryFile {
    QString path; // a library
    QString originalPath; // of the file that was open; may be empty
    QString time; // when it was written, for the user
};

/// Keeps a copy of unsaved work beside the settings: written after each act that changed something,
/// on another thread; removed when the work is saved or given up; found by the next start when the
/// program ended early. A lock that goes with the process tells whose program still runs. Thread:
/// the user interface's.
class Recovery final : public QObject {
    Q_OBJECT

public:
    explicit Recovery(Document& document);
    ~Recovery() override;

    /// Copies whose program runs no more.
    [[nodiscard]] static std::vector<RecoveryFile> leftBehind();
    /// False, and nothing done, while a program holds it.
    static bool discard(const RecoveryFile& file);
    /// The document holds that file's work now: it goes when a copy of its own is written, or
    /// saved.
    void replaces(const RecoveryFile& file);
    /// The work is saved or given up: the copy goes.
    void forget();
    /// True while a copy is being written.
    [[nodiscard]] bool isWriting() const { return m_isWriting; }
    [[nodiscard]] QString path() const;

Q_SIGNALS:
    /// A copy cannot be written; told once until one is written again.
    void failed();
    /// A copy was written again after that, or nothing is unsaved any more.
    void protectedAgain();

private:
    /// The work as it was at the end of an act.
    struct Copy {
        std::shared_ptr<gis::CLibGis> library;
        QString originalPath;
        std::uint64_t position = 0; // of the changes
    };
    static void sweep();
    void onOpened();
    void onChanged();
    void tellFailure();
    void takeFailureBack();
    void write(Copy copy);
    void onWritten(bool isWritten);
    void discardReplaced();
    bool holdLock();
    void releaseLock();

    Document& m_document;
    const QString m_name; // of the copy, without folder; never given twice
    int m_lock = -1; // an open file that this process has locked
    std::optional<std::uint64_t> m_writtenPosition; // of the changes that the copy holds
    std::optional<Copy> m_waiting; // until the one before is written; only the newest
    std::vector<RecoveryFile> m_replaced;
    bool m_isWriting = false;
    bool m_isFailureTold = false;
    std::shared_ptr<std::atomic<bool>>
        m_isForgotten; // of the copy being written: it must not come back
};

} // namespace app
