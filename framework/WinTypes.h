// The plain Windows types and macros the framework's interface is written in. On Windows
// they are the system's own, so a host hands its real HWND, RECT and COLORREF to the chart;
// elsewhere they are defined here with the same layout and values.
#pragma once

#include <cstdint>

#if defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// The framework's classes have members named like these A/W macros (CDC::TextOut,
// CFont::CreateFontIndirect, CString::LoadString). The macros would rename the members by
// the UNICODE setting of each translation unit, so a host built without UNICODE would not
// link against the library; they go, and the framework calls the W functions by name.
#undef TextOut
#undef CreateFontIndirect
#undef LoadString
#undef GetObject
#undef DrawText
#undef GetClassName

#else

using BOOL = int;
using UINT = unsigned int;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using COLORREF = DWORD;  // 0x00BBGGRR; the high byte is ignored
using LPCTSTR = const wchar_t*;
using LPCWSTR = const wchar_t*;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef NULL
#define NULL nullptr
#endif

constexpr COLORREF RGB(BYTE r, BYTE g, BYTE b)
{
    return static_cast<COLORREF>(r) | (static_cast<COLORREF>(g) << 8) | (static_cast<COLORREF>(b) << 16);
}
constexpr BYTE GetRValue(COLORREF c) { return static_cast<BYTE>(c & 0xFF); }
constexpr BYTE GetGValue(COLORREF c) { return static_cast<BYTE>((c >> 8) & 0xFF); }
constexpr BYTE GetBValue(COLORREF c) { return static_cast<BYTE>((c >> 16) & 0xFF); }

struct POINT {
    LONG x;
    LONG y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPPOINT = POINT*;

// Opaque handles: a device context and a window.
struct KyHDC__;
struct KyHWND__;
using HDC = KyHDC__*;
using HWND = KyHWND__*;

// Pen styles.
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;

// Background modes.
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

// Text alignment (only the top-left default is drawn differently from GDI's others).
constexpr UINT TA_TOP = 0;
constexpr UINT TA_LEFT = 0;
constexpr UINT TA_NOUPDATECP = 0;

// Arc directions.
constexpr int AD_COUNTERCLOCKWISE = 1;
constexpr int AD_CLOCKWISE = 2;

// Raster operation of BitBlt.
constexpr DWORD SRCCOPY = 0x00CC0020;

// GetDeviceCaps: what a DC draws on.
constexpr int TECHNOLOGY = 2;
constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int DT_RASDISPLAY = 1;
constexpr int DT_METAFILE = 5;

// Font weights and stock objects.
constexpr LONG FW_NORMAL = 400;
constexpr LONG FW_BOLD = 700;
constexpr int WHITE_BRUSH = 0;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int DEFAULT_GUI_FONT = 17;
constexpr int SYSTEM_FONT = 13;

#endif  // _WIN32
