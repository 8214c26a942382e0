// CFont: a logical font. lfHeight > 0 is the cell height (ascent + descent) in pixels,
// < 0 the character height, 0 the default size; escapement in tenths of a degree,
// counter-clockwise. An empty face name means the default face (CJK-capable sans-serif).
#pragma once

#include <kygraph/GdiObject.h>

#if !defined(_WIN32)
struct LOGFONTW {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    wchar_t lfFaceName[32];
};
using LOGFONT = LOGFONTW;
#endif

class KYFW_API CFont : public CGdiObject {
public:
    CFont() = default;

    Kind GetKind() const override { return KindFont; }
    // Copies the description; FALSE for a null pointer.
    BOOL CreateFontIndirect(const LOGFONTW* lf);
    BOOL GetLogFont(LOGFONTW* lf) const;
    const LOGFONTW& LogFont() const { return m_lf; }

private:
    friend class KyForeignGdiObject;  // describes handles the framework did not create
    LOGFONTW m_lf{};
};
