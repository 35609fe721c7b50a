// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"
#include "app/Words.h"
#include "kit/MessageBox.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

namespace {

/// What no slot handled (memory that is not there, say) must not end the program: the work goes on
/// as it was.
class Application final : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override
    {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& problem) {
            FMessageBox(activeWindow(), app::unhandledText(problem), QStringLiteral("Tematica"),
                kit::BoxIcon::Exclamation, kit::BoxButtons::Ok);
            return true;
        }
    }
};

} // namespace

int main(int argc, char** argv)
{
    Application application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tematica"));
    // The windows are Italian, and so are their numbers (1.234), whatever the system's language.
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    QApplication::setApplicationVersion(QStringLiteral(TEMATICA_VERSION));
    QTranslator translator; // the toolkit's own texts, where the system has them
    if (translator.load(
            QStringLiteral("qtbase_it"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&translator);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Attributi, interrogazioni e mappe dei dati GIS di un disegno"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("file"),
        QStringLiteral("Libreria (.gpkg) o shapefile (.shp) da aprire"), QStringLiteral("[file]"));
    parser.process(application);

    app::MainWindow window;
    window.show();
    QTimer::singleShot(0, &window, [&] {
        window.offerRecovery();
        for (const QString& path : parser.positionalArguments())
            window.openFile(path);
    });
    return Application::exec();
}
