// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/cad/Symbols.h"
#include "host/controls/FolderBrowser.h"

#include "kit/Form.h"
#include "kit/ModalRun.h"
#include "kit/texts/QtText.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int MostSymbols = 1000;

/// On white whatever the desktop's colours: symbols are drawn in black.
QIcon pictureOf(const QImage& image)
{
    QPixmap picture(image.size());
    picture.fill(Qt::white);
    QPainter(&picture).drawImage(0, 0, image);
    return picture;
}

void fillSymbols(QListWidget& list, CDocSymbolManager& symbols, int current)
{
    for (int id = 0; id < MostSymbols; ++id) {
        CSymbol* symbol = symbols.GetSymbol(id);
        if (!symbol)
            continue; // a host's symbols need not be numbered without gaps
        auto* item = new QListWidgetItem(QString::number(id), &list);
        item->setData(Qt::UserRole, id);
        if (const QImage* image = symbol->GetBitmap())
            item->setIcon(pictureOf(*image));
        if (id == current)
            list.setCurrentItem(item);
    }
}

QPushButton* makeButton(QDialog& dialog, const QString& text, int id)
{
    auto* button = new QPushButton(text, &dialog);
    button->setObjectName(kit::controlName(id));
    return button;
}

} // namespace

bool FBrowserDirectory(orv::String& folder)
{
    const QString chosen = QFileDialog::getExistingDirectory(
        QApplication::activeWindow(), QStringLiteral("Scegliere una cartella"), kit::toQt(folder));
    if (chosen.isEmpty())
        return false;
    folder = kit::fromQt(chosen);
    return true;
}

bool FDlgSceltaSymbol(QWidget* parent, CDravoEng*, CDocSymbolManager* symbols, int& id)
{
    if (!symbols)
        return false;
    QDialog dialog(parent);
    dialog.setWindowTitle(QStringLiteral("Scelta simbolo"));
    auto* list = new QListWidget(&dialog);
    list->setViewMode(QListView::IconMode);
    list->setResizeMode(QListView::Adjust);
    list->setMovement(QListView::Static);
    list->setIconSize(QSize(24, 24));
    list->setAccessibleName(QStringLiteral("Simboli"));
    fillSymbols(*list, *symbols, id);
    auto* ok = makeButton(dialog, QStringLiteral("OK"), kit::IdOk);
    auto* cancel = makeButton(dialog, QStringLiteral("Annulla"), kit::IdCancel);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* rows = new QVBoxLayout(&dialog);
    rows->addWidget(list, 1);
    rows->addLayout(buttons);
    kit::prepareDialog(dialog, "FDlgSceltaSymbol", { 200, 120 });
    QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    QObject::connect(list, &QListWidget::itemDoubleClicked, &dialog, &QDialog::accept);
    // What is selected, not what is current: a list that gets the focus makes its first row
    // current.
    if (!kit::runModal(dialog) || list->selectedItems().isEmpty())
        return false;
    id = list->selectedItems().constFirst()->data(Qt::UserRole).toInt();
    return true;
}
