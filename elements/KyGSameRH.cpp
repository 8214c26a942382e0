#include <kygraph/KyGSameRH.h>

#include <kygraph/KyGBackground.h>
#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>
#include <kygraph/KyGPlotFrame.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/Saturate.h>
#include <kygraph/StringUtils.h>
#include <kygraph/VoArray.h>

#include <cmath>
#include <mutex>
#include <utility>
#include <vector>

namespace {

constexpr double kSampleStep = 0.2;  // °C between samples of a curve

// Samples a curve from t0 (°C) may take: up to the highest temperature the state model
// accepts, plus the sample that leaves the chart and one for rounding. Not the chart's range:
// a host that changes the lengths per unit after the chart was built can tilt the isotherms
// so that a curve stays inside the plot area well past the maximum temperature.
int MaxSamples(double t0)
{
    return Ky::TruncToInt(std::ceil((CKyStaPnt::kMaxTdb - t0) / kSampleStep)) + 2;
}

// The states along one curve, sample by sample, as far as a redraw has needed them. They are
// the same at every redraw of the curve at that pressure and formulation, and computing them
// was a tenth of the redraw.
class CurveSamples {
public:
    // Held while a curve's samples are read or added: charts may be drawn by several threads.
    static std::mutex& Mutex()
    {
        static std::mutex* mutex = new std::mutex;  // never destroyed: charts may draw during exit
        return *mutex;
    }
    // The samples of the curve at phi that starts at the state first (its dry bulb snapped
    // into the model's range), at first's pressure and formulation. Mutex() must be held.
    static CurveSamples& Of(double phi, const CKyStaPnt& first)
    {
        // A handful of curves is all a chart has, so a short list searched in order serves.
        // Dropped when it grows past what any range of humidities needs, so that hosts changing
        // them do not pile up.
        std::vector<CurveSamples>& curves = All();
        for (CurveSamples& c : curves)
            if (c.m_phi == phi && c.m_t0 == first.GetTdb() && c.m_b == first.GetB() &&
                c.m_form == first.GetFormulation())
                return c;
        if (curves.size() >= 64) curves.clear();
        return curves.emplace_back(phi, first);
    }
    static std::vector<CurveSamples>& All()
    {
        static auto* curves = new std::vector<CurveSamples>;
        return *curves;
    }
    // (h, d) of sample n, the dry bulb n steps of kSampleStep above the first; false where the
    // curve ends: the model refuses the state, or the step no longer advances the dry bulb.
    bool At(size_t n, double& h, double& d)
    {
        while (m_hd.size() <= n && !m_ended) {
            const double next = m_t + kSampleStep;
            CKyStaPnt p;
            if (!(next > m_t) || !p.SetBy_TdbandRH(next, m_phi)) {
                m_ended = true;
                break;
            }
            m_t = next;
            m_hd.emplace_back(p.GetH(), p.GetD());
        }
        if (n >= m_hd.size()) return false;
        h = m_hd[n].first;
        d = m_hd[n].second;
        return true;
    }

    // Pixels are kept while the frame they are drawn in maps states the same.
    void DrawnIn(const CKyGPlotFrame& frame)
    {
        const CKyGPlotFrame::Mapping mapping = frame.GetMapping();
        if (mapping == m_mapping) return;
        m_pixels.clear();
        m_mapping = mapping;
    }
    // The pixel of sample n in frame (the one last given to DrawnIn), as PointOf leaves it in
    // cur (which holds the pixel of sample n - 1, or (0, 0) for the first); false where
    // PointOf fails.
    bool PixelAt(size_t n, double h, double d, const CKyGPlotFrame& frame, CPoint& cur)
    {
        if (n < m_pixels.size()) {
            cur = m_pixels[n].pt;
            return m_pixels[n].ok;
        }
        const bool ok = frame.PointOf(h, d, cur) != 0;
        if (n == m_pixels.size()) m_pixels.push_back(Pixel{cur, ok});
        return ok;
    }

    CurveSamples(double phi, const CKyStaPnt& first)
        : m_phi(phi), m_t0(first.GetTdb()), m_b(first.GetB()), m_form(first.GetFormulation()), m_t(m_t0),
          m_hd{{first.GetH(), first.GetD()}}
    {
    }

private:
    double m_phi, m_t0, m_b;
    Ky::_Formulation m_form;
    double m_t;  // dry bulb of the last sample
    std::vector<std::pair<double, double>> m_hd;
    bool m_ended = false;
    struct Pixel {
        CPoint pt;
        bool ok;
    };
    CKyGPlotFrame::Mapping m_mapping{};
    std::vector<Pixel> m_pixels;  // of the first samples, in m_mapping
};

}  // namespace

CKyGSameRH::CKyGSameRH(CKyGChart* pChart) : CKyGSameLine(pChart, 1.0) {}

void CKyGSameRH::ForgetKept()
{
    std::lock_guard<std::mutex> lock(CurveSamples::Mutex());
    CurveSamples::All().clear();
}

int CKyGSameRH::Draw(CDC* pDC)
{
    CKyGChart* chart = GetChart();
    if (chart == nullptr) return 0;
    const CKyGRangeSetting& range = Settings().m_RangeSetting;
    const CStyledPen pen = Pen(pDC, CKyGBackground::Style(*this));
    const double phi = m_dValue;

    CKyStaPnt p;
    if (!p.SetBy_TdbandRH(range.GetMinT(), phi)) return FailWith(p);
    std::unique_lock<std::mutex> lock(CurveSamples::Mutex());
    CurveSamples& samples = CurveSamples::Of(phi, p);
    const CKyGPlotFrame frame = chart->Frame();
    samples.DrawnIn(frame);

    const CPoint o = chart->GetChartOrigin();
    const int rightX = chart->GetMaxTAndMaxDPnt().x;
    const int maxSamples = MaxSamples(p.GetTdb());
    CVoArray<CPoint> points;
    points.Reserve(maxSamples);
    // Also read by the label: whatever the last mapping left here, even a failed one.
    CPoint cur;
    CPoint prev;
    double h = 0.0, d = 0.0;
    for (int n = 0; n < maxSamples && samples.At(static_cast<size_t>(n), h, d); ++n) {
        if (!samples.PixelAt(static_cast<size_t>(n), h, d, frame, cur)) break;
        if (!points.IsEmpty()) {
            if (cur.y < o.y) {
                cur = CutAtTopEdge(prev.x, prev.y, cur, o.y);
                points.Add(cur);
                break;
            }
            if (cur.x > rightX) {
                // Ends on the curve's own state at the right edge, not on an interpolated
                // pixel; neither result is needed.
                CKyStaPnt edge;
                edge.SetBy_DandRH(range.GetMaxD(), phi);
                chart->Convert(edge, cur);
                points.Add(cur);
                break;
            }
        }
        points.Add(cur);
        prev = cur;
    }
    lock.unlock();
    pen.PolyLine(points);

    // A curve that never entered the chart has no end to label.
    if (m_bDimEnable && !points.IsEmpty()) {
        // No extent taken: the label starts just right of and below the curve's end.
        const CString text = StringUtils::DblToStr(phi * 100.0, 0) + L"%";
        pen.Text(cur + CSize(1, 1), 0.0, text);
    }
    return 1;
}
