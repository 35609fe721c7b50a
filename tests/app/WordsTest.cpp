// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Words.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <new>
#include <stdexcept>

namespace {

using embedded::ErrorCode;
using embedded::Finding;
using embedded::FindingCode;
using embedded::FindingSeverity;

constexpr int LastError = static_cast<int>(ErrorCode::Internal);
constexpr int LastFinding = static_cast<int>(FindingCode::LayerSkipped);

/// What the host says of the causes, for its command line: English.
const char* const OwnDetails[] = { "a shapefile", "a zip archive", "a PDF document", "a picture",
    "a compressed file", "an XML document", "a JSON document", "not a database",
    "a database, no GeoPackage", "registered, but not there", "no shape column is registered",
    "removed by another program", "added by another program", "out of memory", "no library",
    "an entity without a row", "rows are missing",
    "another program has changed the file since the last save", "language byte", "valid UTF-8",
    "default", "asked for" };

std::string told(FindingCode code, std::int64_t count, const std::string& detail = "7")
{
    return app::findingText({ code, FindingSeverity::Warning, "SOGGETTO", detail, count, 77 })
        .toStdString();
}

bool hasPlaceholder(const std::string& text)
{
    static const QRegularExpression placeholder(QStringLiteral("%L?[0-9]"));
    return QString::fromStdString(text).contains(placeholder);
}

/// A sentence whose parts are there: nothing empty where a name or a reason should stand.
void expectWhole(const std::string& text)
{
    EXPECT_GT(text.size(), 10u) << text;
    EXPECT_FALSE(hasPlaceholder(text)) << text;
    for (const char* gap : { "()", ": .", ": ,", "( ", " )", " ,", "  " })
        EXPECT_EQ(text.find(gap), std::string::npos) << text;
    EXPECT_FALSE(text.ends_with(" .")) << text;
}

TEST(WordsTest, EveryErrorIsAWholeItalianSentence)
{
    for (int code = 0; code <= LastError; ++code) {
        const auto which = static_cast<ErrorCode>(code);
        expectWhole(app::errorText({ which, "SOGGETTO", "motivo" }).toStdString());
        if (which == ErrorCode::UnknownShapeType || which == ErrorCode::NewerFormat)
            continue; // always with a number
        expectWhole(app::errorText({ which, "SOGGETTO", {} }).toStdString());
        const bool isSystems = which == ErrorCode::ReadFailed || which == ErrorCode::WriteFailed;
        for (const std::string detail : OwnDetails) {
            if (isSystems && detail != "out of memory" && !detail.starts_with("another program"))
                continue; // the system's words but for these
            const std::string text = app::errorText({ which, "SOGGETTO", detail }).toStdString();
            expectWhole(text);
            EXPECT_EQ(text.find(detail), std::string::npos) << text;
        }
    }
}

TEST(WordsTest, AReasonThatHelpsIsTold)
{
    EXPECT_EQ(app::errorText({ ErrorCode::NotALibrary, "a.gpkg", "a database, no GeoPackage" })
                  .toStdString(),
        "\"a.gpkg\" non è una libreria GIS né un GeoPackage (un altro tipo di database).");
    EXPECT_EQ(app::errorText({ ErrorCode::NotALibrary, "a.gpkg", "a shapefile" }).toStdString(),
        "\"a.gpkg\" non è una libreria GIS né un GeoPackage (uno shapefile: sceglierne il file "
        ".shp).");
    EXPECT_EQ(app::errorText({ ErrorCode::Internal, "a.shp", "out of memory" }).toStdString(),
        "Operazione non riuscita (memoria esaurita): salvare il lavoro e riavviare il programma.");
    EXPECT_EQ(app::errorText({ ErrorCode::WriteFailed, "a.gpkg", "out of memory" }).toStdString(),
        "Impossibile scrivere \"a.gpkg\": memoria esaurita.");
    EXPECT_EQ(app::errorText({ ErrorCode::WriteFailed, "a.gpkg",
                                 "another program has changed the file since the last save" })
                  .toStdString(),
        "Impossibile scrivere \"a.gpkg\": un altro programma ha modificato il file dopo l'ultimo "
        "salvataggio.");
    EXPECT_EQ(
        app::errorText({ ErrorCode::WriteFailed, "a.gpkg", "Input/output error" }).toStdString(),
        "Impossibile scrivere \"a.gpkg\": Input/output error.")
        << "the system's reason, in the system's words";
}

TEST(WordsTest, EveryFindingIsAWholeItalianLine)
{
    for (int code = 0; code <= LastFinding; ++code)
        for (const std::int64_t count : { 0, 1, 2, 1000 }) {
            const auto which = static_cast<FindingCode>(code);
            expectWhole(told(which, count));
            for (const char* detail : OwnDetails) {
                const bool isName = which == FindingCode::FieldRenamed
                    || which == FindingCode::FieldNameCut || which == FindingCode::ColumnTakenOver
                    || which == FindingCode::ColumnGone || which == FindingCode::FieldLeftOut
                    || which == FindingCode::RowCountDisagrees
                    || which == FindingCode::CoordinateDropped
                    || which == FindingCode::CoordinateAdded;
                if (isName)
                    continue; // a field, a table, a number: no words
                const std::string text = told(which, count, detail);
                expectWhole(text);
                EXPECT_EQ(text.find(detail), std::string::npos) << text;
            }
        }
}

TEST(WordsTest, OneThingIsNotToldAsSeveral)
{
    int counted = 0;
    for (int code = 0; code <= LastFinding; ++code) {
        const auto which = static_cast<FindingCode>(code);
        std::string two = told(which, 2);
        const std::size_t place = two.find('2');
        if (place == std::string::npos)
            continue; // not counted
        ++counted;
        two[place] = '1';
        EXPECT_NE(told(which, 1), two) << "the plural for one thing";
    }
    EXPECT_GE(counted, 20);
    EXPECT_EQ(told(FindingCode::NumberUnreadable, 1),
        "Una cella del campo \"SOGGETTO\" non è un numero: resta vuota.");
    EXPECT_EQ(told(FindingCode::NumberUnreadable, 2),
        "2 celle del campo \"SOGGETTO\" non sono numeri: restano vuote.");
    EXPECT_EQ(told(FindingCode::CellsEmptied, 1), "1 valore non convertibile in SOGGETTO");
    EXPECT_EQ(told(FindingCode::RowCountDisagrees, 1),
        "Il file .dbf contiene una riga, l'intestazione ne dichiara 7.");
}

TEST(WordsTest, WhatAnExportReplacedIsNotToldAsAnImportsFault)
{
    EXPECT_EQ(told(FindingCode::TextReplaced, 3),
        "3 testi del campo \"SOGGETTO\" contengono byte non validi in UTF-8: nel file sono "
        "scritti come \"?\".");
    EXPECT_EQ(told(FindingCode::TextReplaced, 1),
        "Un testo del campo \"SOGGETTO\" contiene byte non validi in UTF-8: nel file sono "
        "scritti come \"?\".");
}

TEST(WordsTest, FurtherFaultsOfAKindAreCounted)
{
    const std::string first
        = "La forma dell'entità 77 non è leggibile: la sua riga resta senza forma";
    EXPECT_EQ(told(FindingCode::ShapeUnreadable, 0), first + ".");
    EXPECT_EQ(told(FindingCode::ShapeUnreadable, 1), first + ", e così un'altra.");
    EXPECT_EQ(told(FindingCode::ShapeUnreadable, 4), first + ", e così altre 4.");
    for (const FindingCode code : { FindingCode::RecordLengthWrong, FindingCode::ShapeTypeOther })
        EXPECT_NE(told(code, 4).find(", e così altre 4."), std::string::npos) << told(code, 4);
}

TEST(WordsTest, ASkippedLayerIsToldWithItsReason)
{
    EXPECT_EQ(told(FindingCode::LayerSkipped, 0, "registered, but not there"),
        "Lo strato \"SOGGETTO\" non è stato letto (è registrato, ma manca).");
    EXPECT_EQ(told(FindingCode::LayerSkipped, 0, "added by another program"),
        "Lo strato \"SOGGETTO\" non è stato letto (aggiunto da un altro programma: resta nel "
        "file).");
}

TEST(WordsTest, NamesThatLookLikePlaceholdersStay)
{
    EXPECT_EQ(
        app::findingText({ FindingCode::FieldRenamed, FindingSeverity::Note, "100%2", "%1", 0, 0 })
            .toStdString(),
        "Il campo \"%1\" si chiama ora \"100%2\".");
}

/// "Use Save As" is no help to somebody who did just that.
TEST(WordsTest, ANameThatCannotBeSavedUnderAsksForAnotherPlace)
{
    for (const ErrorCode code : { ErrorCode::ReadOnly, ErrorCode::NoPermission }) {
        const QString text = app::saveAsErrorText({ code, "/sola/lettura/a.gpkg", {} });
        EXPECT_TRUE(text.contains(QStringLiteral("/sola/lettura/a.gpkg")));
        EXPECT_TRUE(text.contains(QStringLiteral("scegliere un'altra cartella")))
            << text.toStdString();
        EXPECT_FALSE(text.contains(QStringLiteral("Salva con nome")));
    }
    const embedded::Error full { ErrorCode::DiskFull, "a.gpkg", {} };
    EXPECT_EQ(app::saveAsErrorText(full), app::errorText(full));
}

/// "Save the work" is no help to somebody who could not save it.
TEST(WordsTest, ASaveThatFailedForNoKnownReasonDoesNotAskForASave)
{
    for (const char* detail : { "", "out of memory", "an entity without a row" }) {
        const embedded::Error error { ErrorCode::Internal, "a.gpkg", detail };
        const std::string text = app::saveErrorText(error).toStdString();
        expectWhole(text);
        EXPECT_EQ(text.find("salvare il lavoro"), std::string::npos) << text;
        EXPECT_NE(text.find("con un altro nome."), std::string::npos) << text;
        EXPECT_EQ(app::saveAsErrorText(error).toStdString(), text);
    }
    const embedded::Error full { ErrorCode::DiskFull, "a.gpkg", {} };
    EXPECT_EQ(app::saveErrorText(full), app::errorText(full));
}

TEST(WordsTest, OnlyMemoryThatIsNotThereIsToldAsSuch)
{
    EXPECT_EQ(app::unhandledText(std::bad_alloc()).toStdString(),
        "Operazione non riuscita: memoria insufficiente.\n"
        "Chiudere altri programmi o salvare il lavoro e riavviare.");
    EXPECT_EQ(app::unhandledText(std::out_of_range("vector::at")).toStdString(),
        "Operazione non riuscita: salvare il lavoro e riavviare il programma.");
}

} // namespace
