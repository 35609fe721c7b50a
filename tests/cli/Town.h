// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace cli_test {

/// A small library with all formats and gaps, points and polygons.
inline constexpr const char* Town
    = "table Strade (Nome text required, Tipo list ('Strada', 'Via'), Aperta boolean, Corsie "
      "integer, Larghezza decimal 2, Rilievo date, Area decimal 1 from area);"
      "rows Strade: ('Via \"Roma\", 1', 'Via', yes, 2, 3.456, 05/03/2016, -)"
      "  ('Citt\xC3\xA0', 'Strada', no, -3, 10, 31/12/1969, -)"
      "  (-, -, -, -, -, -, -)"
      "  ('Corso', 'Strada', yes, 2, 3.4561, 05/03/2016, -);"
      "theme Vie: points 2d on Strade active;"
      "ents Vie: 0 [1 2], 1 [3.5 -4], 2 [], 3 [5 6 | 7 8];"
      "table Case (Piani integer);"
      "rows Case: (1) (2);"
      "theme Edifici: polygons 3d on Case;"
      "ents Edifici:"
      "  0 [0 0 1, 0 10 1, 10 10 1, 10 0 1, 0 0 1 | 2 2 1, 4 2 1, 4 4 1, 2 4 1, 2 2 1],"
      "  1 [0 0 0, 0 1 0, 1 1 0, 0 0 0 | 20 20 0, 20 21 0, 21 21 0, 20 20 0]";

/// One theme only, so that --theme may be left out.
inline constexpr const char* Lamps = "table Lampioni (N integer, Altezza decimal 1);"
                                     "rows Lampioni: (1, 4.5) (2, 6) (3, 4.5) (4, -);"
                                     "theme Lampioni: points 2d on Lampioni;"
                                     "ents Lampioni: 0 [0 0], 1 [1 0], 2 [2 0], 3 [3 0]";

} // namespace cli_test
