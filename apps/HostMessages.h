// HostMessages: the program's and the viewer's messages in the chosen language. They are
// written in English; in Chinese the phrases they are built of are replaced, one by one, by
// their translations from a table, so a message keeps the names and numbers it quotes.
#pragma once

#include <kygraph/KyGraphModule.h>

#include <string>

class HostMessages {
public:
    // message in the language of HostLanguage::Messages().
    static std::string Localize(const std::string& message);
    // message in language.
    static std::string In(KyGraphLanguage language, const std::string& message);
};
