#include "core/survey_losses.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

class LossList {
  public:
    // `place` is made only for a text that loses something: there may be millions that lose nothing.
    template <typename Place>
    void Look(const QString& text, Place place) {
        QList<CodePageLoss> losses = CodePageLosses(text);
        if (!losses.isEmpty()) texts_.append({place(), std::move(losses)});
    }
    QList<TextLosses> Take() { return std::move(texts_); }

  private:
    QList<TextLosses> texts_;
};

}  // namespace

QString EssayPlace(int q, int choice) {
    return u"Q%1 の選択肢 %2 の記述"_s.arg(q + 1).arg(choice);
}

QString LossWords(const TextLosses& text) {
    return text.losses.isEmpty() ? QString() : text.place + u"："_s + CodePageLossText(text.losses);
}

QList<TextLosses> SurveyLosses(const Survey& survey) {
    LossList list;
    list.Look(survey.Title, [] { return u"Title"_s; });
    list.Look(survey.Editor, [] { return u"Editor"_s; });
    list.Look(survey.DistName, [] { return u"DistName"_s; });
    list.Look(survey.ExternDLL, [] { return u"ExternDLL"_s; });
    for (int q = 0; q < survey.QuestionCount; ++q) {
        list.Look(survey.Questions[q].Text, [q] { return u"Questions[%1].Text"_s.arg(q); });
        for (int c = 0; c < survey.Questions[q].ChoiceCount; ++c) {
            const auto place = [q, c](const QString& key) {
                return u"Questions[%1].Choices[%2].%3"_s.arg(q).arg(c).arg(key);
            };
            list.Look(survey.Choices(c, q).Text, [&] { return place(u"Text"_s); });
            list.Look(survey.Choices(c, q).CodeText, [&] { return place(u"CodeText"_s); });
        }
    }
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
        for (const Essay& essay : survey.Samples.Essays(dno))
            list.Look(essay.text, [&] { return u"Samples[%1].Essays.%2"_s.arg(dno).arg(essay.slot); });
    return list.Take();
}

bool AgreesToLosses(UserInterface& ui, const QList<TextLosses>& texts) {
    constexpr qsizetype kMostPlaces = 10;
    QStringList lines;
    bool lost = false;
    for (const TextLosses& text : texts) {
        if (text.losses.isEmpty()) continue;
        lost = lost || std::ranges::any_of(text.losses, &CodePageLoss::IsLost);
        lines += LossWords(text);
    }
    if (lines.isEmpty()) return true;
    if (lines.size() > kMostPlaces)
        lines = lines.first(kMostPlaces) << u"ほか%1か所。"_s.arg(lines.size() - kMostPlaces);
    const QString told = lines.join(u"\r\n"_s);
    if (lost)
        return ui.Message(told + u"\r\nこのまま保存しますか？"_s, kYesNo + kWarning + kSecondDefault) == Answer::Yes;
    ui.Message(told, kInformation);
    return true;
}

}  // namespace quibra
