// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Words.h"

namespace app {

namespace {

using embedded::ErrorCode;
using embedded::FindingCode;

QString utf8(const std::string& text)
{
    return QString::fromStdString(text);
}

/// %1 the subject, %2 the detail.
QString sentenceOf(ErrorCode code)
{
    switch (code) {
    case ErrorCode::FileNotFound:
        return QStringLiteral("Il file \"%1\" non esiste. Controllare il percorso.");
    case ErrorCode::NotAFile:
        return QStringLiteral("\"%1\" è una cartella: scegliere un file.");
    case ErrorCode::NoPermission:
        return QStringLiteral("Non si hanno i permessi per leggere \"%1\".");
    case ErrorCode::ReadFailed:
        return QStringLiteral("Il file \"%1\" non può essere letto: %2.");
    case ErrorCode::EmptyFile:
        return QStringLiteral("Il file \"%1\" è vuoto.");
    case ErrorCode::NotALibrary:
        return QStringLiteral("\"%1\" non è una libreria GIS né un GeoPackage (%2).");
    case ErrorCode::NewerFormat:
        return QStringLiteral("\"%1\" è stato scritto da una versione più recente di Tematica "
                              "(formato %2): aggiornare il programma.");
    case ErrorCode::DamagedFile:
        return QStringLiteral("Il file \"%1\" è danneggiato: %2.");
    case ErrorCode::LockedForWriting:
        return QStringLiteral(
            "\"%1\" è aperto in scrittura da un altro programma: chiuderlo e riprovare.");
    case ErrorCode::BusyReaders:
        return QStringLiteral("Altri programmi stanno leggendo \"%1\": riprovare tra poco.");
    case ErrorCode::ReadOnly:
        return QStringLiteral("\"%1\" è di sola lettura: usare \"Salva con nome\".");
    case ErrorCode::WriteFailed:
        return QStringLiteral("Impossibile scrivere \"%1\": %2.");
    case ErrorCode::OtherProgramsFile:
        return QStringLiteral("Il file \"%1\" è di un altro programma e non viene modificato: "
                              "salvare con un altro nome.");
    case ErrorCode::DiskFull:
        return QStringLiteral("Non c'è più spazio sul disco per scrivere \"%1\".");
    case ErrorCode::FolderNotFound:
        return QStringLiteral("La cartella \"%1\" non esiste.");
    case ErrorCode::FolderNotAbsolute:
        return QStringLiteral(
            "\"%1\" non è un percorso completo: indicare la cartella per intero.");
    case ErrorCode::NoShapeHeader:
        return QStringLiteral("\"%1\" non è uno shapefile: manca l'intestazione.");
    case ErrorCode::UnknownShapeType:
        return QStringLiteral("\"%1\" contiene un tipo di entità non gestito (%2).");
    case ErrorCode::NoDbf:
        return QStringLiteral("Manca il file .dbf che accompagna \"%1\".");
    case ErrorCode::BadDbf:
        return QStringLiteral("Il file .dbf \"%1\" non è leggibile: %2.");
    case ErrorCode::UnknownEncoding:
        return QStringLiteral("La codifica dei caratteri \"%1\" non è conosciuta.");
    case ErrorCode::StrictFinding:
        return QStringLiteral("\"%1\" non è stato importato: %2.");
    case ErrorCode::NameClash:
        return QStringLiteral("Nella libreria esiste già una tabella o un tema \"%1\": rinominarlo "
                              "prima di importare.");
    case ErrorCode::UnknownTheme:
        return QStringLiteral("Non c'è alcun tema \"%1\".");
    case ErrorCode::UnknownField:
        return QStringLiteral("Non c'è alcun campo \"%1\".");
    case ErrorCode::SeveralThemes:
        return QStringLiteral("\"%1\" contiene più temi: indicarne uno.");
    case ErrorCode::NoThemes:
        return QStringLiteral("\"%1\" non contiene temi.");
    case ErrorCode::Cancelled:
        return QStringLiteral("Operazione annullata: nulla è stato modificato.");
    case ErrorCode::Internal:
        return QStringLiteral("Errore interno: %2.");
    }
    return QStringLiteral("Errore interno: %2.");
}

/// %1 the subject, %2 the detail, %3 the count, %4 the record.
QString lineOf(FindingCode code)
{
    switch (code) {
    case FindingCode::EncodingChosen:
        return QStringLiteral("Testi letti come %1 (%2).");
    case FindingCode::EncodingUnknown:
        return QStringLiteral(
            "La codifica \"%1\" del file .cpg non è conosciuta: ne è stata scelta un'altra.");
    case FindingCode::ShxMissing:
        return QStringLiteral("Manca il file .shx: le entità sono state lette dal file .shp.");
    case FindingCode::ShxDisagrees:
        return QStringLiteral(
            "Il file .shx non corrisponde al file .shp: le entità sono state lette dal file .shp.");
    case FindingCode::RowsMissing:
        return QStringLiteral("%3 entità senza riga nella tabella: restano senza valori.");
    case FindingCode::ShapesMissing:
        return QStringLiteral("%3 righe senza entità: non sono state importate.");
    case FindingCode::RecordsDeleted:
        return QStringLiteral("%3 righe marcate come cancellate: non sono state importate.");
    case FindingCode::ShapeUnreadable:
        return QStringLiteral(
            "La forma dell'entità %4 non è leggibile: la sua riga resta senza forma.");
    case FindingCode::RecordLengthWrong:
        return QStringLiteral(
            "La lunghezza dell'entità %4 nel file .shp è errata: letta secondo i suoi conteggi.");
    case FindingCode::ShpSizeDisagrees:
        return QStringLiteral("La lunghezza del file .shp non corrisponde al contenuto.");
    case FindingCode::RowCountDisagrees:
        return QStringLiteral("Il file .dbf contiene %3 righe, l'intestazione ne dichiara %2.");
    case FindingCode::ShapeTypeOther:
        return QStringLiteral("L'entità %4 è di tipo diverso da quello del file.");
    case FindingCode::TextInvalid:
        return QStringLiteral("%3 testi del campo \"%1\" non sono validi nella codifica scelta.");
    case FindingCode::NumberUnreadable:
        return QStringLiteral("%3 celle del campo \"%1\" non sono numeri: restano vuote.");
    case FindingCode::DateUnreadable:
        return QStringLiteral("%3 celle del campo \"%1\" non sono date: restano vuote.");
    case FindingCode::LogicalUnreadable:
        return QStringLiteral("%3 celle del campo \"%1\" non sono Sì o No: restano vuote.");
    case FindingCode::TimeDropped:
        return QStringLiteral("L'ora di %3 date del campo \"%1\" è stata tolta.");
    case FindingCode::FieldRenamed:
        return QStringLiteral("Il campo \"%2\" si chiama ora \"%1\".");
    case FindingCode::FieldTypeTaken:
        return QStringLiteral("Il formato del campo \"%1\" è stato dedotto dai suoi valori.");
    case FindingCode::MemoMissing:
        return QStringLiteral("Manca il file delle note del campo \"%1\".");
    case FindingCode::ReferenceSystemUnknown:
        return QStringLiteral("Il sistema di riferimento del file .prj non è conosciuto.");
    case FindingCode::TableRenamed:
        return QStringLiteral("La tabella si chiama ora \"%1\".");
    case FindingCode::ThemeRenamed:
        return QStringLiteral("Il tema si chiama ora \"%1\".");
    case FindingCode::CellsEmptied:
        return QStringLiteral("%3 valori non convertibili in %1");
    case FindingCode::MeasureDropped:
        return QStringLiteral("%3 misure M non sono state conservate.");
    case FindingCode::FieldNameCut:
        return QStringLiteral("Il campo \"%1\" nel file si chiama \"%2\".");
    case FindingCode::TextCut:
        return QStringLiteral("%3 testi del campo \"%1\" sono stati troncati.");
    case FindingCode::NumberCut:
        return QStringLiteral("%3 numeri del campo \"%1\" non entrano nella colonna.");
    case FindingCode::NumberRounded:
        return QStringLiteral(
            "%3 numeri del campo \"%1\" sono arrotondati alle cifre della colonna.");
    case FindingCode::DateCut:
        return QStringLiteral("%3 date del campo \"%1\" non sono rappresentabili.");
    case FindingCode::FormatChanged:
        return QStringLiteral("Il campo \"%1\" ha nel file un altro formato.");
    case FindingCode::ReferenceSystemMissing:
        return QStringLiteral("Il tema non ha un sistema di riferimento: manca il file .prj.");
    case FindingCode::CoordinateDropped:
        return QStringLiteral("La coordinata %2 non è stata scritta.");
    case FindingCode::CoordinateAdded:
        return QStringLiteral("È stata aggiunta la coordinata %2.");
    case FindingCode::CellsConverted:
        return QStringLiteral("%3 valori convertiti in %1");
    case FindingCode::CellsUnchanged:
        return QStringLiteral("%3 valori invariati in %1");
    case FindingCode::ColumnTakenOver:
        return QStringLiteral(
            "Il campo \"%1\", aggiunto da un altro programma alla tabella %2, è stato acquisito.");
    case FindingCode::ColumnGone:
        return QStringLiteral(
            "Il campo \"%1\" della tabella %2 è stato tolto da un altro programma.");
    case FindingCode::RowsTakenOver:
        return QStringLiteral(
            "La tabella \"%1\" è stata modificata da un altro programma (%3 righe).");
    case FindingCode::GeometryUnsupported:
        return QStringLiteral(
            "%3 forme di \"%1\" non sono gestite: le entità restano senza forma.");
    case FindingCode::FieldLeftOut:
        return QStringLiteral("Il campo \"%1\" non è stato letto (%2).");
    case FindingCode::LayerSkipped:
        return QStringLiteral("Lo strato \"%1\" non è stato letto (%2).");
    }
    return QStringLiteral("%1 %2");
}

/// All four at once, so that a name that looks like a placeholder stays as it is.
QString filled(const QString& text, const QString& subject, const QString& detail,
    const QString& count = {}, const QString& record = {})
{
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        const int which
            = text[i] == QLatin1Char('%') && i + 1 < text.size() ? text[i + 1].digitValue() : -1;
        if (which < 1 || which > 4) {
            out += text[i];
            continue;
        }
        out += which == 1 ? subject : which == 2 ? detail : which == 3 ? count : record;
        ++i;
    }
    return out;
}

} // namespace

QString errorText(const embedded::Error& error)
{
    return filled(sentenceOf(error.code), utf8(error.subject), utf8(error.detail));
}

QString findingText(const embedded::Finding& finding)
{
    return filled(lineOf(finding.code), utf8(finding.subject), utf8(finding.detail),
        QString::number(finding.count), QString::number(finding.record));
}

} // namespace app
