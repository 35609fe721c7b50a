// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

namespace app {

class Document;

/// Unsaved work that a program left when it ended early.
struct RecoveryFile {
    QString path; // a library
    QString originalPath; // of the file that was open; may be empty
    QString time; // when it was written, for the user
};

/// Keeps a copy of unsaved work beside the settings: written after each act on another thread,
/// removed when the work is saved or given up, found by the next start when the program ended
/// early. Thread: the user interface's.
class Recovery final : public QObject {
    Q_OBJECT

public:
    explicit Recovery(Document& document);
    ~Recovery() override;

    /// Copies whose program runs no more.
    [[nodiscard]] static std::vector<RecoveryFile> leftBehind();
    static void discard(const RecoveryFile& file);
    /// The work is saved or given up: the copy goes.
    void forget();
    /// True while a copy is being written.
    [[nodiscard]] bool isWriting() const { return m_isWriting; }
    [[nodiscard]] QString path() const;

private:
    void onChanged();
    void write();

    Document& m_document;
    bool m_isWriting = false;
    bool m_isWanted = false;
    std::shared_ptr<std::atomic<bool>>
        m_isForgotten; // of the copy being written: it must not come back
};

} // namespace app
