// CKyGDataSet: a set of measured or hourly weather states drawn over the chart: one dot per
// state, or, when there are many, a density: the plot area cut into square cells, each cell
// holding states shaded by how many it holds (hours per cell for hourly data). States outside
// the plot area are skipped and counted, never drawn at a wrong place.
#pragma once

#include <kygraph/KyGDrawBase.h>
#include <kygraph/KyStaPnt.h>

#include <utility>
#include <vector>

class KYGRAPH_API CKyGDataSet : public CKyGDrawBase {
public:
    // Auto: dots up to the settings' density threshold, a density above it.
    enum Mode : int { Auto = 0, Points = 1, Density = 2 };

    CKyGDataSet(CKyGChart* pChart = nullptr);
    CKyGDataSet(const CKyGDataSet& other) = default;
    CKyGDataSet& operator=(const CKyGDataSet& other) = default;
    ~CKyGDataSet() override = default;

    CString toString() const override;

    // Adds a state by its enthalpy (kJ/kg) and moisture content (g/kg); non-finite pairs are
    // kept and counted as skipped when drawn.
    void AddHD(double h, double d) { m_Points.emplace_back(h, d); }
    void Add(const CKyStaPnt& pnt) { AddHD(pnt.GetH(), pnt.GetD()); }
    void Reserve(size_t n) { m_Points.reserve(n); }
    void RemoveAll() { m_Points.clear(); }
    int GetCount() const { return static_cast<int>(m_Points.size()); }

    void SetName(const CString& name) { m_strName = name; }
    CString GetName() const { return m_strName; }
    void SetMode(Mode mode) { m_Mode = mode; }
    Mode GetMode() const { return m_Mode; }

    // Set by the last Draw: states skipped because they lie outside the plot area (or are not
    // finite), the mode actually drawn, and the most states in one density cell (0 for dots).
    int GetSkipped() const { return m_nSkipped; }
    Mode GetDrawnMode() const { return m_DrawnMode; }
    int GetMaxPerCell() const { return m_nMaxPerCell; }

protected:
    // 1 when at least one state was drawn; 0 with an error text when none lies on the chart.
    int Draw(CDC* pDC) override;

private:
    std::vector<std::pair<double, double>> m_Points;  // (h, d)
    CString m_strName;
    Mode m_Mode = Auto;
    int m_nSkipped = 0;
    Mode m_DrawnMode = Auto;
    int m_nMaxPerCell = 0;
};
