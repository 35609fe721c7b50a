// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Recovery.h"

#include "app/Document.h"
#include "embedded/model/Clone.h"
#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "host/base/IniFile.h"
#include "kit/texts/QtText.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThreadPool>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace app {

namespace {

const QString Suffix = QStringLiteral(".gpkg");

QString folder()
{
    const QString given = qEnvironmentVariable("TEMATICA_RECOVERY");
    return given.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + QStringLiteral("/tematica/recovery")
                           : given;
}

QString noteOf(const QString& path)
{
    return path + QStringLiteral(".ini");
}

QString lockOf(const QString& path)
{
    return path + QStringLiteral(".lock");
}

/// A descriptor of the file, locked; -1 while another has it. Process numbers come again, locks
/// end with their process.
int lockFile(const QString& path)
{
    const int file
        = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0)
        return file;
    if (file >= 0)
        ::close(file);
    return -1;
}

bool isInUse(const QString& path)
{
    if (!QFile::exists(lockOf(path)))
        return false;
    const int lock = lockFile(lockOf(path));
    if (lock >= 0)
        ::close(lock);
    return lock < 0;
}

void removeCopy(const QString& path)
{
    QFile::remove(path);
    QFile::remove(noteOf(path));
}

} // namespace

Recovery::Recovery(Document& document)
    : m_document(document)
    , m_name(QUuid::createUuid().toString(QUuid::WithoutBraces) + Suffix)
{
    connect(&document, &Document::opened, this, &Recovery::onOpened);
    connect(&document, &Document::changed, this, &Recovery::onChanged);
}

Recovery::~Recovery()
{
    if (m_isForgotten)
        *m_isForgotten = true;
    releaseLock();
}

void Recovery::releaseLock()
{
    if (m_lock < 0)
        return;
    QFile::remove(lockOf(path()));
    ::close(m_lock);
    m_lock = -1;
}

QString Recovery::path() const
{
    return folder() + QLatin1Char('/') + m_name;
}

bool Recovery::holdLock()
{
    if (m_lock < 0 && QDir().mkpath(folder()))
        m_lock = lockFile(lockOf(path()));
    return m_lock >= 0;
}

std::vector<RecoveryFile> Recovery::leftBehind()
{
    sweep();
    std::vector<RecoveryFile> files;
    for (const QFileInfo& info :
        QDir(folder()).entryInfoList({ QLatin1Char('*') + Suffix }, QDir::Files, QDir::Time)) {
        if (isInUse(info.filePath()))
            continue;
        const CIniFile note(kit::fromQt(noteOf(info.filePath())));
        files.push_back(
            { info.filePath(), kit::toQt(note.GetString("Recovery", "OriginalPath", "")),
                info.lastModified().toString(QStringLiteral("dd/MM/yyyy HH:mm")) });
    }
    return files;
}

void Recovery::discard(const RecoveryFile& file)
{
    removeCopy(file.path);
    QFile::remove(lockOf(file.path));
}

void Recovery::replaces(const RecoveryFile& file)
{
    m_replaced.push_back(file);
}

void Recovery::discardReplaced()
{
    for (const RecoveryFile& file : m_replaced)
        discard(file);
    m_replaced.clear();
}

void Recovery::forget()
{
    m_writtenPosition.reset();
    discardReplaced();
    if (!m_isWriting)
        releaseLock();
    m_isWanted = false;
    if (m_isForgotten)
        *m_isForgotten = true;
    removeCopy(path());
}

/// Another library: its changes are counted anew, and the copy of the one before is of no use.
void Recovery::onOpened()
{
    m_writtenPosition.reset();
    m_isWanted = false;
    m_isFailureTold = false; // told anew of this library's work
    if (m_isForgotten)
        *m_isForgotten = true;
    removeCopy(path());
}

void Recovery::onChanged()
{
    if (m_document.isSaved()) {
        forget();
        return;
    }
    if (m_writtenPosition == m_document.changes().Position())
        return; // the act changed nothing
    m_isWanted = true;
    if (!m_isWriting)
        write();
}

/// What a program left that ended while it wrote: parts of a copy, and locks and notes without one.
void Recovery::sweep()
{
    const QDir copies(folder());
    for (const QFileInfo& info :
        copies.entryInfoList({ QStringLiteral("*.lock") }, QDir::Files | QDir::Hidden)) {
        const QString copy = info.filePath().chopped(5);
        if (!QFile::exists(copy) && !isInUse(copy))
            discard({ copy, {}, {} });
    }
    // The names of such parts carry the number of the program that wrote them.
    static const QRegularExpression part(QStringLiteral("^\\.tematica-(\\d+)-\\d+\\.tmp"));
    for (const QFileInfo& info :
        copies.entryInfoList({ QStringLiteral(".tematica-*") }, QDir::Files | QDir::Hidden)) {
        const auto match = part.match(info.fileName());
        if (match.hasMatch() && ::kill(match.captured(1).toInt(), 0) != 0 && errno == ESRCH)
            QFile::remove(info.filePath());
    }
}

void Recovery::write()
{
    m_isWanted = false;
    std::shared_ptr<gis::CLibGis> copy;
    try {
        copy = embedded::cloneLibrary(*embedded::Library::of(&m_document.library()));
    } catch (const std::bad_alloc&) { // told like a copy that could not be written
    }
    if (!copy || !holdLock()) {
        tellFailure();
        return;
    }
    m_isWriting = true;
    m_writtenPosition = m_document.changes().Position();
    m_isForgotten = std::make_shared<std::atomic<bool>>(false);
    QThreadPool::globalInstance()->start(
        [self = QPointer<Recovery>(this), copy, target = path(), original = m_document.path(),
            forgotten = m_isForgotten] {
            CIniFile(kit::fromQt(noteOf(target)))
                .WriteString("Recovery", "OriginalPath", kit::fromQt(original));
            bool isWritten = false;
            try {
                isWritten = embedded::saveLibraryCopy(*copy, target.toStdString()).ok();
            } catch (const std::exception&) { // out of memory
            }
            if (*forgotten)
                removeCopy(target);
            QMetaObject::invokeMethod(qApp, [self, isWritten] {
                if (self)
                    self->onWritten(isWritten);
            });
        });
}

void Recovery::onWritten(bool isWritten)
{
    m_isWriting = false;
    if (isWritten && !*m_isForgotten)
        discardReplaced();
    if (!isWritten && !*m_isForgotten) {
        m_writtenPosition.reset(); // the next act tries again
        tellFailure();
    }
    if (isWritten && std::exchange(m_isFailureTold, false))
        Q_EMIT protectedAgain();
    // In the middle of an act the library is half changed; the end of the act asks again.
    if (m_isWanted && !m_document.changes().IsStepOpen())
        write();
    else if (*m_isForgotten)
        releaseLock();
}

void Recovery::tellFailure()
{
    if (!std::exchange(m_isFailureTold, true))
        Q_EMIT failed();
}

} // namespace app
