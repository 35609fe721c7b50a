// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Takes pictures of the program at work, as a user would see it: the map, then each dialog over the
// same data. Usage: tematica-tour FILE FOLDER

#include "app/MainWindow.h"
#include "embedded/model/Library.h"
#include "tematica/Dialogs.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QLocale>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

constexpr int PatienceMs = 20000;

/// Waits, with events, until a condition holds; false when patience ends.
bool waitFor(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > PatienceMs)
            return false;
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

class Tour final {
public:
    Tour(app::MainWindow& window, const QString& folder)
        : m_window(window)
        , m_folder(folder)
    {
    }
    [[nodiscard]] bool failed() const { return m_failed; }

    void picture(QWidget& widget, const QString& name)
    {
        QApplication::processEvents();
        const QString path = m_folder + QLatin1Char('/') + name + QStringLiteral(".png");
        if (widget.grab().save(path))
            std::printf("%s\n", path.toUtf8().constData());
        else
            fail(path);
    }
    void map(const QString& name)
    {
        if (!waitFor([this] { return !m_window.canvas().isDrawing(); }))
            fail(name);
        picture(m_window, name);
    }
    /// Runs a dialog function and, once its window is there, what is to be done and shown in it;
    /// then closes it.
    void dialog(const std::function<void()>& open, const std::function<void(QWidget&)>& show)
    {
        QTimer timer;
        timer.setInterval(50);
        bool shown = false;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || !modal->isVisible() || shown)
                return;
            shown = true;
            QTest::qWait(300); // its lists and pages settle
            show(*modal);
            modal->close();
        });
        timer.start();
        open();
        if (!shown)
            fail(QStringLiteral("dialog"));
    }
    void fail(const QString& what)
    {
        std::fprintf(stderr, "tematica-tour: %s did not come\n", what.toUtf8().constData());
        m_failed = true;
    }

private:
    app::MainWindow& m_window;
    QString m_folder;
    bool m_failed = false;
};

void clickRow(QAbstractItemView& view, int row, bool twice)
{
    const QModelIndex index = view.model()->index(row, 0);
    view.scrollTo(index);
    const QPoint place = view.visualRect(index).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    if (twice)
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
}

void showQuery(Tour& tour, app::MainWindow& window)
{
    app::Document& document = window.document();
    tour.dialog([&] { FDlgQuery(0, &document.engine(), &document.library()); },
        [&](QWidget& dialog) {
            auto* fields = dialog.findChild<QAbstractItemView*>(QStringLiteral("id2068"));
            auto* values = dialog.findChild<QAbstractItemView*>(QStringLiteral("id2069"));
            auto* filter = dialog.findChild<QLineEdit*>(QStringLiteral("id2071"));
            auto* run = dialog.findChild<QPushButton*>(QStringLiteral("id2081"));
            if (!fields || !values || !filter || !run)
                return tour.fail(QStringLiteral("CDlgQuery"));
            clickRow(*fields, 2, true);
            if (auto* equal = dialog.findChild<QPushButton*>(QStringLiteral("id2074")))
                QTest::mouseClick(equal, Qt::LeftButton);
            waitFor([values] { return values->model()->rowCount() > 0; });
            if (values->model()->rowCount() > 0)
                clickRow(*values, 0, true);
            QTest::qWait(500);
            tour.picture(dialog, QStringLiteral("CDlgQuery"));
            QTest::mouseClick(run, Qt::LeftButton);
            QTest::qWait(500);
            tour.picture(dialog, QStringLiteral("CDlgQuery-result"));
        });
}

/// The structure of a table, with the page of each of its fields' formats.
void showStructure(Tour& tour, app::Document& document, gis::CDBTable* table)
{
    tour.dialog([&] { FDlgTableEditGIS(&document.library(), table); },
        [&](QWidget& dialog) {
            auto* grid = dialog.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
            if (!grid)
                return tour.fail(QStringLiteral("CDlgTableEdit"));
            QStringList shown;
            for (int row = 0; row + 1 < grid->model()->rowCount(); ++row) {
                const QString format = grid->model()->index(row, 2).data().toString();
                if (shown.contains(format))
                    continue;
                shown << format;
                grid->clearSelection();
                clickRow(*grid, row, false);
                tour.picture(dialog,
                    QStringLiteral("CDlgTableEdit-")
                        + QString(format).replace(QLatin1Char('/'), QLatin1Char('-')));
            }
        });
}

void showTables(Tour& tour, app::Document& document, gis::CTheme* theme)
{
    gis::CLibGis& library = document.library();
    tour.dialog([&] { FDlgTableListGIS(&library); },
        [&](QWidget& dialog) {
            if (auto* list = dialog.findChild<QAbstractItemView*>(QStringLiteral("id2000")))
                clickRow(*list, 0, false);
            tour.picture(dialog, QStringLiteral("CDlgTableList"));
            tour.dialog(
                [&] {
                    if (auto* create
                        = dialog.findChild<QAbstractButton*>(QStringLiteral("id32771")))
                        create->click();
                },
                [&](QWidget& name) {
                    if (auto* edit = name.findChild<QLineEdit*>(QStringLiteral("id2001")))
                        edit->setText(QStringLiteral("Numeri civici"));
                    tour.picture(name, QStringLiteral("CDlgInputNameTable"));
                });
        });
    showStructure(tour, document, library.GetTable(theme));
    tour.dialog(
        [&] { FDlgCompileTableGIS(&library, theme, library.GetRow(library.GetEnt(theme, 0))); },
        [&](QWidget& dialog) { tour.picture(dialog, QStringLiteral("CDlgCompileTable")); });
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    if (argc != 3) {
        std::fputs("tematica-tour: two arguments are needed, a library or shapefile and a folder\n",
            stderr);
        return 2;
    }
    // Nobody is there to answer boxes (findings of the file, a filter that is refused).
    QTimer answers;
    QObject::connect(&answers, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            std::fprintf(stderr, "tematica-tour: %s\n", qPrintable(box->text()));
            box->reject();
        }
    });
    answers.start(200);
    app::MainWindow window;
    Tour tour(window, QString::fromLocal8Bit(argv[2]));
    window.resize(1280, 800);
    window.show();
    if (!window.openFile(QString::fromLocal8Bit(argv[1])))
        return 1;
    tour.map(QStringLiteral("map"));
    app::Document& document = window.document();
    gis::CTheme* theme = document.library().GetThemeActive();
    if (!theme)
        theme = document.library().GetTheme(0);
    tour.dialog([&] { FDlgShowTableGIS(&document.library(), document.library().GetTable(theme)); },
        [&](QWidget& dialog) { tour.picture(dialog, QStringLiteral("CDlgShowTable")); });
    showTables(tour, document, theme);
    showQuery(tour, window);
    tour.map(QStringLiteral("map-found"));
    window.recovery().forget();
    return tour.failed() ? 1 : 0;
}
