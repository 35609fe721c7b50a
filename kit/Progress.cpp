// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Progress.h"

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>

namespace kit {

namespace {

constexpr int ProgressSteps = 1000;
constexpr std::chrono::milliseconds EventsEvery(40);

} // namespace

Progress::Progress(QWidget* parent, const QString& label)
    : m_parent(parent)
    , m_label(label)
    , m_start(std::chrono::steady_clock::now())
    , m_lastEvents(m_start)
{
}

Progress::~Progress() = default;

void Progress::show()
{
    QWidget* owner = m_parent ? m_parent->window() : QApplication::activeWindow();
    m_pause.emplace();
    m_dialog = std::make_unique<QProgressDialog>(owner);
    m_dialog->setObjectName(QStringLiteral("CProgress"));
    m_dialog->setLabelText(m_label);
    m_dialog->setRange(0, ProgressSteps);
    auto* cancel = new QPushButton(QStringLiteral("Annulla"));
    cancel->setObjectName(QStringLiteral("id2"));
    cancel->setAutoDefault(false);
    m_dialog->setCancelButton(cancel);
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->setMinimumDuration(0);
    m_dialog->setAutoClose(false);
    m_dialog->setAutoReset(false);
    m_dialog->show();
}

bool Progress::advance(double fraction)
{
    if (m_isCancelled || !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return !m_isCancelled;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastEvents < EventsEvery)
        return true;
    if (!m_dialog) {
        if (now - m_start < std::chrono::milliseconds(ProgressAfterMs))
            return true;
        show();
    }
    m_dialog->setValue(static_cast<int>(fraction * ProgressSteps));
    QCoreApplication::processEvents();
    m_isCancelled = m_dialog->wasCanceled();
    m_lastEvents = std::chrono::steady_clock::now();
    return !m_isCancelled;
}

} // namespace kit
