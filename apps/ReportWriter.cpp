#include "ReportWriter.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace {

// Every text of the report, in both languages.
enum TextId {
    kTitle, kPressure, kStates, kSteps, kName, kProcess, kStep, kKind, kFlow, kNoFlow,
    kMixing, kSensible, kCoil, kSpray, kSteam, kRatio, kPath, kTextCount
};
constexpr const char* kTexts[kTextCount][2] = {
    {"焓湿图设计报告", "Psychrometric design report"},
    {"大气压力", "Atmospheric pressure"},
    {"状态点", "States"},
    {"处理过程", "Process steps"},
    {"名称", "Name"},
    {"过程", "No."},
    {"步骤", "Step"},
    {"类型", "Kind"},
    {"风量", "Flow"},
    {"未给风量：只列状态变化", "no air flow given: changes of state only"},
    {"混合", "mixing"},
    {"加热/冷却", "heating/cooling"},
    {"表冷器", "cooling coil"},
    {"喷雾加湿", "spray humidifier"},
    {"蒸汽加湿", "steam humidifier"},
    {"热湿比过程", "ratio"},
    {"路径", "path"},
};

constexpr double kPageW = 842, kPageH = 595;  // A4 landscape, pt
constexpr double kMargin = 36;
constexpr double kRowH = 14;

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length)
{
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

struct PngReader {
    const std::string* bytes;
    size_t offset = 0;
};

cairo_status_t ReadBytes(void* closure, unsigned char* data, unsigned int length)
{
    auto* r = static_cast<PngReader*>(closure);
    if (r->offset + length > r->bytes->size()) return CAIRO_STATUS_READ_ERROR;
    std::copy_n(r->bytes->data() + r->offset, length, data);
    r->offset += length;
    return CAIRO_STATUS_SUCCESS;
}

std::string Num(std::optional<double> v, int decimals)
{
    if (!v || !std::isfinite(*v)) return "—";
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, std::fabs(*v) < 0.5 * std::pow(10.0, -decimals) ? 0.0 : *v);
    return buf;
}

class Page {
public:
    Page(cairo_t* cr, ReportWriter::Language lang) : m_cr(cr), m_lang(lang) {}

    const char* Text(TextId id) const { return kTexts[id][m_lang == ReportWriter::English ? 1 : 0]; }

    void Show(const std::string& text, double x, double y, double size, bool bold = false)
    {
        PangoLayout* layout = pango_cairo_create_layout(m_cr);
        PangoFontDescription* font = pango_font_description_from_string("sans-serif");
        pango_font_description_set_size(font, static_cast<int>(size * PANGO_SCALE));
        if (bold) pango_font_description_set_weight(font, PANGO_WEIGHT_BOLD);
        pango_layout_set_font_description(layout, font);
        pango_layout_set_text(layout, text.c_str(), -1);
        cairo_move_to(m_cr, x, y);
        pango_cairo_show_layout(m_cr, layout);
        pango_font_description_free(font);
        g_object_unref(layout);
    }

    // A row of cells at y; widths in pt.
    void Row(const std::vector<std::string>& cells, const std::vector<double>& widths, double y, bool head)
    {
        double x = kMargin;
        for (size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
            Show(cells[i], x + 2, y + 1, 7.5, head);
            x += widths[i];
        }
        cairo_set_line_width(m_cr, head ? 0.8 : 0.3);
        cairo_move_to(m_cr, kMargin, y + kRowH);
        cairo_line_to(m_cr, x, y + kRowH);
        cairo_stroke(m_cr);
    }

    // y of the next row, starting a new page when the row would not fit.
    double Next(double y)
    {
        if (y + 2 * kRowH < kPageH - kMargin) return y + kRowH;
        cairo_show_page(m_cr);
        return kMargin;
    }

private:
    cairo_t* m_cr;
    ReportWriter::Language m_lang;
};

const char* KindText(const Page& page, SceneStep::Type type)
{
    switch (type) {
    case SceneStep::Mixing: return page.Text(kMixing);
    case SceneStep::Sensible: return page.Text(kSensible);
    case SceneStep::CoolingDehumidify: return page.Text(kCoil);
    case SceneStep::AdiabaticHumidify: return page.Text(kSpray);
    case SceneStep::SteamHumidify: return page.Text(kSteam);
    case SceneStep::Ratio: return page.Text(kRatio);
    default: return page.Text(kPath);
    }
}

std::string NameOf(const CKyStaPnt& p)
{
    const std::string n = p.GetName().ToUtf8();
    return n.empty() ? "·" : n;
}

}  // namespace

bool ReportWriter::LanguageOf(const std::string& key, Language& language)
{
    if (key == "zh" || key == "chinese") language = Chinese;
    else if (key == "en" || key == "english") language = English;
    else return false;
    return true;
}

bool ReportWriter::Write(const Content& c, Language language, std::string& pdf, std::string& error)
{
    PngReader reader{&c.chartPng};
    cairo_surface_t* chart = cairo_image_surface_create_from_png_stream(ReadBytes, &reader);
    if (cairo_surface_status(chart) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(chart);
        error = "the chart image cannot be read";
        return false;
    }
    std::string out;
    cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(AppendBytes, &out, kPageW, kPageH);
    cairo_t* cr = cairo_create(surface);
    Page page(cr, language);
    cairo_set_source_rgb(cr, 0, 0, 0);

    // Page 1: the chart, as large as the page allows.
    page.Show(std::string(page.Text(kTitle)) + (c.title.empty() ? "" : "  " + c.title), kMargin, kMargin - 12, 13, true);
    page.Show(std::string(page.Text(kPressure)) + " " + Num(c.pressure, 0) + " Pa", kMargin, kMargin + 10, 8);
    const double iw = cairo_image_surface_get_width(chart), ih = cairo_image_surface_get_height(chart);
    const double top = kMargin + 28, boxW = kPageW - 2 * kMargin, boxH = kPageH - top - kMargin;
    const double scale = std::min(boxW / iw, boxH / ih);
    cairo_save(cr);
    cairo_translate(cr, kMargin + (boxW - iw * scale) / 2, top);
    cairo_scale(cr, scale, scale);
    cairo_set_source_surface(cr, chart, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BEST);
    cairo_paint(cr);
    cairo_restore(cr);
    cairo_show_page(cr);

    // Page 2 on: the named states, then the steps with their loads.
    double y = kMargin;
    page.Show(page.Text(kStates), kMargin, y, 11, true);
    y += 20;
    const std::vector<double> sw = {110, 60, 60, 60, 60, 60, 60};
    page.Row({page.Text(kName), "t °C", "φ %", "d g/kg", "h kJ/kg", "twb °C", "tdp °C"}, sw, y, true);
    for (const CKyStaPnt& p : c.states) {
        y = page.Next(y);
        page.Row({NameOf(p), Num(p.GetTdb(), 1), Num(p.GetRH() * 100, 1), Num(p.GetD(), 2), Num(p.GetH(), 2),
                  Num(p.GetTwb(), 1), Num(p.GetTdp(), 1)},
                 sw, y, false);
    }
    y = page.Next(page.Next(y));
    page.Show(page.Text(kSteps), kMargin, y, 11, true);
    y += 20;
    const std::vector<double> tw = {30, 90, 84, 56, 42, 50, 54, 50, 34, 48, 48, 48, 52, 60};
    page.Row({page.Text(kProcess), page.Text(kStep), page.Text(kKind), page.Text(kFlow) + std::string(" kg/s"), "Δt K",
              "Δd g/kg", "Δh kJ/kg", "ε kJ/kg", "SHR", "Qs kW", "Ql kW", "Q kW", "W kg/h", ""},
             tw, y, true);
    bool anyFlow = false;
    for (const ProcessLoads::Step& s : c.steps) {
        const ProcessLoads::Row r = ProcessLoads::Of(s);
        anyFlow = anyFlow || s.massFlow.has_value();
        y = page.Next(y);
        page.Row({s.process, s.name, KindText(page, s.type), Num(s.massFlow, 3), Num(r.dt, 2), Num(r.dd, 2), Num(r.dh, 2),
                  Num(r.ratio, 0), Num(r.shr, 2), Num(r.sensible, 2), Num(r.latent, 2), Num(r.total, 2), Num(r.moisture, 2),
                  NameOf(s.from) + "→" + NameOf(s.end)},
                 tw, y, false);
    }
    if (!anyFlow && !c.steps.empty()) page.Show(page.Text(kNoFlow), kMargin, page.Next(y) + 4, 7.5);
    cairo_show_page(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    cairo_surface_destroy(chart);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = std::string("cannot make the report: ") + cairo_status_to_string(status);
        return false;
    }
    pdf = std::move(out);
    return true;
}
