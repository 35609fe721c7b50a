// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Choosers.h"

#include "kit/WaitCursor.h"

#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

using kit::FileRequest;

namespace {

/// Qt's own dialog, not a desktop's, so that keys reach it.
class ChoosersTest : public testing::Test {
protected:
    ChoosersTest() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    ~ChoosersTest() override { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); }
    /// Runs the chooser and does something with its dialog while it is open.
    template <typename Act>
    std::optional<QString> choose(const FileRequest& request, const Act& act)
    {
        int opened = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            QWidget* const window = QApplication::activeModalWidget();
            auto* dialog = qobject_cast<QFileDialog*>(window);
            if (window && !dialog)
                window->close(); // a message that no test expects
            if (!dialog)
                return;
            if (++opened == 1)
                act(*dialog);
            if (opened > 1 || dialog->isVisible())
                dialog->reject(); // nothing may hang
        });
        timer.start(20);
        const auto chosen = kit::FChooseFile(nullptr, request);
        EXPECT_EQ(opened, 1);
        return chosen;
    }
    static void typeName(QFileDialog& dialog, const QString& name)
    {
        auto* edit = dialog.findChild<QLineEdit*>();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        ui::typeInto(*edit, name);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    FileRequest request(FileRequest::Kind kind) const
    {
        return { kind, QStringLiteral("Scegli"), folder.path(),
            QStringLiteral("GeoPackage (*.gpkg)"), QStringLiteral("gpkg") };
    }
    QString pathOf(const QString& name) const { return QDir(folder.path()).filePath(name); }
    void makeFile(const QString& name) const
    {
        QFile file(pathOf(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(ChoosersTest, AsksWithItsCaptionInItsFolderForItsKindOfFile)
{
    for (const auto kind : { FileRequest::Kind::Open, FileRequest::Kind::Save })
        choose(request(kind), [&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Scegli"));
            EXPECT_EQ(dialog.directory(), QDir(folder.path()));
            EXPECT_EQ(dialog.nameFilters(), QStringList { QStringLiteral("GeoPackage (*.gpkg)") });
            const bool isSave = kind == FileRequest::Kind::Save;
            EXPECT_EQ(
                dialog.acceptMode(), isSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
            dialog.reject();
        });
}

TEST_F(ChoosersTest, ANameToBeSavedGetsItsSuffixWhereItHasNone)
{
    const auto bare = choose(request(FileRequest::Kind::Save),
        [](QFileDialog& dialog) { typeName(dialog, QStringLiteral("Città vecchia")); });
    const auto whole = choose(request(FileRequest::Kind::Save),
        [](QFileDialog& dialog) { typeName(dialog, QStringLiteral("prova.gpkg")); });
    const auto other = choose(request(FileRequest::Kind::Save),
        [](QFileDialog& dialog) { typeName(dialog, QStringLiteral("prova.dat")); });

    EXPECT_EQ(bare, pathOf(QStringLiteral("Città vecchia.gpkg")));
    EXPECT_EQ(whole, pathOf(QStringLiteral("prova.gpkg")));
    EXPECT_EQ(other, pathOf(QStringLiteral("prova.dat"))) << "the user's own is kept";
}

TEST_F(ChoosersTest, WithoutASuffixTheNameStaysAsItWasTyped)
{
    FileRequest plain = request(FileRequest::Kind::Save);
    plain.suffix.clear();

    const auto chosen
        = choose(plain, [](QFileDialog& dialog) { typeName(dialog, QStringLiteral("prova")); });

    EXPECT_EQ(chosen, pathOf(QStringLiteral("prova")));
}

TEST_F(ChoosersTest, AFileThatIsThereIsOpened)
{
    makeFile(QStringLiteral("strade.gpkg"));

    const auto chosen = choose(request(FileRequest::Kind::Open),
        [](QFileDialog& dialog) { typeName(dialog, QStringLiteral("strade.gpkg")); });

    EXPECT_EQ(chosen, pathOf(QStringLiteral("strade.gpkg")));
}

TEST_F(ChoosersTest, CancelAndEscapeChooseNothing)
{
    for (const auto kind : { FileRequest::Kind::Open, FileRequest::Kind::Save }) {
        EXPECT_EQ(
            choose(request(kind), [](QFileDialog& dialog) { dialog.reject(); }), std::nullopt);
        EXPECT_EQ(choose(request(kind),
                      [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }),
            std::nullopt);
    }
}

TEST_F(ChoosersTest, APathToStartFromIsOfferedAsTheName)
{
    FileRequest whole = request(FileRequest::Kind::Save);
    whole.folder = pathOf(QStringLiteral("ieri.gpkg"));

    const auto chosen = choose(whole, [](QFileDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>();
        EXPECT_EQ(edit->text(), QStringLiteral("ieri.gpkg"));
        QTest::keyClick(edit, Qt::Key_Return);
    });

    EXPECT_EQ(chosen, whole.folder);
}

TEST_F(ChoosersTest, TheWaitCursorStepsAsideWhileOneChooses)
{
    const kit::WaitCursor wait;

    choose(request(FileRequest::Kind::Open), [](QFileDialog& dialog) {
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        dialog.reject();
    });

    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(ChoosersTest, AnotherChooserAnswersWhileItsScopeLasts)
{
    const kit::FileChooserScope outer(
        [](const FileRequest& asked) { return asked.caption + QStringLiteral(" 1"); });
    {
        const kit::FileChooserScope inner(
            [](const FileRequest&) -> std::optional<QString> { return std::nullopt; });
        EXPECT_EQ(kit::FChooseFile(nullptr, request(FileRequest::Kind::Open)), std::nullopt);
    }
    EXPECT_EQ(
        kit::FChooseFile(nullptr, request(FileRequest::Kind::Open)), QStringLiteral("Scegli 1"));
}
