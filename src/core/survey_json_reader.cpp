#include <QIODevice>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <streambuf>
#include <string_view>

#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/strict_json.h"
#include "core/survey_json.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// What one string of a survey file can hold: its length is a 16-bit field.
constexpr qsizetype kMaxFileText = std::numeric_limits<qint16>::max();
constexpr int kMaxLines = 14;  // a list's closing line needs one of the 15
constexpr QStringView kNoAnswerText = u"無回答";

bool FitsFile(const QString& text) {
    return text.size() * 2 <= kMaxFileText || EncodeCodePage(text).size() <= kMaxFileText;
}

[[noreturn]] void RefuseLength(const QString& place) {
    RefuseJson(kErrorOverflow, place, u"文字列が長すぎます（%1バイトまで）"_s.arg(kMaxFileText));
}

QString FileText(const Json& value, const QString& place) {
    QString text = JsonText(value, place);
    if (!FitsFile(text)) RefuseLength(place);
    return text;
}

void ReadFileText(JsonFields& fields, const char* key, QString& target) {
    if (const Json* value = fields.Find(key)) target = FileText(*value, fields.PlaceOf(key));
}

[[noreturn]] void RefuseRange(const QString& place, qint64 low, qint64 high) {
    RefuseJson(kErrorOverflow, place, u"%1から%2までの整数ではありません"_s.arg(low).arg(high));
}

void ReadLines(const Json& value, const QString& place, std::span<LimitLine, 16> column) {
    std::fill(column.begin(), column.end(), LimitLine{});
    const Json& list = JsonList(value, place, 0, kMaxLines);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const QString linePlace = ElementPlace(place, qsizetype(i));
        const Json& pair = JsonList(list[i], linePlace, 2, 2);
        LimitLine& line = column[i + 1];
        line.a = JsonInteger16(pair[0], ElementPlace(linePlace, 0));
        line.b = JsonInteger16(pair[1], ElementPlace(linePlace, 1));
        if (line.a == 0) RefuseJson(kErrorSubscript, ElementPlace(linePlace, 0), u"0 は条件の終わりの印です"_s);
    }
}

ChoiceRec NoAnswer() {
    ChoiceRec choice;
    choice.Text = kNoAnswerText.toString();
    choice.Status = 1 << kExclusive;
    return choice;
}

void ReadChoice(const Json& value, const QString& place, Survey& survey, int q, int c) {
    JsonFields fields(value, place);
    ChoiceRec& choice = survey.Choices(c, q);
    choice = ChoiceRec();
    ReadFileText(fields, "Text", choice.Text);
    fields.Read("Low", choice.Low);
    fields.Read("High", choice.High);
    ReadFileText(fields, "CodeText", choice.CodeText);
    fields.Read("Status", choice.Status);
    fields.RefuseOthers();
    if (c == 0) {
        // Every question has it, no file holds it. A list that begins with another choice lacks it.
        if (choice.Text != kNoAnswerText) RefuseJson(kErrorTypeMismatch, place, u"選択肢0は「無回答」です"_s);
        choice = NoAnswer();
        return;
    }
    if (choice.Text.contains(u'\r') || choice.CodeText.contains(u'\r'))
        RefuseJson(kErrorTypeMismatch, place, u"改行(CR)は書けません"_s);
    if (!FitsFile(ChoiceToFile(survey, q, c))) RefuseLength(place);
}

void ReadQuestion(const Json& value, const QString& place, Survey& survey, int q) {
    JsonFields fields(value, place);
    QuestionRec& question = survey.Questions[q];
    QString text;
    ReadFileText(fields, "Text", text);
    if (text.size() > kQuestionTextLength)
        RefuseJson(kErrorOverflow, fields.PlaceOf("Text"), u"%1文字を超えています"_s.arg(kQuestionTextLength));
    question.SetText(text);

    const QString choicesPlace = fields.PlaceOf("Choices");
    const Json& choices = JsonList(fields.Need("Choices"), choicesPlace, 1, kMaxChoices);
    question.ChoiceCount = static_cast<qint16>(choices.size());
    fields.CheckCount("ChoiceCount", question.ChoiceCount);
    for (int c = 0; c < question.ChoiceCount; ++c)
        ReadChoice(choices[std::size_t(c)], ElementPlace(choicesPlace, c), survey, q, c);

    question.Anum = 1;
    if (const Json* anum = fields.Find("Anum"))
        question.Anum =
            static_cast<qint16>(JsonInteger(*anum, fields.PlaceOf("Anum"), 1, std::max(1, question.ChoiceCount - 1)));
    question.LabelKind = 0;
    fields.Read("LabelKind", question.LabelKind);

    const Json* limit = fields.Find("QLimit");
    ReadLines(limit != nullptr ? *limit : Json::array(), fields.PlaceOf("QLimit"), survey.QLimit.Column(q));
    fields.RefuseOthers();
}

void ReadLineStart(const Json& value, Survey& survey) {
    const Json& list = JsonList(value, u"LineStart"_s, 2, kLineStartEntries);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const QString place = ElementPlace(u"LineStart"_s, qsizetype(i));
        survey.LineStart[int(i)] = JsonInteger16(list[i], place);
        const bool repeats = i > 0 && survey.LineStart[int(i)] == survey.LineStart[int(i) - 1];
        if (repeats != (i > 0 && i + 1 == list.size()))
            RefuseJson(kErrorSubscript, place, u"前と同じ値は最後に一度だけです"_s);
    }
    for (int i = int(list.size()); i < kLineStartEntries; ++i)
        survey.LineStart[i] = survey.LineStart[i - 1];
}

void ReadDefinition(const Json& root, qint64 sampleCount, bool hasSamples, Survey& survey) {
    JsonFields fields(root, QString());
    ReadFileText(fields, "Title", survey.Title);
    ReadFileText(fields, "Editor", survey.Editor);
    ReadFileText(fields, "Password", survey.Password);
    // What the window for it could never take would lock the survey for ever.
    const bool typeable = std::ranges::all_of(survey.Password, [](QChar c) { return c >= u'a' && c <= u'z'; });
    if (!typeable || survey.Password.size() > kMaxPasswordLength)
        RefuseJson(kErrorTypeMismatch, fields.PlaceOf("Password"),
                   u"半角の英小文字%1字まででなければいけません"_s.arg(kMaxPasswordLength));
    fields.Read("LockLevel", survey.LockLevel, 0, 2);
    fields.Read("CorrectFlags", survey.CorrectFlags);
    ReadFileText(fields, "DistName", survey.DistName);
    fields.Read("DistQno", survey.DistQno);
    fields.Read("EssayFull", survey.EssayFull);
    ReadFileText(fields, "ExternDLL", survey.ExternDLL);

    if (const Json* questions = fields.Find("Questions")) {
        const Json& list = JsonList(*questions, u"Questions"_s, 1, kMaxQuestions);
        survey.QuestionCount = static_cast<qint16>(list.size());
        for (int q = 0; q < survey.QuestionCount; ++q)
            ReadQuestion(list[std::size_t(q)], ElementPlace(u"Questions"_s, q), survey, q);
    } else {
        survey.Choices(0, 0) = NoAnswer();  // that of a new survey differs
    }
    fields.CheckCount("QuestionCount", survey.QuestionCount);

    if (const Json* slots = fields.Find("PreLimit")) {
        const Json& list = JsonList(*slots, u"PreLimit"_s, 0, kPreLimitSlots);
        for (std::size_t slot = 0; slot < list.size(); ++slot)
            ReadLines(list[slot], ElementPlace(u"PreLimit"_s, qsizetype(slot)), survey.PreLimit.Column(int(slot)));
    }
    if (const Json* starts = fields.Find("LineStart")) ReadLineStart(*starts, survey);
    if (const Json* flags = fields.Find("LineFlag")) {
        const std::size_t count = std::size_t(LineStartEnd(survey) - 1);
        const Json& list = JsonList(*flags, u"LineFlag"_s, count, count);
        for (std::size_t i = 0; i < count; ++i) {
            survey.LineFlag[int(i)] = JsonBoolean(list[i], ElementPlace(u"LineFlag"_s, qsizetype(i)));
        }
    }
    // A definition alone may tell how many samples its survey had.
    if (hasSamples)
        fields.CheckCount("SampleCount", sampleCount);
    else
        fields.Find("SampleCount");
    fields.Find("Samples");
    fields.RefuseOthers();
}

// The parser's view of a device.
class DeviceBuffer : public std::streambuf {
  public:
    explicit DeviceBuffer(QIODevice& device) : device_(device) {}

  protected:
    int_type underflow() override {
        const qint64 size = device_.read(buffer_.get(), kBufferSize);
        if (size < 0) throw RuntimeError(kErrorDeviceIo, device_.errorString());
        if (size == 0) return traits_type::eof();
        setg(buffer_.get(), buffer_.get(), buffer_.get() + size);
        return traits_type::to_int_type(*gptr());
    }

  private:
    static constexpr qint64 kBufferSize = 1 << 16;

    QIODevice& device_;
    const std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
};

// The whole text but its samples, which are only counted.
Json ParseDefinition(QIODevice& in, qint64& sampleCount, bool& hasSamples) {
    bool inSamples = false;
    JsonKeys keys;
    const Json::parser_callback_t keep = [&](int depth, Json::parse_event_t event, Json& parsed) {
        const bool isSample = inSamples && depth >= (event == Json::parse_event_t::key ? 2 : 1);
        if (event == Json::parse_event_t::object_start && !isSample) keys.Open();
        if (event == Json::parse_event_t::object_end && !isSample) keys.Close();
        if (event == Json::parse_event_t::key && !isSample) keys.Take(parsed.get_ref<const std::string&>());
        if (event == Json::parse_event_t::key && depth == 1) {
            inSamples = parsed == "Samples";
            if (!inSamples) return true;
            hasSamples = true;
            return false;
        }
        // Only the starts of what is left out are reported.
        if (inSamples && depth == 2 && event == Json::parse_event_t::object_start) ++sampleCount;
        return true;
    };
    DeviceBuffer buffer(in);
    std::istream stream(&buffer);
    try {
        return Json::parse(stream, keep);
    } catch (const Json::exception& error) {
        RefuseJsonText(error);
    }
}

// Takes the samples out of the text as they go by; everything else of the text is passed over, having been read
// before. Each value arrives at one of the levels below.
class SampleReader : public nlohmann::json_sax<Json> {
  public:
    explicit SampleReader(Survey& survey) : survey_(survey) {}

    bool null() override { return Unexpected(); }
    bool boolean(bool) override { return Unexpected(); }
    bool number_integer(number_integer_t value) override { return TakeInteger(value); }
    bool number_unsigned(number_unsigned_t value) override {
        if (value > quint64(std::numeric_limits<qint64>::max())) return TakeInteger(std::nullopt);
        return TakeInteger(qint64(value));
    }
    bool number_float(number_float_t value, const string_t&) override {
        return std::abs(value) >= std::ldexp(1.0, 63) ? TakeInteger(std::nullopt) : Unexpected();
    }
    bool binary(binary_t&) override { return Unexpected(); }
    bool string(string_t& value) override {
        if (skipped_ > 0 || level_ != Level::Essays) return Unexpected();
        QString text = ToQString(value);
        if (!FitsFile(text)) RefuseLength(Place());
        if (!text.isEmpty()) essays_.push_back({essaySlot_, std::move(text)});
        return true;
    }
    bool key(string_t& value) override {
        if (skipped_ > 0) return true;
        key_ = value;
        if (level_ == Level::Sample) TakeKey();
        if (level_ == Level::Essays) essaySlot_ = EssaySlot();
        return true;
    }
    bool start_object(std::size_t) override {
        if (skipped_ > 0 || (level_ == Level::Root && key_ != "Samples")) {
            ++skipped_;
        } else if (level_ == Level::Outside) {
            level_ = Level::Root;
        } else if (level_ == Level::Samples) {
            level_ = Level::Sample;
            StartSample();
        } else if (level_ == Level::Sample && key_ == "Essays") {
            level_ = Level::Essays;
            essays_.clear();
        } else {
            return Unexpected();
        }
        return true;
    }
    bool end_object() override {
        if (skipped_ > 0) {
            --skipped_;
        } else if (level_ == Level::Essays) {
            level_ = Level::Sample;
        } else if (level_ == Level::Sample) {
            StoreSample();
            level_ = Level::Samples;
        } else {
            level_ = Level::Outside;
        }
        return true;
    }
    bool start_array(std::size_t) override {
        if (skipped_ > 0 || (level_ == Level::Root && key_ != "Samples")) {
            ++skipped_;
        } else if (level_ == Level::Root) {
            level_ = Level::Samples;
        } else if (level_ == Level::Sample && key_ == "Answers") {
            level_ = Level::Answers;
            counts_.clear();
            answers_.clear();
        } else if (level_ == Level::Answers) {
            if (int(counts_.size()) == survey_.QuestionCount)
                RefuseJson(kErrorSubscript, Place(), u"質問は%1個です"_s.arg(survey_.QuestionCount));
            level_ = Level::Answer;
            counts_.push_back(0);
        } else {
            return Unexpected();
        }
        return true;
    }
    bool end_array() override {
        if (skipped_ > 0) {
            --skipped_;
        } else if (level_ == Level::Answer) {
            level_ = Level::Answers;
        } else if (level_ == Level::Answers) {
            if (int(counts_.size()) != survey_.QuestionCount)
                RefuseJson(kErrorSubscript, Place(), u"質問は%1個です"_s.arg(survey_.QuestionCount));
            level_ = Level::Sample;
        } else {
            level_ = Level::Root;
        }
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override { RefuseJsonText(error); }

  private:
    enum class Level { Outside, Root, Samples, Sample, Answers, Answer, Essays };

    QString Place() const {
        if (level_ == Level::Root) return u"Samples"_s;
        QString place = ElementPlace(u"Samples"_s, dno_);
        if (level_ == Level::Answers) return place + u".Answers"_s;
        if (level_ == Level::Answer) return ElementPlace(place + u".Answers"_s, qsizetype(counts_.size()) - 1);
        if (level_ == Level::Essays) return place + u".Essays."_s + ToQString(key_);
        if (level_ == Level::Sample) return place + u"."_s + ToQString(key_);
        return place;
    }

    bool Unexpected() {
        if (skipped_ > 0 || (level_ == Level::Root && key_ != "Samples")) return true;
        RefuseJson(kErrorTypeMismatch, Place(), u"ここに書けない種類の値です"_s);
    }

    // Without a set of keys: this runs for every sample.
    void TakeKey() {
        static constexpr std::array<std::string_view, 4> kKnown = {"IDno", "PreLimitBits", "Answers", "Essays"};
        const auto known = std::ranges::find(kKnown, key_);
        if (known == kKnown.end()) RefuseJson(kErrorTypeMismatch, Place(), u"知らないキーです"_s);
        const unsigned bit = 1U << (known - kKnown.begin());
        if ((taken_ & bit) != 0) RefuseJson(kErrorTypeMismatch, Place(), u"同じキーが二つあります"_s);
        taken_ |= bit;
    }

    bool TakeInteger(std::optional<qint64> value) {
        if (skipped_ > 0 || level_ == Level::Root) return Unexpected();
        if (level_ == Level::Answer) {
            TakeAnswer(value);
        } else if (level_ == Level::Sample && key_ == "IDno") {
            id_ = InRange<qint32>(value);
        } else if (level_ == Level::Sample && key_ == "PreLimitBits") {
            preLimitBits_ = InRange<qint16>(value);
        } else {
            return Unexpected();
        }
        return true;
    }

    // Places are put into words only for a refusal: this runs for every answer of every sample.
    qint64 InRange(std::optional<qint64> value, qint64 low, qint64 high) const {
        if (!value || *value < low || *value > high) RefuseRange(Place(), low, high);
        return *value;
    }
    template <typename T>
    T InRange(std::optional<qint64> value) const {
        return static_cast<T>(InRange(value, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
    }

    void TakeAnswer(std::optional<qint64> value) {
        const QuestionRec& question = survey_.Questions[int(counts_.size()) - 1];
        if (counts_.back() == question.Anum)
            RefuseJson(kErrorSubscript, Place(), u"答は%1個までです"_s.arg(question.Anum));
        answers_.push_back(static_cast<qint16>(InRange(value, 1, question.ChoiceCount - 1)));
        ++counts_.back();
    }

    qint16 EssaySlot() const {
        bool ok = false;
        const int slot = ToQString(key_).toInt(&ok);
        if (!ok || slot < 0 || slot >= survey_.EssaySlots)
            RefuseJson(kErrorSubscript, Place(), u"記述文の欄は0から%1までです"_s.arg(survey_.EssaySlots - 1));
        return static_cast<qint16>(slot);
    }

    void StartSample() {
        id_.reset();
        preLimitBits_.reset();
        counts_.assign(std::size_t(survey_.QuestionCount), 0);
        answers_.clear();
        essays_.clear();
        key_.clear();
        taken_ = 0;
    }

    void StoreSample() {
        if (!id_)
            RefuseJson(kErrorTypeMismatch, ElementPlace(u"Samples"_s, dno_) + u".IDno"_s, u"必要なキーがありません"_s);
        survey_.Samples.SetIDno(dno_, *id_);
        SetAllAnswers(survey_, dno_, counts_.data(), answers_.data());
        if (preLimitBits_) survey_.Samples.SetPreLimitBits(dno_, *preLimitBits_);
        std::sort(essays_.begin(), essays_.end(), [](const Essay& x, const Essay& y) { return x.slot < y.slot; });
        for (std::size_t i = 1; i < essays_.size(); ++i)
            if (essays_[i - 1].slot == essays_[i].slot)
                RefuseJson(kErrorTypeMismatch, ElementPlace(u"Samples"_s, dno_) + u".Essays"_s,
                           u"欄%1が二つあります"_s.arg(essays_[i].slot));
        if (!essays_.empty()) survey_.Samples.SetEssays(dno_, std::move(essays_));
        ++dno_;
    }

    Survey& survey_;
    Level level_ = Level::Outside;
    int skipped_ = 0;  // open brackets of what is passed over
    std::string key_;
    unsigned taken_ = 0;  // which of a sample's keys have come
    qint32 dno_ = 0;

    std::optional<qint32> id_;
    std::optional<qint16> preLimitBits_;
    std::vector<qint16> counts_;
    std::vector<qint16> answers_;
    EssayList essays_;
    qint16 essaySlot_ = 0;
};

void ReadSamples(QIODevice& in, Survey& survey) {
    DeviceBuffer buffer(in);
    std::istream stream(&buffer);
    SampleReader reader(survey);
    Json::sax_parse(stream, &reader);
}

// The list of a survey is ascending, and an ID stands for one respondent.
void SortAndCheckIDs(Survey& survey) {
    std::vector<qint32> order(std::size_t(survey.SampleCount()));
    std::iota(order.begin(), order.end(), 0);
    const qint32* ids = survey.Samples.IDs();
    std::stable_sort(order.begin(), order.end(), [ids](qint32 x, qint32 y) { return ids[x] < ids[y]; });
    for (std::size_t i = 1; i < order.size(); ++i)
        if (ids[order[i - 1]] == ids[order[i]])
            RefuseJson(kErrorInvalidCall, ElementPlace(u"Samples"_s, order[i]) + u".IDno"_s,
                       u"ID %1 は Samples[%2] にもあります"_s.arg(ids[order[i]]).arg(order[i - 1]));
    if (!std::is_sorted(order.begin(), order.end())) survey.Samples.Reorder(order);
}

}  // namespace

void ReadSurveyJson(QIODevice& in, Survey& survey) {
    const qint64 start = in.pos();
    qint64 sampleCount = 0;
    bool hasSamples = false;
    const Json root = ParseDefinition(in, sampleCount, hasSamples);
    ReadDefinition(root, sampleCount, hasSamples, survey);
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    if (sampleCount > std::numeric_limits<qint32>::max()) throw RuntimeError(kErrorOverflow);
    survey.Samples.Allocate(static_cast<qint32>(sampleCount));
    if (hasSamples) {
        if (!in.seek(start)) throw RuntimeError(kErrorDeviceIo, in.errorString());
        ReadSamples(in, survey);
        SortAndCheckIDs(survey);
    }
    RecalcQuotaUsed(survey);
}

}  // namespace quibra
