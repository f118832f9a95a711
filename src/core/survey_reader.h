// Reads the survey out of the bytes of a file, in the order of the bytes; docs/FILE_FORMAT.md tells them. Knows nothing
// of the user: what is to be said and done between the steps is the caller's (session/survey_file.cpp).
//
// Nothing in the bytes is trusted. Each function may throw RuntimeError: 62 where they end too soon, 9 for a number
// beyond the arrays of a survey, 6 for one beyond 16 bits, 5 for a question without choices.
#pragma once

#include <QString>
#include <functional>

#include "core/binary_file.h"
#include "core/survey.h"
#include "core/survey_format.h"

namespace quibra {

// Shows how far a file has been read or written; false once the user has stopped it.
using ProgressReport = std::function<bool(const QString& text, double fraction)>;

// Reads lead word and magic of a file of any kind. 0 when it is none of ours or too short for a magic.
int ReadMagic(ByteReader& in);

// Reads a survey behind its magic, into one that is new: NewSurveyHead and NewSurveyBody have run. The steps are called
// in the order of their declaration. The reader and the survey must outlive it.
class SurveyReader {
  public:
    // `code` is the generation, kSurvey1001 to kSurvey1003.
    SurveyReader(ByteReader& in, int code, Survey& survey) : in_(in), code_(code), survey_(survey) {}

    void ReadTitleAndPassword();
    void ReadLockLevelAndEditor();
    // Questions, conditions, line layout and flags. The layout is computed and the sample list made ready.
    void ReadDefinition();
    // The samples in the order of the file, at most 100 reports. False when stopped: then all samples are there, those
    // not yet read are empty.
    bool ReadSamples(const ProgressReport& report);
    // What stands behind the samples, as far as it is there.
    void ReadTail();

  private:
    QString ReadText();
    void ReadLines(std::span<LimitLine, 16> lines);
    void ReadQuestion(int q);
    void ReadLineStart();
    void ReadSample(qint32 dno);
    void ReadEssays1001(qint32 dno);
    void ReadEssays(qint32 dno, int count);
    std::vector<qint16> SlotsOfAnswers(qint32 dno) const;
    bool AtOldest() const;
    // Bytes of a sample without texts.
    int ShortestSample() const;

    ByteReader& in_;
    const int code_;
    Survey& survey_;
};

}  // namespace quibra
