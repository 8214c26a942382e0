#include "KyTextEngine.h"

#include <kygraph/Saturate.h>
#include <kygraph/String.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

KyTextEngine& KyTextEngine::Instance()
{
    // Deliberately never destroyed: DCs in static objects may still draw during exit.
    static KyTextEngine* engine = new KyTextEngine;
    return *engine;
}

KyTextEngine::KyTextEngine()
{
    m_fontMap = pango_cairo_font_map_new();
    // Unhinted metrics and unrounded glyph positions make widths scale linearly with the
    // size, so one cached layout serves every rotation and every target. The outlines are
    // hinted all the same: vertically for anti-aliased text, which keeps the many horizontal
    // strokes of Chinese glyphs on whole pixels at 7 to 12 pixels, and fully for binary text.
    auto makeContext = [this](cairo_antialias_t antialias, cairo_hint_style_t hinting) {
        PangoContext* context = pango_font_map_create_context(m_fontMap);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, hinting);
        cairo_font_options_set_antialias(options, antialias);
        pango_cairo_context_set_font_options(context, options);
        cairo_font_options_destroy(options);
        pango_context_set_round_glyph_positions(context, FALSE);
        // The chart's texts are Chinese: let fontconfig pick the Simplified Chinese face.
        pango_context_set_language(context, pango_language_from_string("zh-cn"));
        return context;
    };
    m_context = makeContext(CAIRO_ANTIALIAS_GRAY, CAIRO_HINT_STYLE_SLIGHT);
    m_aliasedContext = makeContext(CAIRO_ANTIALIAS_NONE, CAIRO_HINT_STYLE_FULL);
}

bool KyTextEngine::EmBox(PangoFont* font, double& ascent, double& descent)
{
    bool ok = false;
    if (hb_font_t* hb = pango_font_get_hb_font(font)) {
        hb_face_t* face = hb_font_get_face(hb);
        const unsigned upem = hb_face_get_upem(face);
        hb_blob_t* os2 = hb_face_reference_table(face, HB_TAG('O', 'S', '/', '2'));
        unsigned length = 0;
        const auto* d = reinterpret_cast<const unsigned char*>(hb_blob_get_data(os2, &length));
        // sTypoAscender and sTypoDescender: big-endian int16 at offsets 68 and 70.
        if (d && length >= 72 && upem > 0) {
            const auto at = [d](unsigned o) { return static_cast<std::int16_t>((d[o] << 8) | d[o + 1]); };
            ascent = at(68) / static_cast<double>(upem);
            descent = -at(70) / static_cast<double>(upem);
            ok = ascent > 0.2 && ascent < 2.0 && descent >= 0.0 && descent < 1.0;
        }
        hb_blob_destroy(os2);
    }
    return ok;
}

int KyTextEngine::FindFace(const std::wstring& name, int weight, bool italic)
{
    for (size_t i = 0; i < m_faces.size(); ++i) {
        const Face& f = m_faces[i];
        if (f.weight == weight && f.italic == italic && f.name == name) return static_cast<int>(i);
    }
    std::string family = name.empty() ? std::string("sans-serif") : CString(name).ToUtf8();
    // A comma would make Pango read a family list; a face name is one family.
    std::replace(family.begin(), family.end(), ',', ' ');
    PangoFontDescription* desc = pango_font_description_new();
    pango_font_description_set_family(desc, family.c_str());
    pango_font_description_set_weight(desc, static_cast<PangoWeight>(weight));
    pango_font_description_set_style(desc, italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);

    // Metrics at a large size, as fractions of the em. The family becomes the installed face
    // fontconfig chose for it, so Latin and digits are drawn in that face too.
    constexpr double kProbeEm = 1000.0;
    double ascent = 0.0, descent = 0.0;
    PangoFontDescription* probe = pango_font_description_copy(desc);
    pango_font_description_set_absolute_size(probe, kProbeEm * PANGO_SCALE);
    if (PangoFont* font = pango_context_load_font(m_context, probe)) {
        PangoFontDescription* chosen = pango_font_describe(font);
        if (const char* f = pango_font_description_get_family(chosen); f && *f) {
            family = f;
            pango_font_description_set_family(desc, f);
        }
        pango_font_description_free(chosen);
        // The face just loaded is the one its family name loads: each new size is a new
        // fontconfig search, so it is measured as it is.
        if (!EmBox(font, ascent, descent)) {
            PangoFontMetrics* m = pango_font_get_metrics(font, pango_context_get_language(m_context));
            ascent = pango_font_metrics_get_ascent(m) / (kProbeEm * PANGO_SCALE);
            descent = pango_font_metrics_get_descent(m) / (kProbeEm * PANGO_SCALE);
            pango_font_metrics_unref(m);
        }
        g_object_unref(font);
    }
    pango_font_description_free(probe);
    if (!(ascent > 0.0 && ascent < 10.0) || !(descent >= 0.0 && descent < 10.0)) {
        ascent = 0.8;  // a font without usable metrics still gets a sane cell
        descent = 0.2;
    }
    m_faces.push_back(Face{name, family, weight, italic, desc, ascent, descent});
    return static_cast<int>(m_faces.size() - 1);
}

bool KyTextEngine::Resolve(const LOGFONTW& lf, Font& out)
{
    size_t len = 0;
    while (len < std::size(lf.lfFaceName) && lf.lfFaceName[len]) ++len;
    const std::wstring name(lf.lfFaceName, len);
    const int weight = lf.lfWeight <= 0 ? FW_NORMAL : std::clamp<int>(lf.lfWeight, 100, 1000);
    out.face = FindFace(name, weight, lf.lfItalic != 0);
    const Face& face = m_faces[static_cast<size_t>(out.face)];
    const double perEm = face.ascent + face.descent;

    double em;
    if (lf.lfHeight > 0) {
        out.cell = lf.lfHeight;
        out.extentHeight = lf.lfHeight;
        em = out.cell / perEm;
    } else if (lf.lfHeight < 0) {
        em = -static_cast<double>(lf.lfHeight);
        out.cell = em * perEm;
        out.extentHeight = Ky::TruncToInt(std::round(out.cell));
    } else {
        out.cell = kDefaultCellHeight;
        out.extentHeight = kDefaultCellHeight;
        em = out.cell / perEm;
    }
    if (!(em > 0.0) || !std::isfinite(em)) return false;
    out.ascent = em * face.ascent;
    const double layoutEm = std::clamp(em, kMinLayoutEm, kMaxLayoutEm);
    out.layoutSize = static_cast<int>(std::lround(layoutEm * PANGO_SCALE));
    out.scale = em / (static_cast<double>(out.layoutSize) / PANGO_SCALE);
    return true;
}

std::string KyTextEngine::FamilyOf(const Font& font) const
{
    if (font.face < 0 || static_cast<size_t>(font.face) >= m_faces.size()) return std::string();
    return m_faces[static_cast<size_t>(font.face)].family;
}

const KyTextEngine::Layout* KyTextEngine::GetLayout(const Font& font, const std::string& utf8, bool aliased)
{
    if (font.face < 0 || static_cast<size_t>(font.face) >= m_faces.size()) return nullptr;
    m_key.clear();
    m_key.push_back(aliased ? 'a' : 's');
    m_key.append(reinterpret_cast<const char*>(&font.face), sizeof font.face);
    m_key.append(reinterpret_cast<const char*>(&font.layoutSize), sizeof font.layoutSize);
    m_key.append(utf8);
    auto it = m_index.find(m_key);
    if (it != m_index.end()) {
        m_lru.splice(m_lru.begin(), m_lru, it->second);
        return &it->second->layout;
    }

    PangoFontDescription* desc = pango_font_description_copy(m_faces[static_cast<size_t>(font.face)].desc);
    pango_font_description_set_absolute_size(desc, font.layoutSize);
    PangoLayout* layout = pango_layout_new(aliased ? m_aliasedContext : m_context);
    pango_layout_set_font_description(layout, desc);
    pango_font_description_free(desc);
    // GDI draws one line: control characters are glyphs, not line breaks.
    pango_layout_set_single_paragraph_mode(layout, TRUE);
    pango_layout_set_text(layout, utf8.data(), static_cast<int>(utf8.size()));
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);

    if (m_lru.size() >= kCacheCapacity) {
        Entry& last = m_lru.back();
        g_object_unref(last.layout.layout);
        m_index.erase(last.key);
        m_lru.pop_back();
    }
    m_lru.push_front(Entry{m_key, Layout{layout, static_cast<double>(logical.width) / PANGO_SCALE,
                                         static_cast<double>(pango_layout_get_baseline(layout)) / PANGO_SCALE}});
    m_index.emplace(m_key, m_lru.begin());
    return &m_lru.front().layout;
}

CSize KyTextEngine::Extent(const Font& font, const Layout& layout) const
{
    return CSize(Ky::TruncToInt(std::round(layout.width * font.scale)), font.extentHeight);
}
