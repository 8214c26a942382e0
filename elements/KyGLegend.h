// CKyGLegend: a box listing what the chart shows: the line families switched on (with their
// styles from the settings at draw time) and the entries the host adds for its zones, data
// sets and processes. Placed by the host, or by itself in free space: the empty side of the
// saturation curve where nothing has been drawn yet.
#pragma once

#include <kygraph/KyGDrawBase.h>

#include <vector>

class CKyGZone;
class CKyGDataSet;

class KYGRAPH_API CKyGLegend : public CKyGDrawBase {
public:
    // How an entry's sample looks and where its style comes from: Line and Fill carry their
    // own colour; Process and DataSet read the process and data-set styles at each draw.
    enum Swatch : int { Line = 0, Fill = 1, Process = 2, DataSet = 3 };
    struct Entry {
        CString text;
        Swatch swatch = Line;
        COLORREF color = 0;
        int penStyle = PS_SOLID;
        int penWidth = 1;
    };

    CKyGLegend(CKyGChart* pChart = nullptr);
    CKyGLegend(const CKyGLegend& other) = default;
    CKyGLegend& operator=(const CKyGLegend& other) = default;
    ~CKyGLegend() override = default;

    CString toString() const override;

    void AddEntry(const Entry& entry) { m_Entries.push_back(entry); }
    void AddZone(const CKyGZone& zone);
    void AddDataSet(const CKyGDataSet& data);
    void AddProcess(const CString& name);
    void RemoveAll() { m_Entries.clear(); }
    int GetEntryCount() const { return static_cast<int>(m_Entries.size()); }

    // Non-zero: the families switched on in the settings head the list; 1.
    void SetFamilies(int on) { m_bFamilies = on; }
    int GetFamilies() const { return m_bFamilies; }
    // A fixed top-left corner in client pixels instead of the automatic placement.
    void SetPosition(CPoint topLeft)
    {
        m_ptFixed = topLeft;
        m_bFixed = 1;
    }
    void ClearPosition() { m_bFixed = 0; }
    // Where the last Draw put the box; empty before.
    CRect GetPlacedRect() const { return m_rcPlaced; }

protected:
    // 0 with an error text when there is nothing to list; 1 otherwise.
    int Draw(CDC* pDC) override;

private:
    // The top-left corner for a box of that size.
    CPoint Place(CDC* pDC, CSize box);

    std::vector<Entry> m_Entries;
    int m_bFamilies = 1;
    int m_bFixed = 0;
    CPoint m_ptFixed;
    CRect m_rcPlaced;
};
