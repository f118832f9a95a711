#include <QIODevice>
#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <numeric>
#include <optional>
#include <set>
#include <streambuf>

#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/survey_json.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

using Json = nlohmann::json;

// What one string of a survey file can hold: its length is a 16-bit field.
constexpr qsizetype kMaxFileText = std::numeric_limits<qint16>::max();
constexpr int kMaxLines = 14;  // a list's closing line needs one of the 15
constexpr QStringView kNoAnswerText = u"無回答";

[[noreturn]] void Refuse(int number, const QString& place, const QString& reason) {
    throw RuntimeError(number, place + u"："_s + reason);
}

[[noreturn]] void RefuseParse(const Json::exception& error) {
    if (const auto* fault = dynamic_cast<const Json::parse_error*>(&error))
        throw RuntimeError(kErrorTypeMismatch, u"JSON の %1 バイト目：JSON として読めません"_s.arg(fault->byte));
    // The parser's other complaint is about a number that no 64-bit float holds; it does not say where.
    throw RuntimeError(kErrorOverflow, u"JSON：大きすぎる数があります"_s);
}

QString ToQString(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString Element(const QString& place, qsizetype index) {
    return u"%1[%2]"_s.arg(place).arg(index);
}

bool FitsFile(const QString& text) {
    return text.size() * 2 <= kMaxFileText || EncodeCodePage(text).size() <= kMaxFileText;
}

[[noreturn]] void RefuseLength(const QString& place) {
    Refuse(kErrorOverflow, place, u"文字列が長すぎます（%1バイトまで）"_s.arg(kMaxFileText));
}

QString TextOf(const Json& value, const QString& place) {
    if (!value.is_string()) Refuse(kErrorTypeMismatch, place, u"文字列ではありません"_s);
    QString text = ToQString(value.get_ref<const std::string&>());
    if (!FitsFile(text)) RefuseLength(place);
    return text;
}

[[noreturn]] void RefuseRange(const QString& place, qint64 low, qint64 high) {
    Refuse(kErrorOverflow, place, u"%1から%2までの整数ではありません"_s.arg(low).arg(high));
}

qint64 IntegerOf(const Json& value, const QString& place, qint64 low, qint64 high) {
    if (!value.is_number_integer()) Refuse(kErrorTypeMismatch, place, u"整数ではありません"_s);
    const bool fits = !value.is_number_unsigned() || value.get<quint64>() <= quint64(high);
    if (!fits || value.get<qint64>() < low || value.get<qint64>() > high) RefuseRange(place, low, high);
    return value.get<qint64>();
}

qint16 Integer16Of(const Json& value, const QString& place) {
    return static_cast<qint16>(
        IntegerOf(value, place, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max()));
}

const Json& ListOf(const Json& value, const QString& place, std::size_t low, std::size_t high) {
    if (!value.is_array()) Refuse(kErrorTypeMismatch, place, u"配列ではありません"_s);
    if (value.size() < low || value.size() > high)
        Refuse(kErrorSubscript, place,
               u"要素が%1個あります（%2個から%3個まで）"_s.arg(value.size()).arg(low).arg(high));
    return value;
}

// One object of the text. Its keys are asked for one by one; a key that nobody asked for is a slip of the writer's and
// is refused.
class Fields {
  public:
    Fields(const Json& object, QString place) : object_(object), place_(std::move(place)) {
        if (!object.is_object())
            Refuse(kErrorTypeMismatch, place_.isEmpty() ? u"JSON"_s : place_, u"オブジェクトではありません"_s);
    }

    QString PlaceOf(const char* key) const {
        const QString name = QString::fromLatin1(key);
        return place_.isEmpty() ? name : place_ + u"."_s + name;
    }
    // nullptr for an absent key.
    const Json* Find(const char* key) {
        asked_.insert(key);
        const auto found = object_.find(key);
        return found == object_.end() ? nullptr : &*found;
    }
    const Json& Need(const char* key) {
        const Json* value = Find(key);
        if (value == nullptr) Refuse(kErrorTypeMismatch, PlaceOf(key), u"必要なキーがありません"_s);
        return *value;
    }

    void Read(const char* key, QString& target) {
        if (const Json* value = Find(key)) target = TextOf(*value, PlaceOf(key));
    }
    void Read(const char* key, qint16& target) {
        if (const Json* value = Find(key)) target = Integer16Of(*value, PlaceOf(key));
    }
    void Read(const char* key, double& target) {
        const Json* value = Find(key);
        if (value == nullptr) return;
        if (!value->is_number()) Refuse(kErrorTypeMismatch, PlaceOf(key), u"数ではありません"_s);
        target = value->get<double>();
    }
    // A count that the text gives beside the list it counts.
    void CheckCount(const char* key, qint64 count) {
        const Json* value = Find(key);
        if (value == nullptr) return;
        if (IntegerOf(*value, PlaceOf(key), 0, std::numeric_limits<qint32>::max()) != count)
            Refuse(kErrorSubscript, PlaceOf(key), u"実際の数は%1個です"_s.arg(count));
    }

    void RefuseOthers() const {
        for (const auto& item : object_.items())
            if (!asked_.contains(item.key()))
                Refuse(kErrorTypeMismatch, PlaceOf(item.key().c_str()), u"知らないキーです"_s);
    }

  private:
    const Json& object_;
    QString place_;
    std::set<std::string> asked_;
};

void ReadLines(const Json& value, const QString& place, std::span<LimitLine, 16> column) {
    std::fill(column.begin(), column.end(), LimitLine{});
    const Json& list = ListOf(value, place, 0, kMaxLines);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const QString linePlace = Element(place, qsizetype(i));
        const Json& pair = ListOf(list[i], linePlace, 2, 2);
        LimitLine& line = column[i + 1];
        line.a = Integer16Of(pair[0], Element(linePlace, 0));
        line.b = Integer16Of(pair[1], Element(linePlace, 1));
        if (line.a == 0) Refuse(kErrorSubscript, Element(linePlace, 0), u"0 は条件の終わりの印です"_s);
    }
}

void ReadChoice(const Json& value, const QString& place, Survey& survey, int q, int c) {
    Fields fields(value, place);
    ChoiceRec& choice = survey.Choices(c, q);
    choice = ChoiceRec();
    fields.Read("Text", choice.Text);
    fields.Read("Low", choice.Low);
    fields.Read("High", choice.High);
    fields.Read("CodeText", choice.CodeText);
    fields.Read("Status", choice.Status);
    fields.RefuseOthers();
    if (c == 0) {
        // Every question has it, no file holds it. A list that begins with another choice lacks it.
        if (choice.Text != kNoAnswerText) Refuse(kErrorTypeMismatch, place, u"選択肢0は「無回答」です"_s);
        choice = ChoiceRec();
        choice.Text = kNoAnswerText.toString();
        choice.Status = 1 << kExclusive;
        return;
    }
    if (choice.Text.contains(u'\r') || choice.CodeText.contains(u'\r'))
        Refuse(kErrorTypeMismatch, place, u"改行(CR)は書けません"_s);
    if (!FitsFile(ChoiceToFile(survey, q, c))) RefuseLength(place);
}

void ReadQuestion(const Json& value, const QString& place, Survey& survey, int q) {
    Fields fields(value, place);
    QuestionRec& question = survey.Questions[q];
    QString text;
    fields.Read("Text", text);
    if (text.size() > kQuestionTextLength)
        Refuse(kErrorOverflow, fields.PlaceOf("Text"), u"%1文字を超えています"_s.arg(kQuestionTextLength));
    question.SetText(text);

    const QString choicesPlace = fields.PlaceOf("Choices");
    const Json& choices = ListOf(fields.Need("Choices"), choicesPlace, 1, kMaxChoices);
    question.ChoiceCount = static_cast<qint16>(choices.size());
    fields.CheckCount("ChoiceCount", question.ChoiceCount);
    for (int c = 0; c < question.ChoiceCount; ++c)
        ReadChoice(choices[std::size_t(c)], Element(choicesPlace, c), survey, q, c);

    question.Anum = 1;
    if (const Json* anum = fields.Find("Anum"))
        question.Anum =
            static_cast<qint16>(IntegerOf(*anum, fields.PlaceOf("Anum"), 1, std::max(1, question.ChoiceCount - 1)));
    question.LabelKind = 0;
    fields.Read("LabelKind", question.LabelKind);

    const Json* limit = fields.Find("QLimit");
    ReadLines(limit != nullptr ? *limit : Json::array(), fields.PlaceOf("QLimit"), survey.QLimit.Column(q));
    fields.RefuseOthers();
}

void ReadLineStart(const Json& value, Survey& survey) {
    const Json& list = ListOf(value, u"LineStart"_s, 2, kLineStartEntries);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const QString place = Element(u"LineStart"_s, qsizetype(i));
        survey.LineStart[int(i)] = Integer16Of(list[i], place);
        const bool repeats = i > 0 && survey.LineStart[int(i)] == survey.LineStart[int(i) - 1];
        if (repeats != (i > 0 && i + 1 == list.size()))
            Refuse(kErrorSubscript, place, u"前と同じ値は最後に一度だけです"_s);
    }
    for (int i = int(list.size()); i < kLineStartEntries; ++i)
        survey.LineStart[i] = survey.LineStart[i - 1];
}

void ReadDefinition(const Json& root, qint64 sampleCount, bool hasSamples, Survey& survey) {
    Fields fields(root, QString());
    fields.Read("Title", survey.Title);
    fields.Read("Editor", survey.Editor);
    fields.Read("Password", survey.Password);
    for (const QChar character : std::as_const(survey.Password))
        if (CharacterCode(character) > 255)
            Refuse(kErrorOverflow, fields.PlaceOf("Password"), u"半角文字以外があります"_s);
    fields.Read("LockLevel", survey.LockLevel);
    fields.Read("CorrectFlags", survey.CorrectFlags);
    fields.Read("DistName", survey.DistName);
    fields.Read("DistQno", survey.DistQno);
    fields.Read("EssayFull", survey.EssayFull);
    fields.Read("ExternDLL", survey.ExternDLL);

    if (const Json* questions = fields.Find("Questions")) {
        const Json& list = ListOf(*questions, u"Questions"_s, 1, kMaxQuestions);
        survey.QuestionCount = static_cast<qint16>(list.size());
        for (int q = 0; q < survey.QuestionCount; ++q)
            ReadQuestion(list[std::size_t(q)], Element(u"Questions"_s, q), survey, q);
    }
    fields.CheckCount("QuestionCount", survey.QuestionCount);

    if (const Json* slots = fields.Find("PreLimit")) {
        const Json& list = ListOf(*slots, u"PreLimit"_s, 0, kPreLimitSlots);
        for (std::size_t slot = 0; slot < list.size(); ++slot)
            ReadLines(list[slot], Element(u"PreLimit"_s, qsizetype(slot)), survey.PreLimit.Column(int(slot)));
    }
    if (const Json* starts = fields.Find("LineStart")) ReadLineStart(*starts, survey);
    if (const Json* flags = fields.Find("LineFlag")) {
        const std::size_t count = std::size_t(LineStartEnd(survey) - 1);
        const Json& list = ListOf(*flags, u"LineFlag"_s, count, count);
        for (std::size_t i = 0; i < count; ++i) {
            if (!list[i].is_boolean())
                Refuse(kErrorTypeMismatch, Element(u"LineFlag"_s, qsizetype(i)), u"true か false ではありません"_s);
            survey.LineFlag[int(i)] = list[i].get<bool>();
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
    explicit DeviceBuffer(QIODevice& device) : device_(device), buffer_(1 << 16) {}

  protected:
    int_type underflow() override {
        const qint64 size = device_.read(buffer_.data(), qint64(buffer_.size()));
        if (size < 0) throw RuntimeError(kErrorDeviceIo, device_.errorString());
        if (size == 0) return traits_type::eof();
        setg(buffer_.data(), buffer_.data(), buffer_.data() + size);
        return traits_type::to_int_type(*gptr());
    }

  private:
    QIODevice& device_;
    std::vector<char> buffer_;
};

// The whole text but its samples, which are only counted.
Json ParseDefinition(QIODevice& in, qint64& sampleCount, bool& hasSamples) {
    bool inSamples = false;
    const Json::parser_callback_t keep = [&](int depth, Json::parse_event_t event, Json& parsed) {
        if (event == Json::parse_event_t::key && depth == 1) {
            inSamples = parsed == "Samples";
            if (!inSamples) return true;
            if (hasSamples) Refuse(kErrorTypeMismatch, u"Samples"_s, u"同じキーが二つあります"_s);
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
        RefuseParse(error);
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
    bool number_float(number_float_t, const string_t&) override { return Unexpected(); }
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
                Refuse(kErrorSubscript, Place(), u"質問は%1個です"_s.arg(survey_.QuestionCount));
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
                Refuse(kErrorSubscript, Place(), u"質問は%1個です"_s.arg(survey_.QuestionCount));
            level_ = Level::Sample;
        } else {
            level_ = Level::Root;
        }
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override { RefuseParse(error); }

  private:
    enum class Level { Outside, Root, Samples, Sample, Answers, Answer, Essays };

    QString Place() const {
        if (level_ == Level::Root) return u"Samples"_s;
        QString place = Element(u"Samples"_s, dno_);
        if (level_ == Level::Answers) return place + u".Answers"_s;
        if (level_ == Level::Answer) return Element(place + u".Answers"_s, qsizetype(counts_.size()) - 1);
        if (level_ == Level::Essays) return place + u".Essays."_s + ToQString(key_);
        if (level_ == Level::Sample) return place + u"."_s + ToQString(key_);
        return place;
    }

    bool Unexpected() {
        if (skipped_ > 0 || (level_ == Level::Root && key_ != "Samples")) return true;
        static const std::set<std::string> known = {"IDno", "PreLimitBits", "Answers", "Essays"};
        if (level_ == Level::Sample && !known.contains(key_))
            Refuse(kErrorTypeMismatch, Place(), u"知らないキーです"_s);
        Refuse(kErrorTypeMismatch, Place(), u"ここに書けない種類の値です"_s);
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
        if (counts_.back() == question.Anum) Refuse(kErrorSubscript, Place(), u"答は%1個までです"_s.arg(question.Anum));
        answers_.push_back(static_cast<qint16>(InRange(value, 1, question.ChoiceCount - 1)));
        ++counts_.back();
    }

    qint16 EssaySlot() const {
        bool ok = false;
        const int slot = ToQString(key_).toInt(&ok);
        if (!ok || slot < 0 || slot >= survey_.EssaySlots)
            Refuse(kErrorSubscript, Place(), u"記述文の欄は0から%1までです"_s.arg(survey_.EssaySlots - 1));
        return static_cast<qint16>(slot);
    }

    void StartSample() {
        id_.reset();
        preLimitBits_.reset();
        counts_.assign(std::size_t(survey_.QuestionCount), 0);
        answers_.clear();
        essays_.clear();
        key_.clear();
    }

    void StoreSample() {
        if (!id_) Refuse(kErrorTypeMismatch, Element(u"Samples"_s, dno_) + u".IDno"_s, u"必要なキーがありません"_s);
        survey_.Samples.SetIDno(dno_, *id_);
        SetAllAnswers(survey_, dno_, counts_.data(), answers_.data());
        if (preLimitBits_) survey_.Samples.SetPreLimitBits(dno_, *preLimitBits_);
        std::sort(essays_.begin(), essays_.end(), [](const Essay& x, const Essay& y) { return x.slot < y.slot; });
        for (std::size_t i = 1; i < essays_.size(); ++i)
            if (essays_[i - 1].slot == essays_[i].slot)
                Refuse(kErrorTypeMismatch, Element(u"Samples"_s, dno_) + u".Essays"_s,
                       u"欄%1が二つあります"_s.arg(essays_[i].slot));
        if (!essays_.empty()) survey_.Samples.SetEssays(dno_, std::move(essays_));
        ++dno_;
    }

    Survey& survey_;
    Level level_ = Level::Outside;
    int skipped_ = 0;  // open brackets of what is passed over
    std::string key_;
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
            Refuse(kErrorInvalidCall, Element(u"Samples"_s, order[i]) + u".IDno"_s,
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
