// CKyGZone: a region of the chart, such as a comfort or design zone, bounded by any
// combination of dry-bulb temperature, relative humidity, moisture content, enthalpy and
// wet-bulb temperature limits; drawn as a translucent fill in its colour, an outline and its
// name, cut to the plot area. Ready-made zones for the usual indoor design ranges.
#pragma once

#include <kygraph/KyGDrawBase.h>

#include <limits>
#include <vector>

class KYGRAPH_API CKyGZone : public CKyGDrawBase {
public:
    // The quantities a zone may be bounded by.
    enum Quantity : int { Tdb = 0, RH = 1, D = 2, H = 3, Twb = 4, kQuantityCount = 5 };
    // Indoor design ranges; the bounds and their sources are given where they are built.
    enum Preset : int {
        GB50736_Summer_I = 0,
        GB50736_Summer_II = 1,
        GB50736_Winter_I = 2,
        GB50736_Winter_II = 3,
        ASHRAE55_Summer = 4,
        ASHRAE55_Winter = 5,
        kPresetCount = 6
    };

    CKyGZone(CKyGChart* pChart = nullptr);
    CKyGZone(const CKyGZone& other) = default;
    CKyGZone& operator=(const CKyGZone& other) = default;
    ~CKyGZone() override = default;

    CString toString() const override;

    // Limits on one quantity, inclusive: °C for Tdb and Twb, a fraction (1.0 = saturation)
    // for RH, g/kg for D, kJ/kg for H. An infinite limit leaves that side open. 0 with an
    // error text naming the quantity when a limit is NaN, lo > hi or the quantity is unknown;
    // the zone is then unchanged.
    int SetBounds(Quantity q, double lo, double hi);
    // Removes the limits on q (the quantity is then unbounded).
    void ClearBounds(Quantity q);
    double GetLow(Quantity q) const;
    double GetHigh(Quantity q) const;

    void SetName(const CString& name) { m_strName = name; }
    CString GetName() const { return m_strName; }
    void SetColor(COLORREF color) { m_crColor = color & 0x00FFFFFF; }
    COLORREF GetColor() const { return m_crColor; }
    void SetDimEnable(int enable) { m_bDimEnable = enable; }
    int GetDimEnable() const { return m_bDimEnable; }
    // Where the last successful Draw put, or would have put, the centre of the name: the middle
    // of the largest drawn piece. False before the zone was drawn.
    bool GetNamePoint(CPoint& at) const;

    // The zone of a preset with its name and colour; an unknown preset gives an unbounded zone
    // named "?".
    static CKyGZone FromPreset(Preset preset);
    // Short key of a preset for files and the viewer ("gb50736-summer-1", ...); null when unknown.
    static const char* PresetKey(Preset preset);

    // The outline of the zone in (h kJ/kg, d g/kg) pairs, as closed polygons (one per
    // connected piece), at the state model's pressure and formulation now; empty when the
    // limits enclose no state. Not cut to any chart.
    std::vector<std::vector<std::pair<double, double>>> Outline() const;

protected:
    // 0 with an error text when the zone encloses no state or none of it lies on the chart.
    int Draw(CDC* pDC) override;

private:
    static constexpr double kInf = std::numeric_limits<double>::infinity();
    double m_dLow[kQuantityCount] = {-kInf, -kInf, -kInf, -kInf, -kInf};
    double m_dHigh[kQuantityCount] = {kInf, kInf, kInf, kInf, kInf};
    CString m_strName;
    COLORREF m_crColor = RGB(0, 160, 80);
    int m_bDimEnable = 1;
    CPoint m_namePoint;
    bool m_bNamePoint = false;
};
