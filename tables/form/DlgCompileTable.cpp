// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/form/DlgCompileTable.h"

#include "kit/Form.h"
#include "kit/ModalRun.h"
#include "kit/texts/QtText.h"

#include "host/base/IniFile.h"
#include "host/controls/GisTableCtrl.h"

#include "ui_CDlgCompileTable.h"

#include <QTextDocument>

#include <algorithm>

namespace {

constexpr const char* Section = "DatiDlgGIS";
constexpr const char* WidthKey = "DlgCompileTableWidth";
constexpr const char* HeightKey = "DlgCompileTableHeight";
constexpr int UsualWidthPixels = 519;
constexpr int UsualHeightPixels = 488;
constexpr QSize LeastSizePixels(220, 100);
constexpr long MostPixels = 16384; // beyond any screen: a spoiled file must not ask for gigabytes
constexpr int ControlId = 1000;
constexpr int MostTipLetters = 500;

} // namespace

CDlgCompileTable::CDlgCompileTable(
    gis::CLibGis* library, gis::CTheme* theme, orv::CResultRow* row, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgCompileTable>())
{
    m_ui->setupUi(this);
    kit::prepareDialog(*this, "CDlgCompileTable", { 250, 195 });
    layout()->setSizeConstraint(
        QLayout::SetNoConstraint); // the least size is the dialog's own rule
    gis::CDBTable* table = library->GetTable(theme);
    layout()->activate();
    m_control = GisTableCtrl_Create(
        library, table, row, m_ui->id2031->geometry().adjusted(0, 0, 0, -1), this, ControlId, true);
    m_ui->id2086->setText(kit::toQt(library->GetThemeName(theme)));
    m_ui->id2087->setText(kit::toQt(library->GetTableName(table)));
    // Names to be read, not to be changed: as dark as all others.
    for (QLineEdit* name : { m_ui->id2086, m_ui->id2087 }) {
        QPalette palette = name->palette();
        palette.setColor(QPalette::Disabled, QPalette::Text,
            palette.color(QPalette::Active, QPalette::WindowText));
        name->setPalette(palette);
        name->setCursorPosition(0); // a long name from its beginning, whole in the tip
        name->setToolTip(Qt::convertFromPlainText(name->text().left(MostTipLetters)));
    }
    if (m_control) {
        kit::placeOver(m_ui->id2031, m_control);
        m_control->setFocus();
    }
    m_ui->id1->setEnabled(
        m_control != nullptr); // without attributes there is nothing to be written
    connect(m_ui->id1, &QPushButton::clicked, this, &CDlgCompileTable::accept);
    connect(m_ui->id2, &QPushButton::clicked, this, &QDialog::reject);
    takeSavedSize();
}

// At whatever way the window ends.
CDlgCompileTable::~CDlgCompileTable()
{
    saveSize();
    if (m_control)
        GisTableCtrl_Destroy(m_control);
}

void CDlgCompileTable::takeSavedSize()
{
    const CIniFile settings;
    setMinimumSize(LeastSizePixels);
    const auto saved = [&settings](const char* key, int usual) {
        return static_cast<int>(std::clamp(settings.GetLong(Section, key, usual), 1L, MostPixels));
    };
    resize(saved(WidthKey, UsualWidthPixels), saved(HeightKey, UsualHeightPixels));
}

void CDlgCompileTable::saveSize() const
{
    CIniFile settings;
    settings.WriteLong(Section, WidthKey, width());
    settings.WriteLong(Section, HeightKey, height());
}

void CDlgCompileTable::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_isPlaced)
        return;
    m_isPlaced = true;
    // Without a parent it is placed over the active window, or in the middle of the screen.
    if (parentWidget())
        kit::moveOver(*this, *parentWidget());
}

void CDlgCompileTable::accept()
{
    if (m_control && GisTableCtrl_Commit(m_control, true))
        QDialog::accept();
}
