// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Words.h"

#include <QStringList>

#include <new>
#include <string_view>
#include <utility>

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
        return QStringLiteral(
            "\"%1\" è una cartella o un dispositivo, non un file: scegliere un file.");
    case ErrorCode::NoPermission:
        return QStringLiteral("Non si hanno i permessi per leggere \"%1\".");
    case ErrorCode::ReadFailed:
        return QStringLiteral("\"%1\" non può essere letto%2.");
    case ErrorCode::EmptyFile:
        return QStringLiteral("Il file \"%1\" è vuoto.");
    case ErrorCode::NotALibrary:
        return QStringLiteral("\"%1\" non è una libreria GIS né un GeoPackage%2.");
    case ErrorCode::NewerFormat:
        return QStringLiteral("\"%1\" è stato scritto da una versione più recente di Tematica "
                              "(formato %2): aggiornare il programma.");
    case ErrorCode::DamagedFile:
        return QStringLiteral("Il file \"%1\" è danneggiato: usarne una copia di riserva.");
    case ErrorCode::LockedForWriting:
        return QStringLiteral(
            "\"%1\" è aperto in scrittura da un altro programma: chiuderlo e riprovare.");
    case ErrorCode::BusyReaders:
        return QStringLiteral("Altri programmi stanno leggendo \"%1\": riprovare tra poco.");
    case ErrorCode::ReadOnly:
        return QStringLiteral("\"%1\" è di sola lettura: usare \"Salva con nome\".");
    case ErrorCode::WriteFailed:
        return QStringLiteral("Impossibile scrivere \"%1\"%2.");
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
        return QStringLiteral(
            "Il file .dbf \"%1\" non è leggibile: la sua intestazione è danneggiata "
            "o incompleta.");
    case ErrorCode::UnknownEncoding:
        return QStringLiteral("La codifica dei caratteri \"%1\" non è conosciuta.");
    case ErrorCode::StrictFinding:
        return QStringLiteral("\"%1\" non è stato importato: i suoi file contengono errori.");
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
        break;
    }
    return QStringLiteral("Operazione non riuscita%2: salvare il lavoro e riavviare il programma.");
}

/// %1 the subject, %2 the detail, %3 the count, %4 the record.
QString lineOf(FindingCode code)
{
    switch (code) {
    case FindingCode::EncodingChosen:
        return QStringLiteral("Testi letti come %1%2.");
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
            "La forma dell'entità %4 non è leggibile: la sua riga resta senza forma%5.");
    case FindingCode::RecordLengthWrong:
        return QStringLiteral(
            "La lunghezza dell'entità %4 nel file .shp è errata: letta secondo i suoi conteggi%5.");
    case FindingCode::ShpSizeDisagrees:
        return QStringLiteral("La lunghezza del file .shp non corrisponde al contenuto.");
    case FindingCode::RowCountDisagrees:
        return QStringLiteral("Il file .dbf contiene %3 righe, l'intestazione ne dichiara %2.");
    case FindingCode::ShapeTypeOther:
        return QStringLiteral("L'entità %4 è di tipo diverso da quello del file%5.");
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
    case FindingCode::TextReplaced:
        return QStringLiteral("%3 testi del campo \"%1\" contengono byte non validi in UTF-8: "
                              "nel file sono scritti come \"?\".");
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
    case FindingCode::ShapesNotWritten:
        return QStringLiteral(
            "%3 forme hanno coordinate non numeriche: le loro righe sono scritte senza forma.");
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
        return QStringLiteral(
            "Il campo \"%1\" della tabella %2 non è stato letto: contiene dati che "
            "non si possono mostrare.");
    case FindingCode::LayerSkipped:
        return QStringLiteral("Lo strato \"%1\" non è stato letto%2.");
    }
    return QStringLiteral("%1 %2");
}

/// The line where one thing only was found; empty where it does not differ.
QString lineOfOne(FindingCode code)
{
    switch (code) {
    case FindingCode::RowsMissing:
        return QStringLiteral("Un'entità è senza riga nella tabella: resta senza valori.");
    case FindingCode::ShapesMissing:
        return QStringLiteral("Una riga è senza entità: non è stata importata.");
    case FindingCode::RecordsDeleted:
        return QStringLiteral("Una riga è marcata come cancellata: non è stata importata.");
    case FindingCode::RowCountDisagrees:
        return QStringLiteral("Il file .dbf contiene una riga, l'intestazione ne dichiara %2.");
    case FindingCode::TextInvalid:
        return QStringLiteral("Un testo del campo \"%1\" non è valido nella codifica scelta.");
    case FindingCode::NumberUnreadable:
        return QStringLiteral("Una cella del campo \"%1\" non è un numero: resta vuota.");
    case FindingCode::DateUnreadable:
        return QStringLiteral("Una cella del campo \"%1\" non è una data: resta vuota.");
    case FindingCode::LogicalUnreadable:
        return QStringLiteral("Una cella del campo \"%1\" non è Sì o No: resta vuota.");
    case FindingCode::TimeDropped:
        return QStringLiteral("L'ora di una data del campo \"%1\" è stata tolta.");
    case FindingCode::CellsEmptied:
        return QStringLiteral("1 valore non convertibile in %1");
    case FindingCode::MeasureDropped:
        return QStringLiteral("Una misura M non è stata conservata.");
    case FindingCode::TextCut:
        return QStringLiteral("Un testo del campo \"%1\" è stato troncato.");
    case FindingCode::TextReplaced:
        return QStringLiteral("Un testo del campo \"%1\" contiene byte non validi in UTF-8: "
                              "nel file sono scritti come \"?\".");
    case FindingCode::NumberCut:
        return QStringLiteral("Un numero del campo \"%1\" non entra nella colonna.");
    case FindingCode::NumberRounded:
        return QStringLiteral("Un numero del campo \"%1\" è arrotondato alle cifre della colonna.");
    case FindingCode::DateCut:
        return QStringLiteral("Una data del campo \"%1\" non è rappresentabile.");
    case FindingCode::ShapesNotWritten:
        return QStringLiteral(
            "Una forma ha coordinate non numeriche: la sua riga è scritta senza forma.");
    case FindingCode::CellsConverted:
        return QStringLiteral("1 valore convertito in %1");
    case FindingCode::CellsUnchanged:
        return QStringLiteral("1 valore invariato in %1");
    case FindingCode::RowsTakenOver:
        return QStringLiteral(
            "La tabella \"%1\" è stata modificata da un altro programma (una riga).");
    case FindingCode::GeometryUnsupported:
        return QStringLiteral("Una forma di \"%1\" non è gestita: l'entità resta senza forma.");
    default:
        return {};
    }
}

/// The details that are words of ours: what a file seems to be, why a layer was left out, how an
/// encoding was chosen; empty for others.
QString inItalian(const std::string& detail)
{
    static const std::pair<std::string_view, const char16_t*> words[] = {
        { "a shapefile", u"uno shapefile: sceglierne il file .shp" },
        { "a zip archive", u"un archivio zip" },
        { "a PDF document", u"un documento PDF" },
        { "a picture", u"un'immagine" },
        { "a compressed file", u"un file compresso" },
        { "an XML document", u"un documento XML" },
        { "a JSON document", u"un documento JSON" },
        { "a database, no GeoPackage", u"un altro tipo di database" },
        { "registered, but not there", u"è registrato, ma manca" },
        { "no shape column is registered", u"la colonna delle forme non è registrata" },
        { "removed by another program", u"tolto da un altro programma" },
        { "added by another program", u"aggiunto da un altro programma: resta nel file" },
        { "out of memory", u"memoria esaurita" },
        { "another program has changed the file since the last save",
            u"un altro programma ha modificato il file dopo l'ultimo salvataggio" },
        { ".cpg", u"file .cpg" },
        { "language byte", u"intestazione del file .dbf" },
        { "valid UTF-8", u"testi validi" },
        { "default", u"in mancanza di indicazioni" },
        { "asked for", u"a richiesta" },
    };
    for (const auto& [english, italian] : words)
        if (detail == english)
            return QString::fromUtf16(italian);
    return {};
}

/// The detail as it stands in brackets at the end of a sentence; nothing where it is no word of
/// ours.
QString inBrackets(const std::string& detail)
{
    const QString reason = inItalian(detail);
    return reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason);
}

/// A reason after a colon: ours, or the system's in its own words; nothing where there is none.
QString afterColon(const std::string& detail)
{
    const QString reason = inItalian(detail);
    if (detail.empty())
        return {};
    return QStringLiteral(": ") + (reason.isEmpty() ? utf8(detail) : reason);
}

QString detailOf(const embedded::Error& error)
{
    switch (error.code) {
    case ErrorCode::NotALibrary:
    case ErrorCode::Internal:
        return inBrackets(error.detail);
    case ErrorCode::ReadFailed:
    case ErrorCode::WriteFailed:
        return afterColon(error.detail);
    default:
        return utf8(error.detail);
    }
}

QString detailOf(const embedded::Finding& finding)
{
    switch (finding.code) {
    case FindingCode::EncodingChosen:
    case FindingCode::LayerSkipped:
        return inBrackets(finding.detail);
    default:
        return utf8(finding.detail);
    }
}

/// From %1 on, all at once, so that a name that looks like a placeholder stays as it is.
QString filled(const QString& text, const QStringList& parts)
{
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        const int which
            = text[i] == QLatin1Char('%') && i + 1 < text.size() ? text[i + 1].digitValue() : -1;
        if (which < 1 || which > parts.size()) {
            out += text[i];
            continue;
        }
        out += parts[which - 1];
        ++i;
    }
    return out;
}

/// So many more like it, of findings that are told one by one.
QString others(std::int64_t count)
{
    if (count == 1)
        return QStringLiteral(", e così un'altra");
    return count > 0 ? QStringLiteral(", e così altre %1").arg(count) : QString();
}

} // namespace

QString errorText(const embedded::Error& error)
{
    return filled(sentenceOf(error.code), { utf8(error.subject), detailOf(error) });
}

QString saveErrorText(const embedded::Error& error)
{
    if (error.code != ErrorCode::Internal)
        return errorText(error);
    return filled(QStringLiteral("La libreria non è stata salvata%2: chiudere altri programmi e "
                                 "riprovare, o salvarla con un altro nome."),
        { utf8(error.subject), detailOf(error) });
}

QString saveAsErrorText(const embedded::Error& error)
{
    if (error.code != ErrorCode::ReadOnly && error.code != ErrorCode::NoPermission)
        return saveErrorText(error);
    return filled(QStringLiteral("Non si hanno i permessi per scrivere \"%1\": scegliere un'altra "
                                 "cartella o un altro nome."),
        { utf8(error.subject) });
}

QString unhandledText(const std::exception& problem)
{
    if (dynamic_cast<const std::bad_alloc*>(&problem))
        return QStringLiteral("Operazione non riuscita: memoria insufficiente.\n"
                              "Chiudere altri programmi o salvare il lavoro e riavviare.");
    return errorText({ ErrorCode::Internal, {}, problem.what() });
}

QString findingText(const embedded::Finding& finding)
{
    QString line = finding.count == 1 ? lineOfOne(finding.code) : QString();
    if (line.isEmpty())
        line = lineOf(finding.code);
    return filled(line,
        { utf8(finding.subject), detailOf(finding), QString::number(finding.count),
            QString::number(finding.record), others(finding.count) });
}

} // namespace app
