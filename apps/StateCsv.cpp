#include "StateCsv.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>

namespace {

std::string Trim(std::string_view s)
{
    size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    std::string out(s.substr(a, b - a));
    if (out.size() >= 2 && out.front() == '"' && out.back() == '"') out = out.substr(1, out.size() - 2);
    return out;
}

std::vector<std::string_view> Split(std::string_view line, char sep)
{
    std::vector<std::string_view> cells;
    size_t start = 0;
    for (size_t i = 0; i <= line.size(); ++i) {
        if (i == line.size() || line[i] == sep) {
            cells.push_back(line.substr(start, i - start));
            start = i + 1;
        }
    }
    return cells;
}

// The property a header cell names: its first word, lower case ("RH (%)" is rh, "t" is tdb).
std::optional<StateInput::Prop> PropOf(const std::string& cell)
{
    std::string word;
    for (char c : cell) {
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '_') word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        else if (!word.empty()) break;
    }
    if (word == "t" || word == "db" || word == "temp" || word == "temperature") return StateInput::Tdb;
    if (word == "wb") return StateInput::Twb;
    if (word == "dp" || word == "dew") return StateInput::Tdp;
    return StateInput::FromKey(word);
}

bool IsTimeName(const std::string& cell)
{
    std::string low;
    for (char c : cell) low += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return low.rfind("time", 0) == 0 || low.rfind("date", 0) == 0 || low == "hour" || low.rfind("timestamp", 0) == 0;
}

bool ToDouble(const std::string& text, double& out)
{
    if (text.empty()) return false;
    const char* end = text.data() + text.size();
    const auto r = std::from_chars(text.data(), end, out);
    return r.ec == std::errc() && r.ptr == end && std::isfinite(out);
}

bool Blank(const std::string& line)
{
    return std::all_of(line.begin(), line.end(), [](unsigned char c) { return std::isspace(c); });
}

}  // namespace

bool StateCsv::Parse(std::istream& in, Table& table, std::string& error, std::size_t maxRows)
{
    table = Table{};
    std::string line;
    std::size_t lineNo = 0;
    // The header is the first line that is neither blank nor a # comment.
    while (std::getline(in, line)) {
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (lineNo == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);  // byte-order mark
        if (!Blank(line) && line[0] != '#') break;
        line.clear();
    }
    if (line.empty()) {
        error = "no header: the first line should name the columns, e.g. \"time,tdb,rh\"";
        return false;
    }
    const char sep = line.find('\t') != std::string::npos ? '\t' : line.find(';') != std::string::npos ? ';' : ',';
    const auto header = Split(line, sep);
    std::vector<std::pair<StateInput::Prop, size_t>> found;
    for (size_t i = 0; i < header.size(); ++i) {
        const std::string cell = Trim(header[i]);
        if (IsTimeName(cell)) table.hasTime = true;
        else if (const auto p = PropOf(cell); p && std::none_of(found.begin(), found.end(), [&](auto& f) { return f.first == *p; }))
            found.emplace_back(*p, i);
    }
    // The first two named properties that the state model can be set by.
    std::optional<std::pair<size_t, size_t>> pick;
    for (size_t a = 0; a < found.size() && !pick; ++a) {
        for (size_t b = a + 1; b < found.size() && !pick; ++b) {
            if (StateInput::IsSupportedPair(found[a].first, found[b].first)) pick = std::make_pair(a, b);
        }
    }
    if (!pick) {
        error = "no recognisable header: \"" + line.substr(0, 64) + (line.size() > 64 ? "..." : "") +
                "\" names no pair of state columns (" + StateInput::SupportedPairs() + ")";
        return false;
    }
    const auto [pa, ca] = found[pick->first];
    const auto [pb, cb] = found[pick->second];
    table.columns = std::string(StateInput::Key(pa)) + "+" + StateInput::Key(pb);

    while (std::getline(in, line)) {
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (Blank(line) || line[0] == '#') continue;
        if (++table.rows > maxRows) {
            error = "more than " + std::to_string(maxRows) + " rows; a chart shows at most that many states";
            table = Table{};
            return false;
        }
        const auto cells = Split(line, sep);
        double a = 0, b = 0;
        bool ok = ca < cells.size() && cb < cells.size() && ToDouble(Trim(cells[ca]), a) && ToDouble(Trim(cells[cb]), b);
        if (ok) {
            const auto la = StateInput::LimitsOf(pa), lb = StateInput::LimitsOf(pb);
            ok = a >= la.min && a <= la.max && b >= lb.min && b <= lb.max;
        }
        if (ok) {
            StateInput s;
            s.Set(pa, a);
            s.Set(pb, b);
            CKyStaPnt p;
            std::string why;
            ok = s.Resolve(p, why);
            if (ok) table.hd.emplace_back(p.GetH(), p.GetD());
        }
        if (!ok) {
            ++table.rejected;
            if (table.rejectedLines.size() < kShownLines) table.rejectedLines.push_back(lineNo);
        }
    }
    return true;
}

bool StateCsv::ReadFile(const std::string& path, Table& table, std::string& error)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open \"" + path + "\"";
        table = Table{};
        return false;
    }
    return Parse(in, table, error);
}

std::string StateCsv::RejectedSummary(const Table& table)
{
    if (table.rejected == 0) return {};
    std::string s = std::to_string(table.rejected) + " of " + std::to_string(table.rows) +
                    (table.rows == 1 ? " row is" : " rows are") + " not states (line";
    s += table.rejectedLines.size() > 1 ? "s " : " ";
    for (size_t i = 0; i < table.rejectedLines.size(); ++i) s += (i ? ", " : "") + std::to_string(table.rejectedLines[i]);
    if (table.rejected > table.rejectedLines.size()) s += ", ...";
    return s + ") and are not drawn";
}
