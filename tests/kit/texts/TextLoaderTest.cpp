// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/texts/TextIds.h"
#include "kit/texts/TextLoader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

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

TEST(TextLoaderTest, TextsAreKeptByteForByte)
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
