// Canvas implemented with GDI+ for shapes and GDI for text: GDI falls back to other fonts for characters that
// a font lacks.

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/app/WideText.h"

namespace cad {

namespace {

constexpr int kSize = 13;
constexpr int kSmallSize = 12;
constexpr double kOpaque = 255;
constexpr double kPi = 3.14159265358979323846;
/// The greatest distance between a chord and its arc, in pixels.
constexpr double kLargestSagitta = 0.05;
constexpr double kMostChords = 10000;

/// Starts GDI+ with the first canvas; it is shut down when the program exits.
void startLibrary() {
    static const struct Library {
        Library() {
            const Gdiplus::GdiplusStartupInput input;
            Gdiplus::GdiplusStartup(&token, &input, nullptr);
        }
        ~Library() { Gdiplus::GdiplusShutdown(token); }
        ULONG_PTR token = 0;
    } library;
    static_cast<void>(library);
}

int CALLBACK fontFound(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
    *reinterpret_cast<bool*>(found) = true;
    return 0;
}

bool hasFamily(HDC dc, const wchar_t* family) {
    LOGFONTW wanted{};
    wanted.lfCharSet = DEFAULT_CHARSET;
    std::wcsncpy(wanted.lfFaceName, family, LF_FACESIZE - 1);
    bool found = false;
    ::EnumFontFamiliesExW(dc, &wanted, fontFound, reinterpret_cast<LPARAM>(&found), 0);
    return found;
}

/// The first of the preferred families that is installed.
const wchar_t* familyOf(HDC dc, Font font) {
    static constexpr const wchar_t* kInterface[] = {L"Microsoft YaHei UI", L"Noto Sans CJK SC"};
    static constexpr const wchar_t* kCommandLine[] = {L"NSimSun", L"Noto Sans Mono CJK SC",
                                                      L"Noto Sans CJK SC"};
    const auto choose = [dc](const auto& families) {
        for (const wchar_t* family : families) {
            if (hasFamily(dc, family)) {
                return family;
            }
        }
        return L"MS Shell Dlg 2";
    };
    static const wchar_t* const interfaceFamily = choose(kInterface);
    static const wchar_t* const commandLineFamily = choose(kCommandLine);
    return font == Font::CommandLine ? commandLineFamily : interfaceFamily;
}

Gdiplus::PointF pointOf(const Point& point) {
    return {static_cast<Gdiplus::REAL>(point.x), static_cast<Gdiplus::REAL>(point.y)};
}

Gdiplus::RectF rectOf(const Area& area) {
    return {static_cast<Gdiplus::REAL>(area.x), static_cast<Gdiplus::REAL>(area.y),
            static_cast<Gdiplus::REAL>(area.width), static_cast<Gdiplus::REAL>(area.height)};
}

Gdiplus::Color colorOf(Color color, double opacity) {
    return {static_cast<BYTE>(opacity * kOpaque), static_cast<BYTE>(color >> 16),
            static_cast<BYTE>(color >> 8), static_cast<BYTE>(color)};
}

class GdiCanvas : public Canvas {
public:
    explicit GdiCanvas(HDC dc) : m_dc(dc), m_state(::SaveDC(dc)) {
        startLibrary();
        m_graphics = std::make_unique<Gdiplus::Graphics>(dc);
        m_graphics->SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        // Integer coordinates are pixel corners, not pixel centers.
        m_graphics->SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
        ::SetBkMode(dc, TRANSPARENT);
    }
    GdiCanvas(const GdiCanvas&) = delete;
    GdiCanvas& operator=(const GdiCanvas&) = delete;

    ~GdiCanvas() override {
        m_graphics.reset();
        ::RestoreDC(m_dc, m_state);
        for (const auto& [font, handle] : m_fonts) {
            ::DeleteObject(handle);
        }
    }

    void fill(const Area& area, Color color) override {
        const Gdiplus::SolidBrush brush(colorOf(color, 1));
        m_graphics->FillRectangle(&brush, rectOf(area));
        flush();
    }

    void fillRounded(const Area& area, double radius, Color color, double opacity) override {
        const Gdiplus::SolidBrush brush(colorOf(color, opacity));
        Gdiplus::GraphicsPath path;
        addRounded(path, area, radius);
        m_graphics->FillPath(&brush, &path);
        flush();
    }

    void strokeRounded(const Area& area, double radius, const Stroke& stroke) override {
        Gdiplus::GraphicsPath path;
        addRounded(path, area, radius);
        draw(path, stroke);
    }

    void polyline(const std::vector<Point>& points, bool closed, const Stroke& stroke) override {
        if (points.size() < 2) {
            return;
        }
        std::vector<Gdiplus::PointF> places;
        for (const Point& point : points) {
            places.push_back(pointOf(point));
        }
        Gdiplus::GraphicsPath path;
        path.AddLines(places.data(), static_cast<INT>(places.size()));
        if (closed) {
            path.CloseFigure();
        }
        draw(path, stroke);
    }

    void circle(Point center, double radius, const Stroke& stroke) override {
        // Drawn as chords too short to be distinguished from arcs: in Wine, GDI+ ellipses have visible
        // corners.
        const double half = std::acos(1 - std::min(kLargestSagitta / radius, 1.0));
        const auto count = static_cast<int>(std::min(std::ceil(kPi / half), kMostChords));
        std::vector<Point> points;
        for (int i = 0; i < count; ++i) {
            const double angle = 2 * kPi * i / count;
            points.push_back({center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)});
        }
        polyline(points, true, stroke);
    }

    void text(double left, double top, const std::string& text, Font font, Color color) override {
        const CString wide = toWide(text);
        ::SelectObject(m_dc, fontOf(font));
        ::SetTextColor(m_dc, RGB(color >> 16, color >> 8, color));
        ::TextOutW(m_dc, static_cast<int>(left), static_cast<int>(top), wide.GetString(), wide.GetLength());
    }

    double textWidth(const std::string& text, Font font) override {
        const CString wide = toWide(text);
        ::SelectObject(m_dc, fontOf(font));
        SIZE size{};
        ::GetTextExtentPoint32W(m_dc, wide.GetString(), wide.GetLength(), &size);
        return static_cast<double>(size.cx);
    }

    double lineHeight(Font font) override {
        ::SelectObject(m_dc, fontOf(font));
        TEXTMETRICW metrics{};
        ::GetTextMetricsW(m_dc, &metrics);
        return static_cast<double>(metrics.tmHeight);
    }

    void pushClip(const Area& area) override {
        // GDI+ and GDI draw on the same device context, so its clip region applies to both.
        ::SaveDC(m_dc);
        ::IntersectClipRect(m_dc, static_cast<int>(area.x), static_cast<int>(area.y),
                            static_cast<int>(area.right()), static_cast<int>(area.bottom()));
    }

    void popClip() override { ::RestoreDC(m_dc, -1); }

private:
    static void addRounded(Gdiplus::GraphicsPath& path, const Area& area, double radius) {
        const auto corner = static_cast<Gdiplus::REAL>(2 * radius);
        const auto left = static_cast<Gdiplus::REAL>(area.x);
        const auto top = static_cast<Gdiplus::REAL>(area.y);
        const auto right = static_cast<Gdiplus::REAL>(area.right()) - corner;
        const auto bottom = static_cast<Gdiplus::REAL>(area.bottom()) - corner;
        path.AddArc(right, top, corner, corner, 270, 90);
        path.AddArc(right, bottom, corner, corner, 0, 90);
        path.AddArc(left, bottom, corner, corner, 90, 90);
        path.AddArc(left, top, corner, corner, 180, 90);
        path.CloseFigure();
    }

    void draw(const Gdiplus::GraphicsPath& path, const Stroke& stroke) {
        Gdiplus::Pen pen(colorOf(stroke.color, 1), static_cast<Gdiplus::REAL>(stroke.width));
        if (stroke.dash > 0 && stroke.width > 0) {
            // GDI+ measures dashes in pen widths.
            const auto length = static_cast<Gdiplus::REAL>(stroke.dash / stroke.width);
            const Gdiplus::REAL pattern[] = {length, length};
            pen.SetDashPattern(pattern, 2);
        }
        m_graphics->DrawPath(&pen, &path);
        flush();
    }

    /// GDI text bypasses GDI+, so pending GDI+ drawing must reach the device context first.
    void flush() { m_graphics->Flush(Gdiplus::FlushIntentionSync); }

    HFONT fontOf(Font font) {
        HFONT& handle = m_fonts[font];
        if (handle == nullptr) {
            handle = ::CreateFontW(-(font == Font::Small ? kSmallSize : kSize), 0, 0, 0,
                                   font == Font::InterfaceBold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                   DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                   ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_DONTCARE, familyOf(m_dc, font));
        }
        return handle;
    }

    HDC m_dc;
    int m_state;
    std::unique_ptr<Gdiplus::Graphics> m_graphics;
    std::map<Font, HFONT> m_fonts;
};

}  // namespace

std::unique_ptr<Canvas> makeCanvas(HDC dc) {
    return std::make_unique<GdiCanvas>(dc);
}

}  // namespace cad
