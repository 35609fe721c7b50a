// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStringList>

namespace {

bool isOfOneColour(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != image.pixel(0, 0))
                return false;
    return true;
}

/// The program that takes the manual's pictures goes through every dialog of the sample library.
TEST(TourTest, EveryPictureOfTheSampleLibraryIsTaken)
{
    QDir folder(QStringLiteral(TEMATICA_TOUR_FOLDER));
    folder.removeRecursively();
    ASSERT_TRUE(folder.mkpath(QStringLiteral("pictures")));
    // A copy: the tour's own settings and locks must not lie beside the sample.
    const QString library = folder.filePath(QStringLiteral("borgofiore.gpkg"));
    ASSERT_TRUE(
        QFile::copy(QStringLiteral(TEMATICA_SOURCE_DIR "/samples/borgofiore.gpkg"), library));
    ASSERT_TRUE(QFile::setPermissions(library, QFile::ReadOwner | QFile::WriteOwner));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(
        QStringLiteral("TEMATICA_INI"), folder.filePath(QStringLiteral("settings.ini")));
    environment.insert(
        QStringLiteral("TEMATICA_RECOVERY"), folder.filePath(QStringLiteral("recovery")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());

    QProcess tour;
    tour.setProcessEnvironment(environment);
    tour.start(
        QStringLiteral(TEMATICA_TOUR), { library, folder.filePath(QStringLiteral("pictures")) });
    ASSERT_TRUE(tour.waitForFinished(240'000)) << tour.errorString().toStdString();
    const QString said = QString::fromUtf8(tour.readAllStandardError());
    EXPECT_EQ(tour.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(tour.exitCode(), 0) << said.toStdString();
    EXPECT_FALSE(said.contains(QStringLiteral("tematica-tour:"))) << said.toStdString();

    const QStringList pictures = QString::fromUtf8(tour.readAllStandardOutput())
                                     .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QStringList names;
    for (const QString& picture : pictures) {
        names << QFileInfo(picture).completeBaseName();
        const QImage image(picture);
        ASSERT_FALSE(image.isNull()) << picture.toStdString();
        EXPECT_FALSE(isOfOneColour(image)) << picture.toStdString();
    }
    for (const char* name : { "map", "map-found", "CDlgShowTable", "CDlgTableList",
             "CDlgInputNameTable", "CDlgTableEdit-Testo", "CDlgTableEdit-Si-No",
             "CDlgTableEdit-Numerico", "CDlgTableEdit-Decimale", "CDlgTableEdit-Lista",
             "CDlgTableEdit-Data", "CDlgCompileTable", "CDlgQuery", "CDlgQuery-result" })
        EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
    EXPECT_EQ(names.removeDuplicates(), 0) << "no picture is written over another";
    EXPECT_NE(QImage(folder.filePath(QStringLiteral("pictures/map.png"))),
        QImage(folder.filePath(QStringLiteral("pictures/map-found.png"))))
        << "what the query found is marked";
}

} // namespace
