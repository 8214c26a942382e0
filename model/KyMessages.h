// CKyMessages: the language of the state model's error texts. The texts are written in
// Chinese where they are raised; in English each is looked up, by its format, in a table of
// translations with the same conversions in the same order. The host's language choice
// (KyGraphSetLanguage) sets it.
#pragma once

#include <kygraph/KyExport.h>

class KYARITHM_API CKyMessages {
public:
    static void SetEnglish(bool english);
    static bool IsEnglish();
    // The format to use for fmt in the current language: fmt itself in Chinese, and in
    // English its translation (fmt when it has none).
    static const wchar_t* Localize(const wchar_t* fmt);
    // The English format for fmt, whatever the current language; fmt when there is none.
    static const wchar_t* English(const wchar_t* fmt);
};
