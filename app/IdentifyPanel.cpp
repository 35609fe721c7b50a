// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/IdentifyPanel.h"

#include "app/Document.h"
#include "embedded/model/Library.h"
#include "kit/texts/QtText.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace app {

namespace {

embedded::LinkedPoint* pointOf(gis::CEnt* entity)
{
    gis::CTheme* theme = embedded::EntityStore::themeOf(entity);
    return theme ? theme->geometry().linkedPointOf(embedded::EntityStore::indexOf(entity))
                 : nullptr;
}

orv::String& textOf(embedded::LinkedPoint& point, int index)
{
    switch (index) {
    case 0:
        return point.name;
    case 1:
        return point.description;
    case 2:
        return point.sketch;
    default:
        return point.photos[static_cast<std::size_t>(index - 3)];
    }
}

QString cellText(const gis::CField* field, const orv::CPolyValue& value)
{
    if (value.GetType() != orv::PolyDouble)
        return kit::toQt(value.GetStringValue());
    return kit::toQt(orv::String::ValueOf(
        value.GetDoubleValue(), static_cast<unsigned>(field->decimalDigits())));
}

} // namespace

IdentifyPanel::IdentifyPanel(Document& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_title(new QLabel(this))
    , m_attributes(new QTableWidget(0, 2, this))
    , m_point(new QWidget(this))
{
    m_title->setTextFormat(Qt::PlainText);
    m_title->setWordWrap(true);
    m_attributes->setObjectName(QStringLiteral("attributes"));
    m_attributes->setAccessibleName(QStringLiteral("Attributi dell'entità"));
    m_attributes->setHorizontalHeaderLabels({ QStringLiteral("Campo"), QStringLiteral("Valore") });
    m_attributes->horizontalHeader()->setStretchLastSection(true);
    m_attributes->verticalHeader()->hide();
    m_attributes->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_attributes->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_attributes->setWordWrap(false);
    auto* form = new QFormLayout(m_point);
    form->setContentsMargins(0, 0, 0, 0);
    const QStringList captions { QStringLiteral("Nome punto:"), QStringLiteral("Descrizione:"),
        QStringLiteral("Schizzo:"), QStringLiteral("Foto 1:"), QStringLiteral("Foto 2:"),
        QStringLiteral("Foto 3:"), QStringLiteral("Foto 4:"), QStringLiteral("Foto 5:") };
    for (const QString& caption : captions) {
        auto* edit = new QLineEdit(m_point);
        edit->setAccessibleName(QString(caption).remove(QLatin1Char(':')));
        form->addRow(caption, edit);
        connect(edit, &QLineEdit::editingFinished, this, &IdentifyPanel::commit);
        connect(edit, &QLineEdit::textEdited, this, &IdentifyPanel::pendingChanged);
        edit->setMaxLength(std::numeric_limits<int>::max()); // a long text must come back whole
        m_pointEdits.append(edit);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_attributes, 1);
    layout->addWidget(m_point);
    connect(&m_document, &Document::opened, this, [this] {
        m_entity = nullptr; // gone with its library
        refresh();
    });
    connect(&m_document, &Document::changed, this, &IdentifyPanel::refresh);
    show(nullptr);
}

void IdentifyPanel::show(gis::CEnt* entity)
{
    if (entity != m_entity)
        commit(); // what is being typed belongs to the entity before
    m_entity = entity;
    refresh();
}

void IdentifyPanel::refresh()
{
    // The entity may have been taken back; its theme still tells, as long as the library keeps the
    // theme.
    const auto& themes = embedded::Library::of(&m_document.library())->themes();
    const bool lives = std::any_of(themes.begin(), themes.end(), [this](gis::CTheme* theme) {
        const int count = theme->entities().entityCount();
        for (int i = 0; m_entity && i < count; i += embedded::EntityStore::entitiesPerBlock()) {
            const auto first = reinterpret_cast<std::uintptr_t>(theme->entities().entity(i));
            const auto last = reinterpret_cast<std::uintptr_t>(theme->entities().entity(
                std::min(count, i + embedded::EntityStore::entitiesPerBlock()) - 1));
            const auto sought = reinterpret_cast<std::uintptr_t>(m_entity);
            if (sought >= first && sought <= last)
                return true;
        }
        return false;
    });
    if (!lives)
        m_entity = nullptr;
    fillAttributes();
    fillPoint();
}

void IdentifyPanel::fillAttributes()
{
    m_attributes->setRowCount(0);
    if (!m_entity) {
        m_title->setText(
            QStringLiteral("Con lo strumento \"Identifica\", fare clic su un'entità della mappa."));
        return;
    }
    gis::CLibGis& library = m_document.library();
    gis::CTheme* theme = gis::CLibGis::GetTheme(m_entity);
    m_title->setText(QStringLiteral("Tema: ") + kit::toQt(library.GetThemeName(theme))
        + QStringLiteral(" — entità %L1").arg(embedded::EntityStore::indexOf(m_entity) + 1));
    gis::CDBTable* table = library.GetTable(theme);
    const int count = library.GetNumFields(table);
    m_attributes->setRowCount(count);
    for (int i = 0; i < count; ++i) {
        orv::CPolyValue value;
        library.GetRowValue(library.GetRow(m_entity), i, value);
        gis::CField* field = library.GetField(table, i);
        m_attributes->setItem(i, 0, new QTableWidgetItem(kit::toQt(library.GetFieldName(field))));
        m_attributes->setItem(i, 1, new QTableWidgetItem(cellText(field, value)));
    }
    m_attributes->resizeColumnToContents(0);
}

void IdentifyPanel::fillPoint()
{
    embedded::LinkedPoint* point = m_entity ? pointOf(m_entity) : nullptr;
    m_point->setVisible(point != nullptr);
    if (!point)
        return;
    for (int i = 0; i < m_pointEdits.size(); ++i)
        if (!m_pointEdits[i]->hasFocus() || !m_pointEdits[i]->isModified())
            m_pointEdits[i]->setText(kit::toQt(textOf(*point, i)));
}

bool IdentifyPanel::hasPendingText() const
{
    return m_point->isVisibleTo(this)
        && std::any_of(m_pointEdits.begin(), m_pointEdits.end(),
            [](const QLineEdit* edit) { return edit->isModified(); });
}

void IdentifyPanel::commit()
{
    embedded::LinkedPoint* point = m_entity ? pointOf(m_entity) : nullptr;
    if (!point)
        return;
    embedded::LinkedPoint edited = *point;
    bool differs = false;
    for (int i = 0; i < m_pointEdits.size(); ++i) {
        // Only what was typed: bytes that are no text would come back as others.
        if (!m_pointEdits[i]->isModified())
            continue;
        m_pointEdits[i]->setModified(false);
        const orv::String text = kit::fromQt(m_pointEdits[i]->text());
        differs = differs || text != textOf(edited, i);
        textOf(edited, i) = text;
    }
    Q_EMIT pendingChanged();
    if (differs)
        m_document.act(QStringLiteral("Attributi del punto"),
            [&] { embedded::Library::of(&m_document.library())->setLinkedPoint(point, edited); });
}

} // namespace app
