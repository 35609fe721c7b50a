// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Progress.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>

namespace kit {

namespace {

constexpr int ProgressSteps = 1000;
constexpr int LongestLabelPixels = 500;
constexpr std::chrono::milliseconds EventsEvery(40);

/// Stays until its work is done, which may take a moment after it was stopped: were it hidden, the
/// windows below would take input again.
class CProgressDialog final : public QProgressDialog {
public:
    explicit CProgressDialog(QWidget* owner)
        : QProgressDialog(owner)
    {
        disconnect(this, SIGNAL(canceled()), this, SLOT(cancel())); // which hides it
    }
    void reject() override { Q_EMIT canceled(); }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore();
        Q_EMIT canceled();
    }
};

} // namespace

Progress::Progress(QWidget* parent, const QString& label, ProgressKind kind)
    : m_parent(parent)
    , m_label(label)
    , m_kind(kind)
    , m_start(std::chrono::steady_clock::now())
    , m_lastEvents(m_start)
{
}

Progress::~Progress()
{
    delete m_dialog.data();
}

void Progress::show()
{
    // A dialog that is filled before it is shown has no place yet.
    QWidget* owner = m_parent && m_parent->window()->isVisible() ? m_parent->window()
                                                                 : QApplication::activeWindow();
    m_pause.emplace();
    m_dialog = new CProgressDialog(owner);
    m_dialog->setObjectName(QStringLiteral("CProgress"));
    auto* label = new QLabel; // names in it are shown as they are, however long
    label->setTextFormat(Qt::PlainText);
    label->setText(label->fontMetrics().elidedText(m_label, Qt::ElideRight, LongestLabelPixels));
    m_dialog->setLabel(label);
    m_dialog->setRange(0, ProgressSteps);
    m_dialog->setCancelButton(nullptr); // its Escape too: of two, neither would do anything
    if (m_kind == ProgressKind::Stoppable) {
        auto* cancel = new QPushButton(QStringLiteral("Annulla"));
        cancel->setObjectName(QStringLiteral("id2"));
        cancel->setAutoDefault(false);
        m_dialog->setCancelButton(cancel);
        QObject::connect(m_dialog, &QProgressDialog::canceled, cancel, [this, cancel] {
            m_isCancelled = true;
            cancel->setEnabled(false);
        });
    }
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->setMinimumDuration(0);
    m_dialog->setAutoClose(false);
    m_dialog->setAutoReset(false);
    m_dialog->show();
}

bool Progress::advance(double fraction)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return !m_isCancelled;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastEvents < EventsEvery)
        return !m_isCancelled;
    if (!m_dialog) {
        // Gone with its window, or not yet to be shown.
        if (m_pause || now - m_start < std::chrono::milliseconds(ProgressAfterMs))
            return !m_isCancelled;
        show();
    }
    m_dialog->setValue(static_cast<int>(fraction * ProgressSteps));
    QCoreApplication::processEvents();
    m_lastEvents = std::chrono::steady_clock::now();
    return !m_isCancelled;
}

} // namespace kit
