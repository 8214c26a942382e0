#include <kygraph/KyGZone.h>

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGraphModule.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>

#include "internal/KyGPlotMap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Samples across the temperature window of a zone; the ends of each piece are then found by
// bisection, so the count only decides how closely curved sides are followed.
constexpr int kSamples = 96;
constexpr int kBisections = 24;

const wchar_t* QuantityName(CKyGZone::Quantity q)
{
    switch (q) {
    case CKyGZone::Tdb: return L"t";
    case CKyGZone::RH: return L"RH";
    case CKyGZone::D: return L"d";
    case CKyGZone::H: return L"h";
    case CKyGZone::Twb: return L"twb";
    default: return L"?";
    }
}

// One temperature of the zone: the moisture contents it spans there, lo <= hi when it holds
// any state.
struct Slice {
    double t = 0, lo = 0, hi = 0;
    bool Holds() const { return lo <= hi; }
};

}  // namespace

CKyGZone::CKyGZone(CKyGChart* pChart) : CKyGDrawBase(pChart) {}

CString CKyGZone::toString() const { return CString(L"CKyGZone"); }

int CKyGZone::SetBounds(Quantity q, double lo, double hi)
{
    CResourceModule::Scope scope(KyGraphModule());
    if (q < 0 || q >= kQuantityCount || std::isnan(lo) || std::isnan(hi) || lo > hi) {
        CString text;
        text.LoadString(IDS_ZONE_BOUND_INVALID);
        m_strLastError = CString(QuantityName(q)) + L": " + text;
        return 0;
    }
    m_dLow[q] = lo;
    m_dHigh[q] = hi;
    return 1;
}

void CKyGZone::ClearBounds(Quantity q)
{
    if (q < 0 || q >= kQuantityCount) return;
    m_dLow[q] = -kInf;
    m_dHigh[q] = kInf;
}

double CKyGZone::GetLow(Quantity q) const { return q >= 0 && q < kQuantityCount ? m_dLow[q] : -kInf; }
double CKyGZone::GetHigh(Quantity q) const { return q >= 0 && q < kQuantityCount ? m_dHigh[q] : kInf; }

namespace {

// One row per preset: its key in scene files, its bounds (NaN: not bounded), name and colour.
struct PresetRow {
    CKyGZone::Preset preset;
    const char* key;
    double tdbLow, tdbHigh, rhLow, rhHigh, dHigh;
    const wchar_t* name;
    COLORREF color;
};

constexpr double kOpen = std::numeric_limits<double>::quiet_NaN();

// GB 50736-2012, Design code for heating ventilation and air conditioning of civil buildings,
// 3.0.2 (rooms where people stay long): cooling I 24-26 °C with 40-60 % RH, cooling II 26-28 °C
// with RH at most 70 %, heating I 22-24 °C with RH at least 30 %, heating II 18-22 °C with no
// humidity requirement.
// ASHRAE Standard 55-1992, 5.1: the winter zone 20-23.5 °C and the summer zone 22.5-26 °C
// (operative temperature, sedentary people, about 1.0 and 0.5 clo); RH 30-60 % as that edition
// recommends; and the humidity ratio at most 0.012 (12 g/kg) that the standard has kept as the
// upper limit of its graphic zone since the 2004 edition.
const PresetRow kPresets[] = {
    {CKyGZone::GB50736_Summer_I, "gb50736-summer-1", 24.0, 26.0, 0.40, 0.60, kOpen, L"GB 50736 夏季 I级", RGB(230, 120, 40)},
    {CKyGZone::GB50736_Summer_II, "gb50736-summer-2", 26.0, 28.0, 0.0, 0.70, kOpen, L"GB 50736 夏季 II级", RGB(220, 170, 40)},
    {CKyGZone::GB50736_Winter_I, "gb50736-winter-1", 22.0, 24.0, 0.30, 1.0, kOpen, L"GB 50736 冬季 I级", RGB(40, 120, 220)},
    {CKyGZone::GB50736_Winter_II, "gb50736-winter-2", 18.0, 22.0, kOpen, kOpen, kOpen, L"GB 50736 冬季 II级", RGB(60, 170, 200)},
    {CKyGZone::ASHRAE55_Summer, "ashrae55-summer", 22.5, 26.0, 0.30, 0.60, 12.0, L"ASHRAE 55 夏季", RGB(200, 60, 60)},
    {CKyGZone::ASHRAE55_Winter, "ashrae55-winter", 20.0, 23.5, 0.30, 0.60, 12.0, L"ASHRAE 55 冬季", RGB(90, 90, 200)},
};

const PresetRow* FindPreset(CKyGZone::Preset preset)
{
    for (const PresetRow& row : kPresets)
        if (row.preset == preset) return &row;
    return nullptr;
}

}  // namespace

const char* CKyGZone::PresetKey(Preset preset)
{
    const PresetRow* row = FindPreset(preset);
    return row ? row->key : nullptr;
}

CKyGZone CKyGZone::FromPreset(Preset preset)
{
    CKyGZone z;
    const PresetRow* row = FindPreset(preset);
    if (row == nullptr) {
        z.SetName(L"?");
        return z;
    }
    z.SetBounds(Tdb, row->tdbLow, row->tdbHigh);
    if (!std::isnan(row->rhLow)) z.SetBounds(RH, row->rhLow, row->rhHigh);
    if (!std::isnan(row->dHigh)) z.SetBounds(D, 0.0, row->dHigh);
    z.SetName(row->name);
    z.SetColor(row->color);
    return z;
}

namespace {

// The moisture content d* at temperature t with: q <= v exactly where d <= d* (q grows with
// d at fixed t). -inf when no state at t is that low, +inf when every state is below v, the
// saturation d when v is the saturated value itself. NaN when the state model refuses the
// state in between.
double DAt(CKyGZone::Quantity q, double v, double t, const CKyStaPnt& dry, const CKyStaPnt& sat)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const double dsat = sat.GetD();
    if (std::isinf(v)) return v;
    CKyStaPnt p;
    switch (q) {
    case CKyGZone::D:
        return v;
    case CKyGZone::RH:
        if (v < 0.0) return -kInf;
        if (v >= 1.0) return v > 1.0 ? kInf : dsat;
        if (v == 0.0) return 0.0;
        return p.SetBy_TdbandRH(t, v) ? p.GetD() : std::nan("");
    case CKyGZone::H:
        if (v < dry.GetH()) return -kInf;
        if (v >= sat.GetH()) return v > sat.GetH() ? kInf : dsat;
        return p.SetBy_HandTdb(v, t) ? p.GetD() : std::nan("");
    case CKyGZone::Twb:
        if (v < dry.GetTwb()) return -kInf;
        if (v >= t) return v > t ? kInf : dsat;
        return p.SetBy_TdbandTwb(t, v) ? p.GetD() : std::nan("");
    default:
        return std::nan("");
    }
}

}  // namespace

std::vector<std::vector<std::pair<double, double>>> CKyGZone::Outline() const
{
    std::vector<std::vector<std::pair<double, double>>> pieces;
    // The temperature window: the zone's own limits within what the state model accepts, and
    // when the zone leaves it open, the chart's range with a margin, so that curved sides are
    // followed closely where they show.
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const double chartLo = std::min(range.GetMinT(), range.GetMaxT()) - 10.0;
    const double chartHi = std::max(range.GetMinT(), range.GetMaxT()) + 10.0;
    double t0 = std::isinf(m_dLow[Tdb]) ? chartLo : m_dLow[Tdb];
    double t1 = std::isinf(m_dHigh[Tdb]) ? chartHi : m_dHigh[Tdb];
    t0 = std::max(t0, CKyStaPnt::kMinTdb);
    t1 = std::min(t1, CKyStaPnt::kMaxTdb);
    if (!(t0 <= t1)) return pieces;

    auto slice = [this](double t) {
        Slice s{t, -kInf, kInf};
        CKyStaPnt dry, sat;
        if (!dry.SetBy_DandTdb(0.0, t) || !sat.SetBy_TdbandRH(t, 1.0)) {
            s.lo = kInf;
            return s;
        }
        s.lo = 0.0;
        s.hi = sat.GetD();
        for (int q = RH; q < kQuantityCount; ++q) {
            const Quantity k = static_cast<Quantity>(q);
            if (!std::isinf(m_dLow[q]) || m_dLow[q] > 0) s.lo = std::max(s.lo, DAt(k, m_dLow[q], t, dry, sat));
            if (!std::isinf(m_dHigh[q]) || m_dHigh[q] < 0) s.hi = std::min(s.hi, DAt(k, m_dHigh[q], t, dry, sat));
        }
        if (std::isnan(s.lo) || std::isnan(s.hi)) s.lo = kInf;
        return s;
    };
    // The slice nearest to `in` (holding) on the way to `out` (not holding).
    auto edge = [&slice](Slice in, double out) {
        double a = in.t, b = out;
        for (int i = 0; i < kBisections; ++i) {
            const Slice m = slice((a + b) / 2.0);
            if (m.Holds()) {
                in = m;
                a = m.t;
            } else {
                b = (a + b) / 2.0;
            }
        }
        return in;
    };

    const int n = t1 > t0 ? kSamples : 0;
    std::vector<Slice> run;
    double prevT = t0;
    bool prevHeld = false;
    auto close = [&pieces, &run] {
        if (run.empty()) return;
        std::vector<std::pair<double, double>> poly;
        poly.reserve(run.size() * 2);
        // Up the high side, back down the low side; h from (t, d) of each corner.
        for (const Slice& s : run) {
            CKyStaPnt p;
            if (p.SetBy_DandTdb(s.hi, s.t)) poly.emplace_back(p.GetH(), p.GetD());
        }
        for (auto it = run.rbegin(); it != run.rend(); ++it) {
            CKyStaPnt p;
            if (p.SetBy_DandTdb(it->lo, it->t)) poly.emplace_back(p.GetH(), p.GetD());
        }
        if (poly.size() >= 3) pieces.push_back(std::move(poly));
        run.clear();
    };
    for (int i = 0; i <= n; ++i) {
        const double t = n == 0 ? t0 : t0 + (t1 - t0) * i / n;
        const Slice s = slice(t);
        if (s.Holds()) {
            if (!prevHeld && i > 0) run.push_back(edge(s, prevT));
            run.push_back(s);
        } else if (prevHeld) {
            run.push_back(edge(run.back(), t));
            close();
        }
        prevHeld = s.Holds();
        prevT = t;
    }
    close();
    return pieces;
}

int CKyGZone::Draw(CDC* pDC)
{
    CResourceModule::Scope scope(KyGraphModule());
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGChartSetting* set = &Settings();
    const CKyGOverlaySetting& ov = set->m_OverlaySetting;
    const tagKyLineStyle style = ov.m_ZoneStyle;
    const double k = Frame().Scale();

    const auto outline = Outline();
    if (outline.empty()) {
        m_strLastError.LoadString(IDS_ZONE_EMPTY);
        return 0;
    }
    KyGPlotMap map;
    if (!map.Init(*chart, *set)) {
        m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
        return 0;
    }
    bool drawn = false;
    double bestArea = -1.0;
    KyGPixel labelAt{0, 0};
    for (const auto& piece : outline) {
        std::vector<KyGPixel> pixels;
        pixels.reserve(piece.size());
        for (const auto& [h, d] : piece) {
            const KyGPixel p = map.Map(h, d);
            if (KyGPlotMap::Finite(p)) pixels.push_back(p);
        }
        pixels = map.ClipPolygon(std::move(pixels));
        if (pixels.size() < 3) continue;
        CVoArray<CPoint> pts;
        pts.Reserve(static_cast<int>(pixels.size()) + 1);
        double l = pixels[0].x, r = l, t = pixels[0].y, b = t;
        for (const KyGPixel& p : pixels) {
            pts.Add(KyGPlotMap::Round(p));
            l = std::min(l, p.x);
            r = std::max(r, p.x);
            t = std::min(t, p.y);
            b = std::max(b, p.y);
        }
        DrawPolygonAlpha(pDC, pts, m_crColor, std::clamp(ov.m_nZoneAlpha, 0, 255));
        pts.Add(pts[0]);
        DrawPolyLine(pDC, pts, style.nPenStyle, style.nWidth, m_crColor);
        drawn = true;
        if ((r - l) * (b - t) > bestArea) {
            bestArea = (r - l) * (b - t);
            labelAt = KyGPixel{(l + r) / 2.0, (t + b) / 2.0};
        }
    }
    if (!drawn) {
        m_strLastError.LoadString(IDS_OUT_OF_DRAW_RANGE);
        return 0;
    }
    m_namePoint = CPoint(Ky::TruncToInt(labelAt.x), Ky::TruncToInt(labelAt.y));
    m_bNamePoint = true;
    if (m_bDimEnable && !m_strName.IsEmpty() && pDC != nullptr) {
        const double height = style.nTextHeight * k;
        const CSize ext = GetTextExtent(pDC, Ky::TruncToInt(height), m_strName);
        // The name over the fill without blanking it.
        const int oldMode = pDC->SetBkMode(TRANSPARENT);
        DrawTextW(pDC, CPoint(Ky::TruncToInt(labelAt.x - ext.cx / 2.0), Ky::TruncToInt(labelAt.y - ext.cy / 2.0)),
                  height, 0.0, m_crColor, m_strName);
        pDC->SetBkMode(oldMode);
    }
    return 1;
}

bool CKyGZone::GetNamePoint(CPoint& at) const
{
    if (m_bNamePoint) at = m_namePoint;
    return m_bNamePoint;
}
