// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the tests of the grid share: a grid over a recording library, with mouse and keys.

#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/GridView.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/cad/DravoEng.h"
#include "host/gis/Feedback.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace gridtest {

inline constexpr const char* Streets
    = "table Strade (Nome text, Tipo list ('Strada', 'Piazza'), Attiva boolean, Corsie integer min "
      "1 "
      "max 8, Larghezza decimal 2 max 50, Rilievo date, Area decimal 1 from area);"
      "rows Strade: ('Via Roma', 'Strada', yes, 2, 3.5, 05/03/2016, 10),"
      "('Corso\tItalia', 'Vicolo', -, 4, 7.25, -, 20), ('Via Po', -, no, -, -, 01/02/2015, 30);"
      "theme Vie: points 2d on Strade active; ents Vie: 0 [10 20], 2 [30 40]";

class CEngine final : public CDravoEng {
public:
    std::vector<std::string> centred;
    void CenterViewAt(std::int64_t drawing, double x, double y, double z) override
    {
        centred.push_back(
            QStringLiteral("%1: %2 %3 %4").arg(drawing).arg(x).arg(y).arg(z).toStdString());
    }
};

class CFeedback final : public gis::IFeedback {
public:
    std::vector<gis::CEnt*> rows;
    std::vector<gis::CEnt*> selected;
    void ShowFound(std::int64_t, const std::vector<gis::CEnt*>&) override { }
    void ShowRow(gis::CEnt* entity) override { rows.push_back(entity); }
    void GetSelected(std::vector<gis::CEnt*>& entities) override { entities = selected; }
};

class ShowTableFixture : public testing::Test {
protected:
    void open()
    {
        m_library.offer(gis::FeedbackExtension, static_cast<gis::IFeedback*>(&m_feedback));
        m_grid = std::make_unique<CCtrlShowTable>(&m_engine, 77, &m_library, m_library.GetTable(0));
        m_grid->Fill();
        m_grid->resize(760, 300);
        m_grid->show();
        m_grid->activateWindow();
        m_grid->setFocus();
        QApplication::processEvents();
        m_library.clearCalls();
    }
    tables::CGridView& view() { return m_grid->view(); }
    QModelIndex cell(int row, int column) { return m_grid->model().index(row, column); }
    std::string text(int row, int column)
    {
        return cell(row, column).data().toString().toStdString();
    }
    void click(int row, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, modifiers,
            view().visualRect(cell(row, column)).center());
    }
    /// Opens a cell's editor with the keyboard.
    template <typename Editor> Editor* edit(int row, int column)
    {
        click(row, column);
        QTest::keyClick(&view(), Qt::Key_Return, Qt::ControlModifier);
        auto* delegate = qobject_cast<tables::CGridDelegate*>(view().itemDelegate());
        return qobject_cast<Editor*>(delegate->openEditor());
    }
    void type(int row, int column, const QString& text)
    {
        auto* editor = edit<QLineEdit>(row, column);
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        ui::typeInto(*editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
    }
    std::string label(const char* name)
    {
        return m_grid->findChild<QLabel*>(QLatin1String(name))->text().toStdString();
    }
    gis::CEnt* entity(int index)
    {
        const support::RecordingPause pause(m_library);
        return m_library.GetEnt(m_library.GetTheme(0), index);
    }

    support::CRecordingLibrary m_library { Streets };
    CEngine m_engine;
    CFeedback m_feedback;
    std::unique_ptr<CCtrlShowTable> m_grid;
};

} // namespace gridtest
