// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/ThemePanel.h"

#include "app/Document.h"
#include "embedded/drawing/Legend.h"
#include "embedded/drawing/MapPicture.h"
#include "embedded/model/Library.h"
#include "kit/texts/QtText.h"

#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace app {

namespace {

gis::CTheme* themeOf(const QListWidgetItem* item)
{
    return item ? static_cast<gis::CTheme*>(item->data(Qt::UserRole).value<void*>()) : nullptr;
}

QPixmap sampleOf(const gis::CTheme& theme, int index, double ratio)
{
    QPixmap pixmap(QSize(26, 16) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    embedded::SimpleSymbol symbol;
    symbol.colour = embedded::themeColour(index);
    embedded::drawSymbolSample(painter, QRectF(2, 2, 22, 12), theme.type, symbol);
    return pixmap;
}

/// Points above lines above polygons, as they are drawn.
int drawingRank(gis::EntType type)
{
    return type == gis::EntType::Points ? 0 : type == gis::EntType::Lines ? 1 : 2;
}

} // namespace

ThemePanel::ThemePanel(Document& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_list(new QListWidget(this))
{
    m_list->setObjectName(QStringLiteral("themes"));
    m_list->setAccessibleName(QStringLiteral("Temi"));
    m_list->setIconSize(QSize(26, 16));
    m_list->setTextElideMode(Qt::ElideRight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    connect(m_list, &QListWidget::itemChanged, this, &ThemePanel::onItemChanged);
    connect(m_list, &QListWidget::currentRowChanged, this, &ThemePanel::currentChanged);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        gis::CTheme* theme = themeOf(item);
        m_document.act(
            QStringLiteral("Tema attivo"), [&] { m_document.library().SetThemeActive(theme); });
    });
    connect(&m_document, &Document::changed, this, &ThemePanel::refresh);
    refresh();
}

gis::CTheme* ThemePanel::currentTheme() const
{
    return themeOf(m_list->currentItem());
}

void ThemePanel::refresh()
{
    const QSignalBlocker blocker(m_list);
    gis::CTheme* const current = currentTheme();
    m_list->clear();
    gis::CLibGis& library = m_document.library();
    const auto& themes = embedded::Library::of(&library)->themes();
    for (int rank = 0; rank < 3; ++rank)
        for (int i = static_cast<int>(themes.size()) - 1; i >= 0; --i) {
            gis::CTheme* theme = themes[static_cast<std::size_t>(i)];
            if (drawingRank(theme->type) != rank)
                continue;
            auto* item = new QListWidgetItem(m_list);
            item->setText(
                kit::toQt(theme->name) + QStringLiteral("  (%L1)").arg(library.GetNoEnts(theme)));
            item->setData(Qt::UserRole, QVariant::fromValue(static_cast<void*>(theme)));
            item->setIcon(sampleOf(*theme, i, devicePixelRatioF()));
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(library.GetThemeVisible(theme) ? Qt::Checked : Qt::Unchecked);
            QFont font = m_list->font();
            font.setBold(library.IsThemeActive(theme));
            item->setFont(font);
            item->setToolTip(QStringLiteral("<span>Tabella: ")
                + kit::toQt(library.GetTableName(theme->table)).toHtmlEscaped()
                + (library.IsThemeActive(theme) ? QStringLiteral(" — tema attivo") : QString())
                + QStringLiteral("</span>"));
            if (theme == current)
                m_list->setCurrentItem(item);
        }
}

void ThemePanel::onItemChanged(QListWidgetItem* item)
{
    gis::CTheme* theme = themeOf(item);
    const bool visible = item->checkState() == Qt::Checked;
    if (!theme || visible == m_document.library().GetThemeVisible(theme))
        return;
    // Queued: the panel is filled anew by the change, and the item that sent this must be done with
    // first.
    QMetaObject::invokeMethod(
        this,
        [this, theme, visible] {
            m_document.act(
                visible ? QStringLiteral("Mostra tema") : QStringLiteral("Nascondi tema"),
                [&] { m_document.library().SetThemeVisible(theme, visible); });
        },
        Qt::QueuedConnection);
}

} // namespace app
