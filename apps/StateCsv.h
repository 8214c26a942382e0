// StateCsv: a table of measured or hourly states in CSV: a header naming the columns (any
// pair of tdb (or t), twb, tdp, rh (percent), d, h, pv that the state model can be set by, a
// time column and any others allowed and ignored), then one state per row. Rows that are not
// states are counted with their line numbers, not drawn; a file without a header naming a
// pair, or with more rows than any chart needs, is refused whole.
#pragma once

#include "StateInput.h"

#include <cstddef>
#include <istream>
#include <string>
#include <utility>
#include <vector>

class StateCsv {
public:
    // A year of hourly states is 8760; a million rows is a century of them.
    static constexpr std::size_t kMaxRows = 1000000;
    // Line numbers of refused rows kept for the report.
    static constexpr std::size_t kShownLines = 5;

    struct Table {
        std::vector<std::pair<double, double>> hd;  // (h kJ/kg, d g/kg) of every state row
        std::size_t rows = 0;                        // data rows read (blank and # lines aside)
        std::size_t rejected = 0;                    // rows that are not states
        std::vector<std::size_t> rejectedLines;      // the first kShownLines of them, 1-based
        std::string columns;                         // the pair used, "tdb+rh"
        bool hasTime = false;
    };

    // Reads states at the state model's current pressure and formulation. False with one line
    // saying why when the header names no supported pair or the rows are too many; the table
    // is then empty.
    static bool Parse(std::istream& in, Table& table, std::string& error, std::size_t maxRows = kMaxRows);
    static bool ReadFile(const std::string& path, Table& table, std::string& error);
    // "12 of 8760 rows are not states (lines 5, 9, ...) and are not drawn"; empty when every
    // row is a state.
    static std::string RejectedSummary(const Table& table);
};
