// CImageWnd on Windows: a real (message-only) window whose client area is a 32-bit DIB
// section selected into a memory DC of its own. Every DC taken from the window wraps that
// one DC, as a window with a class DC would, so what the chart copies to it stays readable.
// SVG and PDF windows are Linux only: on Windows such a window is never made.
#include <kygraph/ImageWnd.h>

#include <kygraph/DC.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

namespace {

constexpr int kMaxSide = 32767;
constexpr wchar_t kClassName[] = L"KyImageWnd";

void RegisterWindowClass()
{
    static std::once_flag once;
    std::call_once(once, [] {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.lpfnWndProc = ::DefWindowProcW;
        wc.hInstance = ::GetModuleHandleW(nullptr);
        wc.lpszClassName = kClassName;
        ::RegisterClassExW(&wc);
    });
}

// PNG with stored (uncompressed) deflate blocks: no codec to depend on, and pixels written
// are exactly the pixels read back.
class PngWriter {
public:
    static std::string Encode(const std::uint32_t* bgrx, int w, int h)
    {
        std::string raw;
        raw.reserve(static_cast<size_t>(h) * (1 + 3 * static_cast<size_t>(w)));
        for (int y = 0; y < h; ++y) {
            raw.push_back('\0');  // filter: none
            for (int x = 0; x < w; ++x) {
                const std::uint32_t p = bgrx[static_cast<size_t>(y) * w + x];
                raw.push_back(char((p >> 16) & 0xFF));
                raw.push_back(char((p >> 8) & 0xFF));
                raw.push_back(char(p & 0xFF));
            }
        }
        std::string z = "\x78\x01";
        for (size_t at = 0; at < raw.size() || at == 0; at += 65535) {
            const size_t n = std::min<size_t>(65535, raw.size() - at);
            const bool last = at + n >= raw.size();
            z.push_back(last ? '\1' : '\0');
            z.push_back(char(n & 0xFF));
            z.push_back(char(n >> 8));
            z.push_back(char(~n & 0xFF));
            z.push_back(char((~n >> 8) & 0xFF));
            z.append(raw, at, n);
            if (last) break;
        }
        Put32(z, Adler32(raw));

        std::string png("\x89PNG\r\n\x1a\n", 8);
        std::string ihdr;
        Put32(ihdr, std::uint32_t(w));
        Put32(ihdr, std::uint32_t(h));
        ihdr += std::string("\x08\x02\x00\x00\x00", 5);  // 8-bit RGB
        Chunk(png, "IHDR", ihdr);
        Chunk(png, "IDAT", z);
        Chunk(png, "IEND", "");
        return png;
    }

private:
    static void Put32(std::string& s, std::uint32_t v)
    {
        for (int i = 3; i >= 0; --i) s.push_back(char((v >> (8 * i)) & 0xFF));
    }
    static std::uint32_t Adler32(const std::string& s)
    {
        std::uint32_t a = 1, b = 0;
        for (unsigned char c : s) {
            a = (a + c) % 65521;
            b = (b + a) % 65521;
        }
        return (b << 16) | a;
    }
    static std::uint32_t Crc32(const std::string& s)
    {
        std::uint32_t c = 0xFFFFFFFFu;
        for (unsigned char ch : s) {
            c ^= ch;
            for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
        }
        return ~c;
    }
    static void Chunk(std::string& png, const char* type, const std::string& data)
    {
        Put32(png, std::uint32_t(data.size()));
        const std::string body = std::string(type, 4) + data;
        png += body;
        Put32(png, Crc32(body));
    }
};

}  // namespace

struct CImageWnd::Impl {
    COLORREF background = RGB(255, 255, 255);
    bool antialias = true;
    bool recording = false;
    HDC dc = nullptr;              // the client area's own DC
    HBITMAP dib = nullptr;         // selected into dc
    HGDIOBJ initialBitmap = nullptr;
    std::uint32_t* bits = nullptr;
    int width = 0, height = 0;
    std::vector<std::unique_ptr<CDC>> dcs;  // handed out by GetDC and not yet released

    // A new client area of cx x cy filled with the background; false (nothing changed) when
    // the size is refused or GDI cannot make it.
    bool Resize(int cx, int cy)
    {
        if (cx < 0 || cy < 0 || cx > kMaxSide || cy > kMaxSide) return false;
        HBITMAP next = nullptr;
        void* pixels = nullptr;
        if (cx > 0 && cy > 0) {
            BITMAPINFO bi{};
            bi.bmiHeader.biSize = sizeof bi.bmiHeader;
            bi.bmiHeader.biWidth = cx;
            bi.bmiHeader.biHeight = -cy;  // top-down
            bi.bmiHeader.biPlanes = 1;
            bi.bmiHeader.biBitCount = 32;
            bi.bmiHeader.biCompression = BI_RGB;
            next = ::CreateDIBSection(dc, &bi, DIB_RGB_COLORS, &pixels, nullptr, 0);
            if (!next) return false;
        }
        HGDIOBJ prev = ::SelectObject(dc, next ? static_cast<HGDIOBJ>(next) : initialBitmap);
        if (!initialBitmap) initialBitmap = prev;
        if (dib) ::DeleteObject(dib);
        dib = next;
        bits = static_cast<std::uint32_t*>(pixels);
        width = next ? cx : 0;
        height = next ? cy : 0;
        const COLORREF c = background;
        const std::uint32_t px = (std::uint32_t(GetRValue(c)) << 16) | (std::uint32_t(GetGValue(c)) << 8) | GetBValue(c);
        if (bits) std::fill(bits, bits + static_cast<size_t>(width) * height, px);
        ::SetBkColor(dc, background);
        return true;
    }
};

CImageWnd::CImageWnd(int cx, int cy, COLORREF background, SurfaceKind kind) : m_impl(std::make_unique<Impl>())
{
    m_impl->background = background & 0x00FFFFFF;
    if (kind != Raster || cx < 0 || cy < 0 || cx > kMaxSide || cy > kMaxSide) return;
    m_impl->dc = ::CreateCompatibleDC(nullptr);
    if (!m_impl->dc) return;
    if (!m_impl->Resize(cx, cy)) {
        ::DeleteDC(m_impl->dc);
        m_impl->dc = nullptr;
        return;
    }
    RegisterWindowClass();
    m_hWnd = ::CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ::GetModuleHandleW(nullptr),
                               nullptr);
}

CImageWnd::~CImageWnd() { DestroyWindow(); }

void CImageWnd::GetClientRect(LPRECT rect) const
{
    if (rect) *rect = m_hWnd ? RECT{0, 0, m_impl->width, m_impl->height} : RECT{0, 0, 0, 0};
}

CDC* CImageWnd::GetDC()
{
    if (!m_hWnd) return nullptr;
    auto dc = std::make_unique<CDC>();
    dc->Attach(m_impl->dc);
    dc->SetBkColor(m_impl->background);
    dc->SetAntialias(m_impl->antialias);
    dc->EnableRecording(m_impl->recording);
    m_impl->dcs.push_back(std::move(dc));
    return m_impl->dcs.back().get();
}

int CImageWnd::ReleaseDC(CDC* pDC)
{
    auto& dcs = m_impl->dcs;
    auto it = std::find_if(dcs.begin(), dcs.end(), [pDC](const std::unique_ptr<CDC>& d) { return d.get() == pDC; });
    if (!pDC || it == dcs.end()) return 0;
    (*it)->Detach();
    dcs.erase(it);
    return 1;
}

BOOL CImageWnd::DestroyWindow()
{
    if (!m_hWnd) return FALSE;
    // DCs still out become deleted DCs; a late call on them does nothing.
    for (auto& dc : m_impl->dcs) dc->Detach();
    ::SelectObject(m_impl->dc, m_impl->initialBitmap);
    if (m_impl->dib) ::DeleteObject(m_impl->dib);
    ::DeleteDC(m_impl->dc);
    m_impl->dib = nullptr;
    m_impl->dc = nullptr;
    m_impl->bits = nullptr;
    m_impl->width = m_impl->height = 0;
    HWND h = m_hWnd;
    m_hWnd = nullptr;
    ::DestroyWindow(h);
    return TRUE;
}

BOOL CImageWnd::SetClientSize(int cx, int cy) { return m_hWnd && m_impl->Resize(cx, cy) ? TRUE : FALSE; }

COLORREF CImageWnd::GetBackground() const { return m_impl->background; }

void CImageWnd::SetAntialias(bool on) { m_impl->antialias = on; }

void CImageWnd::EnableRecording(bool on) { m_impl->recording = on; }

int CImageWnd::SavePng(const char* path)
{
    if (!path || !*path || !m_hWnd || !m_impl->bits) return 0;
    const std::string png = Encode();
    FILE* f = std::fopen(path, "wb");
    if (!f) return 0;
    const bool ok = std::fwrite(png.data(), 1, png.size(), f) == png.size();
    return std::fclose(f) == 0 && ok ? 1 : 0;
}

COLORREF CImageWnd::GetPixel(int x, int y) const
{
    if (!m_hWnd || !m_impl->bits || x < 0 || y < 0 || x >= m_impl->width || y >= m_impl->height) return CLR_INVALID;
    ::GdiFlush();
    const std::uint32_t p = m_impl->bits[static_cast<size_t>(y) * m_impl->width + x];
    return RGB((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
}

int CImageWnd::SaveVector(const char*) { return 0; }

// Windows' windows are raster only, so there is no page to set.
BOOL CImageWnd::SetPaper(double, double, double) { return FALSE; }

std::string CImageWnd::Encode()
{
    if (!m_hWnd || !m_impl->bits) return std::string();
    ::GdiFlush();
    return PngWriter::Encode(m_impl->bits, m_impl->width, m_impl->height);
}
