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
#include <QThread>
#include <QThreadPool>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace app {

namespace {

const QString Suffix = QStringLiteral(".gpkg");
constexpr int LockAttempts = 10;

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

/// Whether the open file is still the one of that name.
bool isFileAt(int file, const QByteArray& path)
{
    struct stat opened { };
    struct stat named { };
    return ::fstat(file, &opened) == 0 && ::stat(path.constData(), &named) == 0
        && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// A descriptor of the file, locked; -1 while another has it. Process numbers come again, locks
/// end with their process.
int lockFile(const QByteArray& path)
{
    for (;;) {
        const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (file < 0)
            return -1;
        if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
            ::close(file);
            return -1;
        }
        if (isFileAt(file, path))
            return file;
        ::close(file); // who had it has removed it meanwhile: such a lock tells nobody anything
    }
}

/// The lock of a copy for a scope, so that nobody takes it between a look and what follows.
class HeldLock final {
public:
    explicit HeldLock(const QString& copy)
        : m_path(QFile::encodeName(lockOf(copy)))
        , m_file(lockFile(m_path))
    {
    }
    HeldLock(const HeldLock&) = delete;
    HeldLock& operator=(const HeldLock&) = delete;
    ~HeldLock()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    [[nodiscard]] bool isHeld() const { return m_file >= 0; }
    void removeFile() const { ::unlink(m_path.constData()); }

private:
    QByteArray m_path;
    int m_file;
};

bool isInUse(const QString& copy)
{
    return QFile::exists(lockOf(copy)) && !HeldLock(copy).isHeld();
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
    const QByteArray name = QFile::encodeName(lockOf(path()));
    if (m_lock >= 0 && isFileAt(m_lock, name))
        return true;
    if (m_lock >= 0)
        ::close(m_lock); // somebody has emptied the folder
    m_lock = -1;
    if (!QDir().mkpath(folder()))
        return false;
    // Another program may have it for the moment in which it looks whether anybody has.
    for (int i = 0; i < LockAttempts && m_lock < 0; ++i) {
        if (i > 0)
            QThread::msleep(1);
        m_lock = lockFile(name);
    }
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

bool Recovery::discard(const RecoveryFile& file)
{
    const HeldLock lock(file.path);
    if (!lock.isHeld())
        return false;
    removeCopy(file.path);
    lock.removeFile();
    return true;
}

void Recovery::replaces(const RecoveryFile& file)
{
    m_replaced.push_back(file);
}

void Recovery::discardReplaced()
{
    // Another program that starts now may be looking at one: that is for the next time.
    std::erase_if(m_replaced, [](const RecoveryFile& file) { return discard(file); });
}

void Recovery::forget()
{
    m_writtenPosition.reset();
    discardReplaced();
    if (!m_isWriting)
        releaseLock();
    m_waiting.reset();
    if (m_isForgotten)
        *m_isForgotten = true;
    removeCopy(path());
    takeFailureBack(); // there is nothing to protect
}

/// Another library: its changes are counted anew, and the copy of the one before is of no use.
void Recovery::onOpened()
{
    m_writtenPosition.reset();
    m_waiting.reset();
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
    const std::uint64_t position = m_document.changes().Position();
    if (m_waiting && m_waiting->position == position)
        return;
    m_waiting.reset(); // before it is made anew, for which there might not be the memory else
    if (m_writtenPosition == position) { // the act changed nothing, or was taken back
        if (!m_isWriting)
            takeFailureBack();
        return;
    }
    // Now, also while another copy is being written: when that is done, the next act may be half
    // done, and last for as long as a dialog is open.
    std::shared_ptr<gis::CLibGis> library;
    try {
        library = embedded::cloneLibrary(*embedded::Library::of(&m_document.library()));
    } catch (const std::bad_alloc&) { // told like a copy that could not be written
    }
    if (!library) {
        tellFailure();
        return;
    }
    Copy copy { std::move(library), m_document.path(), position };
    if (m_isWriting)
        m_waiting = std::move(copy);
    else
        write(std::move(copy));
}

/// What a program left that ended while it wrote: parts of a copy, and locks and notes without one.
void Recovery::sweep()
{
    const QDir copies(folder());
    for (const QFileInfo& info :
        copies.entryInfoList({ QStringLiteral("*.lock") }, QDir::Files | QDir::Hidden)) {
        const QString copy = info.filePath().chopped(5);
        const HeldLock lock(copy);
        if (!lock.isHeld() || QFile::exists(copy))
            continue;
        removeCopy(copy);
        lock.removeFile();
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

void Recovery::write(Copy copy)
{
    if (!holdLock()) {
        tellFailure();
        return;
    }
    m_isWriting = true;
    m_writtenPosition = copy.position;
    m_isForgotten = std::make_shared<std::atomic<bool>>(false);
    QThreadPool::globalInstance()->start([self = QPointer<Recovery>(this), copy = std::move(copy),
                                             target = path(), forgotten = m_isForgotten] {
        CIniFile(kit::fromQt(noteOf(target)))
            .WriteString("Recovery", "OriginalPath", kit::fromQt(copy.originalPath));
        bool isWritten = false;
        try {
            isWritten = embedded::saveLibraryCopy(*copy.library, target.toStdString()).ok();
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
    if (auto next = std::exchange(m_waiting, std::nullopt))
        write(*std::move(next));
    else if (*m_isForgotten)
        releaseLock();
    else if (isWritten && m_writtenPosition == m_document.changes().Position())
        takeFailureBack();
    else if (isWritten && !m_document.changes().IsStepOpen())
        onChanged(); // for the newest act there was no memory: there may be now
}

void Recovery::tellFailure()
{
    if (!std::exchange(m_isFailureTold, true))
        Q_EMIT failed();
}

void Recovery::takeFailureBack()
{
    if (std::exchange(m_isFailureTold, false))
        Q_EMIT protectedAgain();
}

} // namespace app
