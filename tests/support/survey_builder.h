// Builds small surveys for tests: questions first, then samples, which get the IDs 1, 2, ...
#pragma once

#include <initializer_list>
#include <vector>

#include "core/survey.h"

namespace quibra {

// One answer of a sample, with its text where the choice bears one.
struct GivenAnswer {
    GivenAnswer(int choice) : Cno(static_cast<qint16>(choice)) {}
    GivenAnswer(int choice, QString text) : Cno(static_cast<qint16>(choice)), essay(std::move(text)) {}

    qint16 Cno;
    QString essay;
};

class SurveyBuilder {
  public:
    SurveyBuilder();

    // `choices` counts from 1; 無回答 stands in front of them. Gives the question's number.
    int Question(const QString& name, const QString& body, int anum, const QStringList& choices);
    void Status(int q, int c, std::initializer_list<StatusBit> bits);
    void QuestionLimit(int q, std::initializer_list<LimitLine> lines);
    void PreLimit(int slot, std::initializer_list<LimitLine> lines);
    // Lines of the answer sheet, by question and answer; without any each question has its own. Questions behind the
    // last line's have lines of their own.
    void Lines(std::initializer_list<std::pair<int, int>> starts = {{0, 0}});
    // Answers by question; questions behind the last one given stay unanswered.
    void Sample(const std::vector<std::vector<GivenAnswer>>& answers);

    static LimitLine Line(int kind, int q, int c, int rank = 0);

    // Recalculates the layout when no sample has been added yet.
    Survey& Get();

  private:
    Survey survey_;
    bool laidOut_ = false;
};

}  // namespace quibra
