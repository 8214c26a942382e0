// CKyGStyleSetting: the ten style records every element draws with. Elements copy the record
// they need at the start of each draw, so a change shows at the next redraw.
#pragma once

#include <kygraph/KyExport.h>
#include <kygraph/KyLineStyle.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyPntStyle.h>
#include <kygraph/String.h>

class KYGRAPH_API CKyGStyleSetting : public CKyObject {
public:
    CKyGStyleSetting();
    CKyGStyleSetting(const CKyGStyleSetting& other);
    CKyGStyleSetting& operator=(const CKyGStyleSetting& other);
    ~CKyGStyleSetting() override;

    CString toString() const override;

    tagKyLineStyle m_SameDStyle;    // constant-d lines, frame d-axis title and body edges; RGB(111, 127, 63)
    tagKyLineStyle m_SameHStyle;    // constant-h lines and the enthalpy ruler; RGB(63, 111, 63)
    tagKyLineStyle m_SameTStyle;    // isotherms and the frame's temperature title; RGB(255, 191, 127)
    tagKyLineStyle m_SameRHStyle;   // relative-humidity curves; RGB(103, 82, 165)
    tagKyLineStyle m_SameASStyle;   // heat-moisture-ratio lines; RGB(0, 41, 165), width 2
    tagKyLineStyle m_ProcessStyle;  // process paths; RGB(255, 0, 0), width 2
    tagKyPntStyle m_StaPntStyle;    // state-point markers; record defaults (green, 5.0, 7)
    tagKyLineStyle m_ASChartStyle;  // protractor and moisture-content ruler; RGB(128, 128, 128)
    tagKyLineStyle m_FrameStyle;    // frame border and title block; grey, width 2, text height 10
    tagKyLineStyle m_SpareStyle;    // read by nothing; grey
};
