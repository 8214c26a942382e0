// KyTextEngine: Pango text shaping shared by every DC in the process. Fonts resolve once per
// face and layouts are cached by (font, size, text) in a bounded cache, so measuring or
// drawing a label the chart drew before costs a hash lookup. GDI's font height rules live
// here: a positive height is the cell height (ascent + descent), a negative one the
// character (em) height, 0 the default size.
//
// A face's cell is its typographic em box (OS/2 typo ascender and descender), not its
// line-spacing metrics: Windows' Chinese faces have a cell of one em, so a label's glyphs
// fill its cell; CJK faces with generous line spacing would otherwise draw them at 0.7 of
// it. A generic family is resolved to one installed face, so that a whole string is set in
// that face rather than in a mix of fallbacks.
//
// Every call must be made with the engine's mutex held (see Lock); what it returns stays
// valid until the lock is released.
#pragma once

#include <kygraph/Font.h>
#include <kygraph/Size.h>

#include <pango/pangocairo.h>

#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

class KYFW_API KyTextEngine {  // exported for the framework's own tests
public:
    // A logical font resolved to sizes in pixels.
    struct Font {
        int face = 0;            // index into the engine's faces
        double cell = 0;         // cell height (ascent + descent)
        double ascent = 0;       // from the top of the cell to the baseline
        int layoutSize = 0;      // size the layout is shaped at, Pango units (em, absolute)
        double scale = 1;        // device pixels per layout pixel
        int extentHeight = 0;    // the height GetTextExtent reports
    };
    struct Layout {
        PangoLayout* layout = nullptr;
        double width = 0;        // logical width in layout pixels
        double baseline = 0;     // top of the layout to its baseline, layout pixels
    };

    // Layouts are shaped at most this large and scaled beyond: glyph rasterisation of huge
    // text is very expensive, so such text is drawn as a path.
    static constexpr double kMaxLayoutEm = 256.0;
    static constexpr double kMinLayoutEm = 1.0;
    // The cell height of a font whose height is 0.
    static constexpr int kDefaultCellHeight = 16;
    // Longer texts are refused rather than shaped.
    static constexpr int kMaxTextLength = 32767;

    static KyTextEngine& Instance();
    std::unique_lock<std::mutex> Lock() { return std::unique_lock<std::mutex>(m_mutex); }

    // False when the font cannot be made.
    bool Resolve(const LOGFONTW& lf, Font& out);
    // The cached layout of text in font, rendered with hard edges when aliased; null when it
    // cannot be shaped. Both kinds of layout have the same metrics.
    const Layout* GetLayout(const Font& font, const std::string& utf8, bool aliased = false);
    // The family a face name resolves to (fontconfig's choice for Simplified Chinese).
    std::string FamilyOf(const Font& font) const;
    // Width and height of text's cell in device pixels, as GDI reports them.
    CSize Extent(const Font& font, const Layout& layout) const;

    // Cache statistics, for tests.
    size_t CachedLayouts() const { return m_lru.size(); }

private:
    struct Face {
        std::wstring name;
        std::string family;          // the installed family it resolved to
        int weight;
        bool italic;
        PangoFontDescription* desc;  // without size
        double ascent;               // per em
        double descent;              // per em
    };
    struct Entry {
        std::string key;
        Layout layout;
    };

    KyTextEngine();
    ~KyTextEngine() = default;  // never called: the engine lives as long as the process
    int FindFace(const std::wstring& name, int weight, bool italic);
    // Ascent and descent per em of font's face; false when it has no usable ones.
    static bool EmBox(PangoFont* font, double& ascent, double& descent);

    static constexpr size_t kCacheCapacity = 2048;

    std::mutex m_mutex;
    PangoFontMap* m_fontMap = nullptr;
    PangoContext* m_context = nullptr;         // anti-aliased glyphs
    PangoContext* m_aliasedContext = nullptr;  // binary glyphs, hinted to the pixel grid
    std::vector<Face> m_faces;
    std::list<Entry> m_lru;  // most recently used first
    std::unordered_map<std::string, std::list<Entry>::iterator> m_index;
    std::string m_key;       // scratch
};
