// CKyGRangeSetting: the extent of the chart body (dry-bulb temperature and moisture-content
// range) and the three corner state points computed from it.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyStaPnt.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGRangeSetting : public CKyObject {
public:
    // Defaults -30..65 degC and 0..50 g/kg; the corner points are computed at once.
    CKyGRangeSetting();
    CKyGRangeSetting(const CKyGRangeSetting& other);
    CKyGRangeSetting& operator=(const CKyGRangeSetting& other);
    ~CKyGRangeSetting() override;

    CString toString() const override;

    // Each setter stores the value unconditionally and recomputes the corner points: 1 when
    // all three could be computed, 0 when one could not (the value stays stored; the failing
    // point and the later ones keep their previous state).
    int SetMinT(double dMinT);
    int SetMaxT(double dMaxT);
    int SetMinD(double dMinD);
    int SetMaxD(double dMaxD);

    double GetMinT() const { return m_dMinT; }  // degC
    double GetMaxT() const { return m_dMaxT; }  // degC
    double GetMinD() const { return m_dMinD; }  // g/kg dry air
    double GetMaxD() const { return m_dMaxD; }  // g/kg dry air
    // |max - min|: an inverted range still has a positive extent.
    double GetTRange() const;
    double GetDRange() const;

    // Copies of the corner state points.
    CKyStaPnt GetMinDMinTStaPnt() const;
    CKyStaPnt GetMinDMaxTStaPnt() const;
    CKyStaPnt GetMaxDMaxTStaPnt() const;

    // h (kJ/kg) and d (g/kg) of the corner points without copying them; they always agree
    // with the points above (NaN while a point has never been computed). The chart's
    // mapping reads these on every call.
    double GetMinDMinTH() const { return m_dMinDMinTH; }
    double GetMinDMinTD() const { return m_dMinDMinTD; }
    double GetMinDMaxTH() const { return m_dMinDMaxTH; }
    double GetMinDMaxTD() const { return m_dMinDMaxTD; }
    double GetMaxDMaxTH() const { return m_dMaxDMaxTH; }
    double GetMaxDMaxTD() const { return m_dMaxDMaxTD; }

    // Ignores its arguments on purpose: it tests the range currently held by the settings
    // singleton. 1 when both (min d, min T) and (max d, max T) are states, else 0.
    static int IsRangeValid(double dMinT, double dMaxT, double dMinD, double dMaxD);

    // Limits for the host's validation of a typed range; the library never reads them.
    static double m_dValidMinT;  // -80 degC
    static double m_dValidMaxT;  // 90 degC
    static double m_dValidMinD;  // 0 g/kg
    static double m_dValidMaxD;  // 200 g/kg

private:
    // Recomputes the corner points in the order (min d, max T), (min d, min T),
    // (max d, max T), stopping at the first failure; 1 when all three were computed.
    int CalStaPnt();

    double m_dMinT;  // lowest dry-bulb temperature of the chart body, degC; default -30
    double m_dMaxT;  // highest dry-bulb temperature, degC; default 65
    double m_dMinD;  // left edge, g/kg dry air; default 0
    double m_dMaxD;  // right edge, g/kg dry air; default 50
    CKyStaPnt m_MinDMaxTStaPnt;
    CKyStaPnt m_MinDMinTStaPnt;
    CKyStaPnt m_MaxDMaxTStaPnt;

    // h and d of the three points above, refreshed whenever a point is set or copied.
    double m_dMinDMaxTH, m_dMinDMaxTD;
    double m_dMinDMinTH, m_dMinDMinTD;
    double m_dMaxDMaxTH, m_dMaxDMaxTD;
};
