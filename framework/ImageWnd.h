// CImageWnd: an off-screen host window whose client area is a raster surface (ARGB32), for
// command-line hosts, servers and tests; SavePng writes what was copied into it.
// The vector kinds (SVG, PDF) make a window whose DC is a vector surface: what is block
// transferred into it from a compatible memory DC stays vector, and SaveVector writes it.
#pragma once

#include <kygraph/Wnd.h>

#include <memory>
#include <string>

class KYFW_API CImageWnd : public CWnd {
public:
    enum SurfaceKind { Raster, Svg, Pdf };

    CImageWnd(int cx, int cy, COLORREF background = RGB(255, 255, 255), SurfaceKind kind = Raster);
    ~CImageWnd() override;

    void GetClientRect(LPRECT rect) const override;
    CDC* GetDC() override;
    int ReleaseDC(CDC* pDC) override;
    BOOL DestroyWindow() override;

    // Resizes the client area; the surface is re-created at the new size and cleared to the
    // background colour. FALSE (nothing changed) for sizes < 0 or a side above 32767.
    BOOL SetClientSize(int cx, int cy);
    COLORREF GetBackground() const;
    void SetAntialias(bool on);
    // DCs taken from the window afterwards record their primitives (see CDC::GetRecords).
    void EnableRecording(bool on);

    // Raster windows: writes the client area as PNG; 1 on success, 0 on failure.
    int SavePng(const char* path);
    // The pixel at (x, y), 0xFFFFFFFF outside the surface or for vector windows.
    COLORREF GetPixel(int x, int y) const;
    // Vector windows: the document becomes a page of widthMm x heightMm with the client area
    // fitted (and centred) within marginMm of its edges, and a pixel of pen width comes to
    // half a point on paper. Call before drawing. FALSE (nothing changed) for a raster window
    // or a page that leaves no room.
    BOOL SetPaper(double widthMm, double heightMm, double marginMm);
    // Vector windows: writes the SVG or PDF document; 1 on success, 0 on failure.
    int SaveVector(const char* path);
    // The encoded image (PNG for raster windows, SVG or PDF for vector windows) as bytes.
    std::string Encode();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
