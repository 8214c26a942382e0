// The state model's error texts in English: every text the model raises has a translation with
// the same conversions in the same order (a swapped %ls and %d would read the wrong argument),
// and a refusal made while English is chosen reads in English.
#include <kygraph/KyMessages.h>
#include <kygraph/KyStaPnt.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

bool HasChinese(const std::wstring& s)
{
    for (wchar_t c : s)
        if (c >= 0x4E00 && c <= 0x9FFF) return true;
    return false;
}

std::string Conversions(const std::wstring& fmt)
{
    std::string out;
    for (size_t i = 0; i + 1 < fmt.size(); ++i)
        if (fmt[i] == L'%') {
            size_t j = i + 1;
            while (j < fmt.size() && std::wstring(L"lhzj0123456789.-+ #").find(fmt[j]) != std::wstring::npos) ++j;
            if (j < fmt.size()) out += std::string(fmt.begin() + i, fmt.begin() + j + 1) + " ";
            i = j;
        }
    return out;
}

std::wstring Widen(const std::string& utf8)
{
    std::wstring out;
    for (size_t i = 0; i < utf8.size();) {
        const unsigned char c = utf8[i];
        const int n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
        char32_t v = n == 1 ? c : c & (0x3F >> (n - 1));
        for (int k = 1; k < n && i + k < utf8.size(); ++k) v = (v << 6) | (utf8[i + k] & 0x3F);
        out += static_cast<wchar_t>(v);
        i += n;
    }
    return out;
}

}  // namespace

TEST(Messages, EveryTextOfTheModelHasAnEnglishFormWithTheSameConversions)
{
    // Wide literals (adjacent ones joined) of the model's sources that hold Chinese.
    const std::regex literal(R"re(L"((?:[^"\\]|\\.)*)"(?:\s*L"((?:[^"\\]|\\.)*)")?)re");
    int checked = 0;
    for (const auto& e : std::filesystem::directory_iterator(std::string(KY_SOURCE_DIR) + "/model")) {
        if (e.path().extension() != ".cpp" || e.path().filename() == "KyMessages.cpp") continue;
        std::ifstream in(e.path());
        std::stringstream ss;
        ss << in.rdbuf();
        const std::string text = ss.str();
        for (std::sregex_iterator m(text.begin(), text.end(), literal), end; m != end; ++m) {
            const std::wstring zh = Widen((*m)[1].str() + (*m)[2].str());
            if (!HasChinese(zh)) continue;
            ++checked;
            const std::wstring en = CKyMessages::English(zh.c_str());
            EXPECT_FALSE(HasChinese(en)) << e.path().filename() << ": no English for a text of the model";
            EXPECT_EQ(Conversions(en), Conversions(zh)) << e.path().filename();
        }
    }
    EXPECT_GT(checked, 50);
}

TEST(Messages, ARefusalReadsInTheLanguageChosenWhenItWasMade)
{
    const std::wstring en =
        L"The state's parameters are not valid (dry bulb 25 °C, dew point 30 °C): the dew point is above the dry bulb (supersaturated).";
    for (bool english : {false, true}) {
        CKyMessages::SetEnglish(english);
        CKyStaPnt p;
        EXPECT_FALSE(p.SetBy_TdbandTdp(25.0, 30.0));
        // The text is written when read: neither a change of language since nor a copy
        // changes it.
        CKyMessages::SetEnglish(!english);
        const CKyStaPnt copy = p;
        CKyStaPnt assigned;
        assigned = p;
        for (const CKyStaPnt* q : std::initializer_list<const CKyStaPnt*>{&p, &copy, &assigned}) {
            const std::wstring text = q->GetLastErrorString().GetString();
            EXPECT_EQ(HasChinese(text), !english) << english;
            if (english) EXPECT_EQ(text, en);
            EXPECT_EQ(q->GetLastErrorStatus(), p.GetLastErrorStatus());
        }
        EXPECT_NE(p.GetLastErrorStatus(), Ky::ERR_OK);
        // What comes after a refusal replaces its text: a success, or a text of the host's.
        EXPECT_TRUE(copy.GetLastErrorString() == p.GetLastErrorString());
        EXPECT_TRUE(p.SetBy_TdbandRH(25.0, 0.5));
        EXPECT_TRUE(p.GetLastErrorString().IsEmpty());
        assigned.SetLastErrorString(L"host");
        EXPECT_TRUE(assigned.GetLastErrorString() == CString(L"host"));
    }
    CKyMessages::SetEnglish(false);
}
