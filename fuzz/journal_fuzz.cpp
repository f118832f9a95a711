// Journals of any bytes: each is refused, or read on a survey that is whole behind it, whatever it claims. The check of
// entries would keep nearly all of them out, so what is behind it is also tried with a check of our own.
#include "session/journal_recovery.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

Survey SmallSurvey() {
    SurveyBuilder builder;
    const int q = builder.Question(u"職業"_s, u""_s, 2, {u"会社員"_s, u"その他"_s});
    builder.Status(q, 2, {kEssay, kOther});
    for (int i = 0; i < 3; ++i)
        builder.Sample({{1}});
    return builder.Get();
}

void Restore(QByteArrayView bytes) {
    const auto contents = DecodeJournal(bytes);
    if (!contents) return;
    ScriptedInterface user;
    SurveySession session(user, QString());
    session.survey = SmallSurvey();
    RestoreJournal(session, {.Path = u"/nowhere"_s, .Contents = *contents});
    const QString fault = RoundTripFault(WriteSurveyBytes(session.survey));
    if (!fault.isEmpty()) qFatal("%s", qPrintable(fault));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    Restore(bytes);
    // Contents are separated by "||".
    JournalFramer framer;
    QByteArray framed = kJournalMagic.toByteArray() + framer.Frame(JournalContent(JournalHeader{}));
    QByteArray rest = bytes.toByteArray();
    while (!rest.isEmpty()) {
        const qsizetype end = rest.indexOf("||");
        framed += framer.Frame(end < 0 ? rest : rest.first(end));
        rest = end < 0 ? QByteArray() : rest.sliced(end + 2);
    }
    Restore(framed);
    return 0;
}
