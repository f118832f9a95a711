#include "design/editor_rig.h"

#include <algorithm>
#include <tuple>

#include "support/qt_printers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

auto Fields(const QuestionRec& question) {
    return std::tie(question.Text, question.Anum, question.ChoiceCount, question.LabelKind);
}

auto Fields(const ChoiceRec& choice) {
    return std::tie(choice.Text, choice.CodeText, choice.Low, choice.High, choice.Status);
}

auto Fields(const AnswerLayoutRec& layout) {
    return std::tie(layout.Anum, layout.BitStart, layout.BitWidth, layout.EssayStart);
}

}  // namespace

bool SameDefinition(const Survey& one, const Survey& other) {
    const auto same = [](const auto& a, const auto& b) { return Fields(a) == Fields(b); };
    bool all = one.QuestionCount == other.QuestionCount && one.SampleBytes == other.SampleBytes &&
               same(one.QIdx[one.QuestionCount], other.QIdx[other.QuestionCount]);
    for (int q = 0; q < kMaxQuestions && all; ++q)
        all = same(one.Questions[q], other.Questions[q]) && same(one.QIdx[q], other.QIdx[q]) &&
              std::ranges::equal(one.Choices.Column(q), other.Choices.Column(q), same) &&
              std::ranges::equal(one.QLimit.Column(q), other.QLimit.Column(q));
    return all;
}

QStringList SamplesOf(const Survey& survey) {
    QStringList lines;
    const SampleList& samples = survey.Samples;
    for (qint32 dno = 0; dno < samples.Count(); ++dno) {
        const QByteArray packed(reinterpret_cast<const char*>(samples.Packed(dno)), samples.SampleBytes());
        QString line = u"%1 %2 %3"_s.arg(samples.IDno(dno)).arg(samples.PreLimitBits(dno));
        line = line.arg(QString::fromLatin1(packed.toHex()));
        for (const Essay& essay : samples.Essays(dno))
            line += u" %1:%2"_s.arg(essay.slot).arg(essay.text);
        lines += line;
    }
    return lines;
}

}  // namespace quibra
