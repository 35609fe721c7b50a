// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Choosers.h"

#include "kit/ModalRun.h"

#include <QFileDialog>

#include <utility>

namespace kit {

namespace {

FileChooserScope::Chooser& installedChooser()
{
    static FileChooserScope::Chooser chooser;
    return chooser;
}

} // namespace

std::optional<QString> FChooseFile(QWidget* parent, const FileRequest& request)
{
    if (installedChooser())
        return installedChooser()(request);
    QFileDialog dialog(
        parent ? parent->window() : nullptr, request.caption, request.folder, request.filter);
    const bool isSave = request.kind == FileRequest::Kind::Save;
    dialog.setAcceptMode(isSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(isSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!request.suffix.isEmpty())
        dialog.setDefaultSuffix(request.suffix);
    if (!runModal(dialog) || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

FileChooserScope::FileChooserScope(Chooser chooser)
    : m_previous(std::exchange(installedChooser(), std::move(chooser)))
{
}

FileChooserScope::~FileChooserScope()
{
    installedChooser() = std::move(m_previous);
}

} // namespace kit
