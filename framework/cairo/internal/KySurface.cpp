#include "KySurface.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace Ky {

namespace {

// The raster image the last released surface drew on, kept for the next surface of the same
// size: a host that redraws makes a new bitmap each time, and a fresh image of that size
// costs a zeroed allocation and a page fault per 4 KiB, more at 8K than the drawing itself.
// Only one is kept, and none beyond kMaxParkedBytes, so an idle process holds at most one
// surface it no longer uses.
class ParkedImage {
public:
    // An image of exactly cx x cy, or null; the caller owns it.
    cairo_surface_t* Take(int cx, int cy)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_image || cairo_image_surface_get_width(m_image) != cx || cairo_image_surface_get_height(m_image) != cy)
            return nullptr;
        cairo_surface_t* image = m_image;
        m_image = nullptr;
        return image;
    }
    // Takes over cs when it is a healthy image no one else holds; otherwise releases it.
    void Put(cairo_surface_t* cs)
    {
        const auto bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(cs)) *
                           static_cast<std::size_t>(cairo_image_surface_get_height(cs));
        if (cairo_surface_get_reference_count(cs) != 1 || cairo_surface_status(cs) != CAIRO_STATUS_SUCCESS ||
            bytes > kMaxParkedBytes) {
            cairo_surface_destroy(cs);
            return;
        }
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_image) cairo_surface_destroy(m_image);
        m_image = cs;
    }

private:
    static constexpr std::size_t kMaxParkedBytes = std::size_t{256} << 20;  // an 8K screen is 127 MiB
    std::mutex m_mutex;
    cairo_surface_t* m_image = nullptr;
};

ParkedImage& Parked()
{
    // Never destroyed: surfaces of static objects may be released during exit.
    static ParkedImage* parked = new ParkedImage;
    return *parked;
}

// How many surfaces draw on one image: kept on the image, absent while it is just one. Every
// change and every decision on it holds SharingMutex, so two threads parting two surfaces that
// share never both keep, or both copy, the same image.
const cairo_user_data_key_t kOwnersKey{};

std::mutex& SharingMutex()
{
    static std::mutex* m = new std::mutex;
    return *m;
}

int Owners(cairo_surface_t* cs)
{
    const auto* n = static_cast<const int*>(cairo_surface_get_user_data(cs, &kOwnersKey));
    return n ? *n : 1;
}

bool SetOwners(cairo_surface_t* cs, int owners)
{
    if (auto* n = static_cast<int*>(cairo_surface_get_user_data(cs, &kOwnersKey))) {
        *n = owners;
        return true;
    }
    if (owners == 1) return true;
    auto* n = new int(owners);
    if (cairo_surface_set_user_data(cs, &kOwnersKey, n, [](void* p) { delete static_cast<int*>(p); }) !=
        CAIRO_STATUS_SUCCESS) {
        delete n;
        return false;
    }
    return true;
}

// One surface lets go of its image (SharingMutex held): the last one parks it.
void DropImage(cairo_surface_t* cs)
{
    const int owners = Owners(cs);
    if (owners > 1) {
        SetOwners(cs, owners - 1);
        cairo_surface_destroy(cs);
    } else {
        Parked().Put(cs);
    }
}

bool Paint(cairo_surface_t* cs, COLORREF color)
{
    cairo_t* cr = cairo_create(cs);
    SetSourceColor(cr, color);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
    const bool ok = cairo_status(cr) == CAIRO_STATUS_SUCCESS;
    cairo_destroy(cr);
    return ok;
}

// Maps in at once the pages of an image about to be written whole. Fresh memory otherwise
// takes one page fault per 4 KiB as the writing reaches it, which costs a one-off render
// about half a millisecond per 1000 x 800 surface.
void Prefault(const KySurface* s)
{
    // Memory already mapped in would be walked page by page all the same: 6 ms at 8K.
    if (!s->newMemory) return;
    s->newMemory = false;
#if defined(__linux__) && defined(MADV_POPULATE_WRITE)
    cairo_surface_t* cs = s->cs;
    unsigned char* data = cairo_image_surface_get_data(cs);
    if (!data) return;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(data) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(data) + static_cast<std::uintptr_t>(cairo_image_surface_get_stride(cs)) *
                                                                static_cast<std::uintptr_t>(cairo_image_surface_get_height(cs))) /
                     page * page;
    // Only a hint: an older kernel refuses it, and the writing faults the pages in as before.
    if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
#endif
}

// Writes the fill s still owes (SharingMutex held).
void PayFill(const KySurface* s)
{
    if (!s->unfilled.load(std::memory_order_relaxed)) return;
    Prefault(s);
    if (Paint(s->cs, s->fill)) s->unfilled.store(false, std::memory_order_release);
}

bool IsImage(const KySurface* s)
{
    return s && s->kind == KySurface::Raster && s->cs && cairo_surface_get_type(s->cs) == CAIRO_SURFACE_TYPE_IMAGE &&
           cairo_surface_status(s->cs) == CAIRO_STATUS_SUCCESS;
}

}  // namespace

void SetSourceColor(cairo_t* cr, COLORREF c)
{
    cairo_set_source_rgb(cr, GetRValue(c) / 255.0, GetGValue(c) / 255.0, GetBValue(c) / 255.0);
}

KySurface* CreateSurface(KySurface::Kind kind, int cx, int cy, COLORREF fill)
{
    if (cx < 0 || cy < 0 || cx > kMaxSurfaceSide || cy > kMaxSurfaceSide) return nullptr;
    cairo_surface_t* cs = nullptr;
    bool newMemory = false;
    if (cx > 0 && cy > 0) {
        if (kind == KySurface::Raster) {
            cs = Parked().Take(cx, cy);
            newMemory = !cs;
            if (!cs) cs = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cx, cy);
        } else {
            cairo_rectangle_t extents{0, 0, static_cast<double>(cx), static_cast<double>(cy)};
            cs = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents);
        }
        if (cairo_surface_status(cs) != CAIRO_STATUS_SUCCESS) {
            cairo_surface_destroy(cs);
            return nullptr;
        }
        if (kind == KySurface::Vector && !Paint(cs, fill)) {
            cairo_surface_destroy(cs);
            return nullptr;
        }
    }
    auto* s = new KySurface;
    s->kind = kind;
    s->width = cx;
    s->height = cy;
    s->cs = cs;
    s->fill = fill & 0x00FFFFFF;
    s->unfilled.store(kind == KySurface::Raster && cs, std::memory_order_relaxed);
    s->newMemory = newMemory;
    if (kind == KySurface::Vector && cs) {
        KyVectorItem background;
        background.kind = KyVectorItem::FillRect;
        background.rect = RECT{0, 0, cx, cy};
        background.brush.color = fill & 0x00FFFFFF;
        s->items.push_back(background);
    }
    return s;
}

KySurface* RefSurface(KySurface* s)
{
    if (s) s->refs.fetch_add(1, std::memory_order_relaxed);
    return s;
}

void ReleaseSurface(KySurface* s)
{
    if (!s || s->refs.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (s->cs) {
        // cairo 1.16's SVG output keeps a reference to every recording surface it replayed
        // and never drops it; finishing frees the recorded drawing all the same (surfaces
        // that recorded a copy of this one keep their copy).
        if (s->kind == KySurface::Vector) cairo_surface_finish(s->cs);
        if (s->kind == KySurface::Raster) {
            std::lock_guard<std::mutex> lock(SharingMutex());
            DropImage(s->cs);
        } else {
            cairo_surface_destroy(s->cs);
        }
    }
    delete s;
}

bool SharePixels(KySurface* dst, KySurface* src)
{
    if (dst == src || !IsImage(dst) || !IsImage(src) || dst->width != src->width || dst->height != src->height ||
        cairo_image_surface_get_format(dst->cs) != cairo_image_surface_get_format(src->cs))
        return false;
    std::lock_guard<std::mutex> lock(SharingMutex());
    if (dst->cs == src->cs) return true;
    PayFill(src);
    if (src->unfilled.load(std::memory_order_relaxed) || !SetOwners(src->cs, Owners(src->cs) + 1)) return false;
    cairo_surface_flush(src->cs);
    cairo_surface_t* old = dst->cs;
    dst->cs = cairo_surface_reference(src->cs);
    dst->unfilled.store(false, std::memory_order_release);
    dst->mayShare.store(true, std::memory_order_release);
    src->mayShare.store(true, std::memory_order_release);
    DropImage(old);
    return true;
}

bool OwnPixels(KySurface* s, bool keep)
{
    if (!s) return true;
    if (s->unfilled.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(SharingMutex());
        // What the drawing covers needs no fill first.
        if (keep) {
            PayFill(s);
        } else {
            Prefault(s);
            s->unfilled.store(false, std::memory_order_release);
        }
        if (s->unfilled.load(std::memory_order_relaxed)) return false;
    }
    if (!s->mayShare.load(std::memory_order_acquire)) return true;
    std::lock_guard<std::mutex> lock(SharingMutex());
    cairo_surface_t* shared = s->cs;
    if (!shared || Owners(shared) <= 1) {
        s->mayShare.store(false, std::memory_order_release);
        return true;
    }
    cairo_surface_t* own = keep ? nullptr : Parked().Take(s->width, s->height);
    if (!own) own = cairo_image_surface_create(cairo_image_surface_get_format(shared), s->width, s->height);
    if (cairo_surface_status(own) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(own);
        return false;
    }
    if (keep) {
        cairo_surface_flush(shared);
        cairo_surface_flush(own);
        const auto bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(shared)) *
                           static_cast<std::size_t>(s->height);
        std::memcpy(cairo_image_surface_get_data(own), cairo_image_surface_get_data(shared), bytes);
        cairo_surface_mark_dirty(own);
    }
    SetOwners(shared, Owners(shared) - 1);
    cairo_surface_destroy(shared);
    s->cs = own;
    s->mayShare.store(false, std::memory_order_release);
    return true;
}

cairo_surface_t* ImageOf(const KySurface* s)
{
    if (!s || !s->cs) return nullptr;
    if (s->unfilled.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(SharingMutex());
        PayFill(s);
    }
    return s->cs;
}

COLORREF SurfacePixel(const KySurface* s, int x, int y)
{
    if (!s || !s->cs || s->kind != KySurface::Raster) return 0xFFFFFFFF;
    if (x < 0 || y < 0 || x >= s->width || y >= s->height) return 0xFFFFFFFF;
    if (s->unfilled.load(std::memory_order_acquire)) return s->fill;
    cairo_surface_flush(s->cs);
    const unsigned char* data = cairo_image_surface_get_data(s->cs);
    if (!data) return 0xFFFFFFFF;
    const int stride = cairo_image_surface_get_stride(s->cs);
    std::uint32_t px = *reinterpret_cast<const std::uint32_t*>(data + static_cast<long>(y) * stride + x * 4);
    unsigned a = px >> 24;
    if (a == 0) return RGB(0, 0, 0);
    // Pixels are premultiplied; undo it so a half-covered pixel reads as its own colour.
    auto un = [a](unsigned v) { return static_cast<BYTE>(a == 255 ? v : (v * 255 + a / 2) / a); };
    return RGB(un((px >> 16) & 0xFF), un((px >> 8) & 0xFF), un(px & 0xFF));
}

}  // namespace Ky
