// Shared set-up of the chart tests: the singletons are process-wide, so every test that
// changes them puts them back.
#pragma once

#include <kygraph/KyGChart.h>
#include <kygraph/KyGChartSetting.h>

#include <gtest/gtest.h>

class ChartFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        chart->AttachDarwWnd(nullptr);
        chart->SetOrigin(CPoint(0, 0));
        set->m_dDrawScale = 1.0;
    }
    void TearDown() override
    {
        chart->AttachDarwWnd(nullptr);
        chart->SetOrigin(CPoint(0, 0));
        set->m_RangeSetting = saved.m_RangeSetting;
        set->m_StyleSetting = saved.m_StyleSetting;
        set->m_DrawHstSetting = saved.m_DrawHstSetting;
        set->m_OverlaySetting = saved.m_OverlaySetting;
        set->m_dLeftMargin = saved.m_dLeftMargin;
        set->m_dRightMargin = saved.m_dRightMargin;
        set->m_dBottomMargin = saved.m_dBottomMargin;
        set->m_dTopMargin = saved.m_dTopMargin;
        set->m_dTLength = saved.m_dTLength;
        set->m_dDLength = saved.m_dDLength;
        set->m_dDrawScale = 1.0;
    }

    CKyGChart* chart = CKyGChart::GetKyGChart();
    CKyGChartSetting* set = CKyGChartSetting::GetKyGChartSetting();
    CKyGChartSetting saved{*CKyGChartSetting::GetKyGChartSetting()};
};
