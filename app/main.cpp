// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
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
    return QApplication::exec();
}
