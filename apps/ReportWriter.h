// ReportWriter: the design report of a scene as a PDF: the chart on the first page, then a
// table of every named state (t, φ, d, h, wet bulb, dew point) and one of every process step
// with its loads (Δt, Δd, Δh, ε, SHR, sensible, latent and total heat, moisture). Its texts
// are kept in one table in Chinese and English.
#pragma once

#include "ProcessLoads.h"

#include <kygraph/KyStaPnt.h>

#include <string>
#include <vector>

class ReportWriter {
public:
    enum Language { Chinese, English };

    struct Content {
        std::string chartPng;          // the chart as PNG bytes
        std::vector<CKyStaPnt> states;  // named states, in scene order
        std::vector<ProcessLoads::Step> steps;
        double pressure = 0;           // Pa
        std::string title;             // e.g. the scene's file name
    };

    // The report as PDF bytes. False with a one-line error when the chart image cannot be read
    // or Cairo cannot make the document.
    static bool Write(const Content& content, Language language, std::string& pdf, std::string& error);

    // "zh" / "en" (also "chinese" / "english"); false for anything else.
    static bool LanguageOf(const std::string& key, Language& language);
};
