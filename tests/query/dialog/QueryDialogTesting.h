// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the tests of the query dialog share: the dialog over a recording library.

#include "query/dialog/DlgQuery.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/cad/DravoEng.h"
#include "host/gis/Feedback.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

namespace querytest {

inline constexpr const char* Town
    = "table Strade (Nome text, Attiva boolean, Corsie integer, Larghezza decimal 2, Rilievo date, "
      "Tipo list ('A', 'B'), Vuoto text);"
      "rows Strade: ('Via Roma', yes, 10, 1.234, 01/02/2015, 'B', -),"
      "('Via Po', no, 9, 1.2341, 05/03/2016, 'A', -), ('Via Po', -, 9, 7, -, -, -),"
      "(-, yes, 100, -, 31/12/1969, -, -), ('fuori', no, 1, 1, 01/01/2001, 'A', -);"
      "table Alberi (Specie text); rows Alberi: ('Tiglio');"
      "theme Alberi: points 2d on Alberi; theme Strade: points 2d on Strade active;"
      "theme Nuovo: points 2d on Strade;"
      "ents Alberi: 0 [0 0]; ents Strade: 0 [10 20], 1 [30 40], 2 [50 60], 3 [70 80]";

class CEngine final : public CDravoEng {
public:
    int centred = 0;
    void CenterViewAt(std::int64_t drawing, double, double, double) override
    {
        EXPECT_EQ(drawing, 77);
        ++centred;
    }
};

class CFeedback final : public gis::IFeedback {
public:
    std::vector<std::size_t> found;
    std::int64_t drawing = 0;
    void ShowFound(std::int64_t shownIn, const std::vector<gis::CEnt*>& entities) override
    {
        drawing = shownIn;
        found.push_back(entities.size());
    }
    void ShowRow(gis::CEnt*) override { }
    void GetSelected(std::vector<gis::CEnt*>&) override { }
};

class DlgQueryFixture : public testing::Test {
protected:
    void open()
    {
        m_library.offer(gis::FeedbackExtension, static_cast<gis::IFeedback*>(&m_feedback));
        m_dialog = std::make_unique<CDlgQuery>(77, &m_engine, &m_library);
        m_dialog->show();
        m_dialog->activateWindow();
        QApplication::processEvents();
        m_library.clearCalls();
    }
    QListView& fields() { return ui::at<QListView>(*m_dialog, 2068); }
    QListView& values() { return ui::at<QListView>(*m_dialog, 2069); }
    QComboBox& themes() { return ui::at<QComboBox>(*m_dialog, 2067); }
    QLineEdit& filter() { return ui::at<QLineEdit>(ui::pageOf(*m_dialog, "CDlgQueryPage1"), 2071); }
    QTabWidget& sheet() { return *m_dialog->findChild<QTabWidget*>(); }
    QTableView* grid()
    {
        return kit::control<QTableView>(ui::pageOf(*m_dialog, "CDlgQueryPage2"), 1000);
    }
    static QStringList rows(const QAbstractItemView& list)
    {
        QStringList texts;
        for (int i = 0; i < list.model()->rowCount(); ++i)
            texts.append(list.model()->index(i, 0).data().toString());
        return texts;
    }
    static std::string joined(const QStringList& texts)
    {
        return texts.join(QStringLiteral(", ")).toStdString();
    }
    void click(QListView& list, int row)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
            list.visualRect(list.model()->index(row, 0)).center());
    }
    void doubleClick(QListView& list, int row)
    {
        click(list, row);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
            list.visualRect(list.model()->index(row, 0)).center());
    }
    /// "Esegui" with a filter that is right.
    void run(const char* text)
    {
        filter().setText(QString::fromUtf8(text));
        ui::press(*m_dialog, 2081);
    }
    void runWrong(const char* text)
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Errore di sintassi!"), kit::Answer::Ok, [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
        });
        run(text);
    }

    support::CRecordingLibrary m_library { Town };
    CEngine m_engine;
    CFeedback m_feedback;
    std::unique_ptr<CDlgQuery> m_dialog;
};

} // namespace querytest
