// What texts lose on their way into a survey file, which holds code page 932: said where they come in, before anything
// is stored.
#pragma once

#include "core/code_page.h"
#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

struct TextLosses {
    QString place;  // in the user's words
    QList<CodePageLoss> losses;
};

// The words for the place of an essay: "Q6 の選択肢 7 の記述".
QString EssayPlace(int q, int choice);

// "Q6 の選択肢 7 の記述：1文字目「😀」は「?」になります。"; empty when nothing is lost.
QString LossWords(const TextLosses& text);

// Those of all texts of a survey; the places are named as in its JSON form ("Questions[3].Choices[1].Text").
QList<TextLosses> SurveyLosses(const Survey& survey);

// Tells the user of them. What would only come nearest is told, what would be lost is asked about: false when the
// user doesn't want that, or nobody is there to want it.
bool AgreesToLosses(UserInterface& ui, const QList<TextLosses>& texts);

}  // namespace quibra
