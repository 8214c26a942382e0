// Strings, number formatting, containers and colours: the value types every label and every
// point list of the chart passes through.
#include <kygraph/Map.h>
#include <kygraph/Point.h>
#include <kygraph/ResourceModule.h>
#include <kygraph/String.h>
#include <kygraph/StringUtils.h>
#include <kygraph/VoArray.h>
#include <kygraph/WinTypes.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

TEST(NumberFormatting, RoundsToNearestAndNeverPrintsMinusZero)
{
    struct Row {
        double value;
        int decimals;
        const wchar_t* text;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const Row rows[] = {
        {0.45 * 100, 0, L"45"},       // 44.99999999999999: the RH label must read 45
        {0.15 * 100, 0, L"15"},
        {2.5, 1, L"2.5"},
        {15.0, 1, L"15.0"},
        {7.0, 0, L"7"},               // no decimal point for 0 decimals
        {1.005, 2, L"1.01"},          // 1.00499999999999989...: labels round as written
        {-0.0, 1, L"0.0"},
        {-0.04, 1, L"0.0"},
        {-0.4, 0, L"0"},
        {-2.5, 1, L"-2.5"},
        {-12.96, 1, L"-13.0"},
        {1e300, 0, nullptr},          // only checked not to overflow the buffer
        {std::nan(""), 1, L"NaN"},
        {inf, 2, L"Inf"},
        {-inf, 0, L"-Inf"},
        {3.14159, -4, L"3"},          // negative decimals count as 0
    };
    for (const Row& r : rows) {
        CString s = StringUtils::DblToStr(r.value, r.decimals);
        if (r.text) EXPECT_EQ(s, r.text) << r.value << " with " << r.decimals << " decimals";
        else EXPECT_EQ(s.GetLength(), 301);
    }
    EXPECT_EQ(StringUtils::IntToStr(INT_MIN), L"-2147483648");
    EXPECT_EQ(StringUtils::IntToStr(0), L"0");
}

TEST(FrameworkString, FormatsAndConvertsUtf8BothWays)
{
    CString s;
    s.Format(L"大气压 %.0fPa/%.0fmmHg", 101325.0, 760.0);
    EXPECT_EQ(s, L"大气压 101325Pa/760mmHg");
    s.AppendFormat(L" %s=%d", L"n", 7);
    EXPECT_EQ(s, L"大气压 101325Pa/760mmHg n=7");

    const char* utf8 = "湿空气焓湿图 ε=∞ 𝛆";  // BMP and astral characters
    EXPECT_EQ(CString(utf8).ToUtf8(), utf8);
    EXPECT_EQ(CString::FromUtf8("a\xff" "b").str(), std::wstring(L"a\xFFFD" L"b"));
    EXPECT_EQ(CString::FromUtf8("\xe6\xb9").ToUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBD");  // truncated sequence
    EXPECT_EQ(CString(static_cast<const char*>(nullptr)), L"");

    CString t(L"abc");
    EXPECT_EQ(t.GetAt(-1), L'\0');
    EXPECT_EQ(t[3], L'\0');
    EXPECT_EQ(t.Mid(1), L"bc");
    EXPECT_EQ(t.Left(-5), L"");
}

TEST(FrameworkString, LoadsOnlyFromTheCurrentModule)
{
    static const KyStringEntry entries[] = {{7, "七"}, {8, "eight"}};
    CResourceModule module("test", entries, 2);
    CString s(L"kept");
    EXPECT_FALSE(s.LoadString(7));
    EXPECT_EQ(s, L"kept");
    {
        CResourceModule::Scope scope(module);
        EXPECT_TRUE(s.LoadString(7));
        EXPECT_EQ(s, L"七");
        EXPECT_FALSE(s.LoadString(9));
        EXPECT_EQ(s, L"七");
    }
    EXPECT_FALSE(s.LoadString(8));
}

TEST(FrameworkContainers, VoArrayThrowsOutsideItsCount)
{
    CVoArray<CPoint> pts;
    EXPECT_THROW(pts[0], CInvalidArgException);
    pts.Add(CPoint(1, 2));
    EXPECT_EQ(pts[0], CPoint(1, 2));
    EXPECT_THROW(pts[1], CInvalidArgException);
    EXPECT_THROW(pts.GetAt(-1), CInvalidArgException);
    EXPECT_THROW(pts[INT_MIN], CInvalidArgException);
}

TEST(FrameworkContainers, MapIteratesInInsertionOrderAndLookupNeverInserts)
{
    CMap<CString, const wchar_t*, int, int> map;
    EXPECT_EQ(map.GetStartPosition(), nullptr);
    map.SetAt(L"c", 3);
    map.SetAt(L"a", 1);
    map.SetAt(L"b", 2);
    map.SetAt(L"a", 10);  // replaces, keeps its place
    int v = -1;
    EXPECT_FALSE(map.Lookup(L"z", v));
    EXPECT_EQ(v, -1);
    EXPECT_EQ(map.GetCount(), 3);

    ASSERT_TRUE(map.RemoveKey(L"c"));
    EXPECT_FALSE(map.RemoveKey(L"c"));
    CString seen;
    for (POSITION pos = map.GetStartPosition(); pos;) {
        CString key;
        int value = 0;
        map.GetNextAssoc(pos, key, value);
        seen.AppendFormat(L"%s=%d;", key.GetString(), value);
    }
    EXPECT_EQ(seen, L"a=10;b=2;");
}

TEST(FrameworkValues, ColoursAndSaturatingPointArithmetic)
{
    const COLORREF c = RGB(0x12, 0x34, 0x56);
    EXPECT_EQ(c, 0x00563412u);
    EXPECT_EQ(GetRValue(c | 0xFF000000u), 0x12);  // the high byte is ignored
    EXPECT_EQ(GetGValue(c), 0x34);
    EXPECT_EQ(GetBValue(c), 0x56);

    EXPECT_EQ(CPoint(), CPoint(0, 0));
    EXPECT_EQ(CPoint(1, 2) + CSize(3, 4), CPoint(4, 6));
    EXPECT_EQ(CPoint(5, 5) - CPoint(2, 7), CSize(3, -2));
    EXPECT_EQ(CPoint(INT_MAX, INT_MIN) + CSize(1, -1), CPoint(INT_MAX, INT_MIN));
    EXPECT_EQ(-CPoint(INT_MIN, 0), CPoint(INT_MAX, 0));
}
