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
#include <QStandardPaths>
#include <QThreadPool>

#include <csignal>

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

bool isRunning(qint64 processId)
{
    return processId == QCoreApplication::applicationPid()
        || ::kill(static_cast<pid_t>(processId), 0) == 0;
}

void removeCopy(const QString& path)
{
    QFile::remove(path);
    QFile::remove(noteOf(path));
}

} // namespace

Recovery::Recovery(Document& document)
    : m_document(document)
{
    connect(&document, &Document::changed, this, &Recovery::onChanged);
}

Recovery::~Recovery()
{
    if (m_isForgotten)
        *m_isForgotten = true;
}

QString Recovery::path() const
{
    return folder() + QLatin1Char('/') + QString::number(QCoreApplication::applicationPid())
        + Suffix;
}

std::vector<RecoveryFile> Recovery::leftBehind()
{
    std::vector<RecoveryFile> files;
    for (const QFileInfo& info :
        QDir(folder()).entryInfoList({ QLatin1Char('*') + Suffix }, QDir::Files, QDir::Time)) {
        if (isRunning(info.completeBaseName().toLongLong()))
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
}

void Recovery::forget()
{
    m_isWanted = false;
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
    m_isWanted = true;
    if (!m_isWriting)
        write();
}

void Recovery::write()
{
    m_isWanted = false;
    std::shared_ptr<gis::CLibGis> copy
        = embedded::cloneLibrary(*embedded::Library::of(&m_document.library()));
    if (!copy || !QDir().mkpath(folder()))
        return;
    m_isWriting = true;
    m_isForgotten = std::make_shared<std::atomic<bool>>(false);
    QThreadPool::globalInstance()->start(
        [self = QPointer<Recovery>(this), copy, target = path(), original = m_document.path(),
            forgotten = m_isForgotten] {
            CIniFile(kit::fromQt(noteOf(target)))
                .WriteString("Recovery", "OriginalPath", kit::fromQt(original));
            static_cast<void>(embedded::saveLibraryCopy(*copy, target.toStdString()).ok());
            if (*forgotten)
                removeCopy(target);
            QMetaObject::invokeMethod(qApp, [self] {
                if (!self)
                    return;
                self->m_isWriting = false;
                if (self->m_isWanted)
                    self->write();
            });
        });
}

} // namespace app
