// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/texts/TextIds.h"
#include "kit/texts/TextLoader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <utility>

namespace {

std::string fileText()
{
    std::ifstream file(TEMATICA_SOURCE_DIR "/res/texts/it.json", std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

TEST(TextLoaderTest, EveryNumberHasItsTextButOne)
{
    for (int id = texts::First; id <= texts::Last; ++id)
        EXPECT_EQ(kit::textBytes(id).Length() == 0, id == 14187) << id;
    EXPECT_EQ(kit::TextResource::own().size(), 88u);
    EXPECT_EQ(kit::textBytes(texts::First - 1).Length(), 0);
    EXPECT_EQ(kit::textBytes(texts::Last + 1).Length(), 0);
}

/// What hosts' users and their manuals know, slips of the pen included: none may be mended here.
const std::pair<int, const char*> AllTexts[] = {
    { 14100, "Nome" },
    { 14101, "Tipo" },
    { 14102, "Formato" },
    { 14103, "Nuovo" },
    { 14104, "Elimina" },
    { 14105, "Rinomina" },
    { 14106, "Proprietà" },
    { 14107, "Visualizza" },
    { 14108, "Il nome della tabella non è stato inserito " },
    { 14109, "Attenzione!" },
    { 14110, "Esiste già una tabella con questo nome!\r\nInserire un nome diverso!" },
    { 14111, "Esiste già un campo con questo nome!\r\nInserire un nome diverso!" },
    { 14112, "Nessuno" },
    { 14113, "Sì" },
    { 14114, "No" },
    { 14115, "Nessuna" },
    { 14116, "Data Odierna" },
    { 14117, "Da Utente" },
    { 14118, "Testo" },
    { 14119, "Numerico" },
    { 14120, "Decimale" },
    { 14121, "Lista" },
    { 14122, "Si/No" },
    { 14123, "Data" },
    { 14124, "Da Utente" },
    { 14125, "Nome Punto" },
    { 14126, "Descr Punto" },
    { 14127, "Area" },
    { 14128, "Perimetro 2D" },
    { 14129, "Perimetro 3D" },
    { 14130, "Baricentro X" },
    { 14131, "Baricentro Y" },
    { 14132, "Baricentro Z" },
    { 14133, "Schizzo" },
    { 14134, "Foto 1" },
    { 14135, "Foto 2" },
    { 14136, "Foto 3" },
    { 14137, "Foto 4" },
    { 14138, "Foto 5" },
    { 14139, "Alcuni campi non hanno il nome!" },
    { 14140,
        "Il Valore Massimo e il Valore Minimo inseriti sono incongruenti e non verranno salvati!" },
    { 14141, "Il Valore di Default non rispetta i vincoli inseriti e non verrà salvato!" },
    { 14142, "Il Valore di Default inserito non è valido e non sarà salvato!" },
    { 14143, "Il Valore Minimo inserito non è valido e non sarà salvato!" },
    { 14144, "Il Valore Massimo inserito non è valido e non sarà salvato!" },
    { 14145,
        "Il valore di Cifre Decimali inserito è troppo grande è sarà impostato al valore massimo "
        "consentito!" },
    { 14146, "Il nome del tema non è stato inserito " },
    { 14147, "Esiste già un tema con questo nome!\r\nInserire un nome diverso!" },
    { 14148, "Non è stata selezionata la tabella da associare al tema" },
    { 14149,
        "La tabella selezionata è attualemente associata ad almeno un Tema e non può essere "
        "cancellata" },
    { 14150, "Il campo \"%s\" è obbligatorio!" },
    { 14151, "Tipo di Entità :\t\tPunti" },
    { 14152, "Tipo di Entità :\t\tLinee" },
    { 14153, "Tipo di Entità :\t\tPoligoni" },
    { 14154, "Tabella associata :\t%s" },
    { 14155, "Proprietà tema" },
    { 14156,
        "Il Tema selezionato è attualmente attivo o associato a delle Entità GIS e non può essere "
        "cancellato" },
    { 14157, "Nessuno" },
    { 14158, "Sei sicuro di voler cancellare la tabella selezionata?" },
    { 14159, "Sei sicuro di voler cancellare il tema selezionato?" },
    { 14160,
        "Impossibile scrivere il file \"%s\"!\nControllare che il percorso sia valido e non "
        "protetto da scrittura." },
    { 14161,
        "Impossibile scrivere il file \"%s\"!\nControllare che il percorso sia valido e non "
        "protetto da scrittura." },
    { 14162, "Nessuno stile selezionato" },
    { 14163, "Tipo linea" },
    { 14164, "Aspetto" },
    { 14165, "Il File Shape %s.shp esistente già!\r\nSovrascriverlo?" },
    { 14166, "Impssibile leggere il file!\r\nIl tipo di entità contenute non sono valide" },
    { 14167, "La tabella e' stata rinominata \"%s\"" },
    { 14168, "ll valore inseito non rispetta i vincoli inseriti" },
    { 14169, "Impossibile leggere i dati\r\nFile %s non trovato" },
    { 14170, "Da Tema" },
    { 14171, "2D" },
    { 14172, "3D" },
    { 14173, "Tipo di Coordinate :\t2D" },
    { 14174, "Tipo di Coordinate :\tM" },
    { 14175, "Tipo di Coordinate :\t3D" },
    { 14176, "Nessuna" },
    { 14177, "Singolo Valore" },
    { 14178, "Intervallo" },
    { 14179, "Colore" },
    { 14180, "Valore" },
    { 14181, "Etichetta" },
    { 14182, "Tutti" },
    { 14183, "Vuoto" },
    { 14184, "Default" },
    { 14185, "Errore di sintassi!" },
    { 14186, "Importa Entità" },
    { 14187, "" },
    { 14188,
        "Impossibile creare la mappa tematica!\nNessun campo numerico presente nella tabella" },
};

TEST(TextLoaderTest, EachTextIsKeptByteForByte)
{
    ASSERT_EQ(std::size(AllTexts), static_cast<std::size_t>(texts::Last - texts::First + 1));
    int id = texts::First;
    for (const auto& [number, bytes] : AllTexts) {
        EXPECT_EQ(number, id++);
        EXPECT_EQ(kit::textBytes(number).Bytes(), bytes) << number;
    }
}

TEST(TextLoaderTest, NamesInTheCodeStandForTheirTexts)
{
    struct Case {
        int id;
        const char* bytes;
    };
    const Case cases[] = {
        { texts::TableNameMissing, "Il nome della tabella non \xC3\xA8 stato inserito " },
        { texts::TableNameUsed,
            "Esiste gi\xC3\xA0 una tabella con questo nome!\r\nInserire un nome diverso!" },
        { texts::BooleanDefaultYes, "S\xC3\xAC" },
        { texts::FormatBoolean, "Si/No" },
        { texts::DigitsTooMany,
            "Il valore di Cifre Decimali inserito \xC3\xA8 troppo grande \xC3\xA8 sar\xC3\xA0 "
            "impostato al valore massimo consentito!" },
        { texts::TableInUse,
            "La tabella selezionata \xC3\xA8 attualemente associata ad almeno un Tema e non "
            "pu\xC3\xB2 essere cancellata" },
        { texts::FieldRequired, "Il campo \"%s\" \xC3\xA8 obbligatorio!" },
        { texts::EntTypePolygons, "Tipo di Entit\xC3\xA0 :\t\tPoligoni" },
        { texts::EntCoordsM, "Tipo di Coordinate :\tM" },
        { texts::ShpNotWritten,
            "Impossibile scrivere il file \"%s\"!\nControllare che il percorso sia valido e non "
            "protetto da scrittura." },
        { texts::ShapefileUnreadable,
            "Impssibile leggere il file!\r\nIl tipo di entit\xC3\xA0 contenute non sono valide" },
        { texts::ValueOutsideRange, "ll valore inseito non rispetta i vincoli inseriti" },
        { texts::NoNumericField,
            "Impossibile creare la mappa tematica!\nNessun campo numerico presente nella "
            "tabella" },
    };

    for (const auto& [id, bytes] : cases)
        EXPECT_EQ(kit::textBytes(id).Bytes(), bytes) << id;
}

TEST(TextLoaderTest, TheTableHasNoCombiningMarks)
{
    // A decomposed "Sì" would look the same and compare differently.
    const std::string text = fileText();

    ASSERT_FALSE(text.empty());
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        EXPECT_FALSE(text[i] == '\xCC' || (text[i] == '\xCD' && text[i + 1] < '\xB0'))
            << "combining mark at byte " << i;
}

TEST(TextLoaderTest, OnlyTheFirstPlaceholderIsReplaced)
{
    EXPECT_EQ(kit::withArgument("a %s b %s", "x").Bytes(), "a x b %s");
    EXPECT_EQ(kit::withArgument("no place", "x").Bytes(), "no place");
    EXPECT_EQ(kit::withArgument("%s", "").Bytes(), "");
}

TEST(TextLoaderTest, ArgumentsAppearAsTheyAre)
{
    for (const char* name : { "%1", "100%s", "%n", "<b>", "&", "\xE2\x98\x83" })
        EXPECT_EQ(kit::withArgument("[%s]", name).Bytes(), "[" + std::string(name) + "]");
    EXPECT_EQ(kit::text(texts::TableRenamed, "%1%s"),
        QStringLiteral("La tabella e' stata rinominata \"%1%s\""));
}

TEST(TextLoaderTest, TextsComeFromTheInstalledTable)
{
    const kit::TextResource other(R"({"14109":"Achtung!","14100":"N\u00e4me"})");

    kit::setCurrentResource(&other);
    const auto installed = kit::text(texts::Attention);
    const auto missing = kit::text(texts::TableInUse);
    kit::setCurrentResource(nullptr);

    EXPECT_EQ(installed, QStringLiteral("Achtung!"));
    EXPECT_TRUE(missing.isEmpty());
    EXPECT_EQ(kit::text(texts::Attention), QStringLiteral("Attenzione!"));
}

TEST(TextLoaderTest, ATableThatIsNoJsonObjectIsEmpty)
{
    for (const char* json : { "", "[1]", "{\"14100\":", "nonsense" })
        EXPECT_EQ(kit::TextResource(json).size(), 0u) << json;
}

} // namespace
