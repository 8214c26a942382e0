// CKyGDrawHstSetting: what the full redraw needs: the family display switches, the intervals
// between lines of each family and the summer and winter design conditions.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyObject.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGDrawHstSetting : public CKyObject {
public:
    CKyGDrawHstSetting();
    CKyGDrawHstSetting(const CKyGDrawHstSetting& other);
    CKyGDrawHstSetting& operator=(const CKyGDrawHstSetting& other);
    ~CKyGDrawHstSetting() override;

    CString toString() const override;

    double m_dPressure;    // Pa, held for the host (the title prints the model's pressure); 101325
    double m_dDInterval;   // spacing of constant-d lines, g/kg; 5
    double m_dHInterval;   // spacing of constant-h lines, kJ/kg; 5
    double m_dTInterval;   // spacing of isotherms, degC; 5
    double m_dRHInterval;  // spacing of relative-humidity curves, percent; 10
    int m_nSpare;          // held and copied, read by nothing; 8
    CString m_strCity;     // place name of the design conditions, held for the host; "北京"
    int m_bShowASChart;    // non-zero: draw the heat-moisture-ratio protractor; 1
    int m_bShowSameT;      // non-zero: draw isotherms; 1
    int m_bShowSameD;      // non-zero: draw constant-d lines; 1
    int m_bShowSameH;      // non-zero: draw constant-h lines; 1
    int m_bShowSameRH;     // non-zero: draw relative-humidity curves; 1
    int m_bShowTitle;      // handed to the frame's title switch at every redraw; 1
    int m_bWinter;         // zero: design points from the summer conditions, else winter; 0
    double m_dSummerOutTdb;  // degC; 33.2
    double m_dSummerOutTwb;  // degC; 26.4
    double m_dSummerInTdb;   // degC; 25.0
    double m_dSummerInRH;    // percent; 60
    double m_dWinterOutTdb;  // degC; -9.8
    double m_dWinterOutRH;   // percent; 37
    double m_dWinterInTdb;   // degC; 20.0
    double m_dWinterInRH;    // percent; 60
};
