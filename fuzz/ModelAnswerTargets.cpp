// What comes back from the model, as a body and as its text.

#include "FuzzTargets.h"
#include "GeminiAnswer.h"
#include "ParsedFeedback.h"

namespace tarne::fuzz {

namespace {

void requireSections(const QString &text) {
    const ParsedFeedback parsed = parseFeedbackText(text);
    if (parsed == ParsedFeedback{.overallAssessment = text})
        return;
    qsizetype size = 0;
    for (const QString &section :
         {parsed.overallAssessment, parsed.patternsObserved, parsed.advice, parsed.motivation}) {
        require(section.trimmed() == section, "a section is trimmed");
        require(!section.contains(u'\n'), "a section is one line");
        size += section.size();
    }
    require(size > 0, "some section has a text");
    require(size < text.size(), "a section holds nothing but the text's own words");
}

} // namespace

void feedback(Input input) {
    requireSections(QString::fromUtf8(input));
}

void geminiAnswer(Input input) {
    const QByteArray body = input.toByteArray();
    const GeminiResult result = readGeminiAnswer(body);
    require(readGeminiAnswer(body + " \n") == result, "white space behind a body means nothing");
    const auto *text = std::get_if<QString>(&result);
    const QString &told = text ? *text : std::get<GeminiError>(result).localizedDescription;
    require(told.isValidUtf16(), "what is told is a text");
    if (text)
        requireSections(*text);
}

} // namespace tarne::fuzz
