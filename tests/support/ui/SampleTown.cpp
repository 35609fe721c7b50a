// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/SampleTown.h"

#include <string>

namespace ui {

namespace {

constexpr const char* Structure = R"(
table Strade (Nome text required, Tipo list ('Strada', 'Piazza', 'Vicolo', 'Viale'), Attiva boolean,
    Corsie integer min 1 max 8, Larghezza decimal 2 min 0, Rilievo date,
    Lunghezza decimal 2 from perimeter2d);
table Alberi (Specie text, Altezza decimal 1, Piantato date);
table "Catasto 2024" (Foglio integer, Particella integer);
)";

constexpr const char* StreetNames[] = { "Via Roma", "Corso Vittorio Emanuele II",
    "Piazza della Libertà", "Vicolo Stretto", "Viale dei Tigli", "Via Niccolò Machiavelli",
    "Via XX Settembre", "Largo Città di Castello" };
constexpr const char* Kinds[] = { "Strada", "Strada", "Piazza", "Vicolo", "Viale" };
constexpr const char* Species[] = { "Tiglio", "Platano", "Leccio", "Pino domestico" };

std::string two(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string streetRow(int i)
{
    const std::string name = std::string(StreetNames[i % 8]) + " " + std::to_string(i / 8 * 2 + 1);
    const std::string active = i % 7 == 3 ? "-" : i % 3 == 0 ? "no" : "yes";
    const std::string lanes = i % 9 == 4 ? "-" : std::to_string(1 + i * 5 % 4);
    const std::string width
        = i % 11 == 6 ? "-" : std::to_string(3 + i % 9) + "." + two(i * 25 % 100);
    const std::string day
        = two(1 + i * 3 % 28) + "/" + two(1 + i * 5 % 12) + "/" + std::to_string(2010 + i % 10);
    return "('" + name + "', '" + Kinds[i % 5] + "', " + active + ", " + lanes + ", " + width + ", "
        + (i % 8 == 5 ? "-" : day) + ", " + std::to_string(80 + i * 37 % 400) + "."
        + two(i * 13 % 100) + ")";
}

std::string treeRow(int i)
{
    return std::string("('") + Species[i % 4] + "', " + std::to_string(4 + i % 12) + "."
        + std::to_string(i % 10) + ", " + two(1 + i % 28) + "/11/" + std::to_string(1950 + i) + ")";
}

std::string notation()
{
    constexpr int streets = 60;
    constexpr int trees = 25;
    std::string rows = "rows Strade: ";
    std::string streetEnts = "ents Strade: ";
    for (int i = 0; i < streets; ++i) {
        const std::string end = i + 1 < streets ? ", " : "; ";
        rows += streetRow(i) + end;
        streetEnts += std::to_string(i) + " [" + std::to_string(i * 10) + " 0, "
            + std::to_string(i * 10) + " " + std::to_string(80 + i) + "]" + end;
    }
    std::string treeRows = "rows Alberi: ";
    std::string treeEnts = "ents Alberi: ";
    for (int i = 0; i < trees; ++i) {
        const std::string end = i + 1 < trees ? ", " : "; ";
        treeRows += treeRow(i) + end;
        treeEnts += std::to_string(i) + " [" + std::to_string(i * 7) + " 5]" + end;
    }
    return Structure + rows + treeRows
        + "rows \"Catasto 2024\": (12, 345), (12, 346); theme Strade: lines 2d on Strade active; "
          "theme Alberi: points 2d on Alberi; "
        + streetEnts + treeEnts;
}

} // namespace

std::shared_ptr<support::CRecordingLibrary> sampleTown()
{
    return std::make_shared<support::CRecordingLibrary>(notation());
}

} // namespace ui
