#include "apps/quibra-cli/recorded_interface.h"

#include <gtest/gtest.h>

#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

TEST(RecordedInterface, MessagesGetTheButtonNamedOrTheSafeOne) {
    const std::tuple<const char*, int, Answer> cases[] = {
        {R"(["ok"])", kOkCancel | kWarning, Answer::Ok},
        {R"(["yes"])", kYesNoCancel, Answer::Yes},
        {R"(["no"])", kYesNo, Answer::No},
        {"[null]", kYesNoCancel, Answer::Cancel},
        {"[]", kOkCancel, Answer::Cancel},
        {R"(["cancel"])", kOkOnly, Answer::Ok},     // has one button
        {R"(["yes"])", kOkCancel, Answer::Cancel},  // has no such button
        {"[6]", kYesNo, SafeAnswer(kYesNo)},
    };
    for (const auto& [answers, style, expected] : cases) {
        RecordedInterface user;
        user.SetAnswers(Json::parse(answers));
        EXPECT_EQ(user.Message(u"x"_s, style), expected) << answers << style;
    }
    RecordedInterface user;
    EXPECT_THROW(user.SetAnswers("ok"), RuntimeError);
}

TEST(RecordedInterface, EachBoxIsRecordedAndTakesTheNextAnswer) {
    RecordedInterface user;
    user.SetAnswers(Json::parse(R"(["ok", 2, "文", 1, [0, 2], "/d", null, {"b": 1}, 3])"));
    user.Message(u"あ\r\nい"_s, kOkOnly);
    EXPECT_EQ(user.AskBox(u"a"_s, u"b"_s, u"c"_s, u"d"_s), 2);
    QString text = u"既"_s;
    EXPECT_TRUE(user.InputBox(u"t"_s, u"n"_s, u"r"_s, u"c"_s, text));
    EXPECT_EQ(text, u"文"_s);
    const QStringList questions{u"x"_s, u"y"_s, u"z"_s};
    EXPECT_EQ(user.QuestionBox(u"i"_s, questions, 1), 1);
    QList<bool> selected(3);
    EXPECT_TRUE(user.QuestionsBox(u"i"_s, questions, selected));
    EXPECT_EQ(selected, QList({true, false, true}));
    EXPECT_EQ(user.DirBox(), u"/d"_s);
    EXPECT_EQ(user.FileBox(u"p"_s, u"f"_s, true), QString());
    EXPECT_EQ(user.Record({{"Box", "Collect"}}), Json::parse(R"({"b": 1})"));
    EXPECT_EQ(user.QuestionBox(u"i"_s, questions, 0), -1) << "there is no question 3";
    EXPECT_FALSE(user.InputBox(u"t"_s, u"n"_s, u"r"_s, u"c"_s, text)) << "no answer is left";
    EXPECT_EQ(text, QString());
    EXPECT_EQ(
        user.TakeBoxes().dump(),
        R"([{"Box":"Message","Style":0,"Text":"あ\r\nい"},{"Box":"Ask","Text":"a","Info":"b","Buttons":["c","d"]},)"
        R"({"Box":"Input","Title":"t","Text":"n","Range":"r","Caution":"c","Default":"既"},)"
        R"({"Box":"Question","Text":"i","First":1},{"Box":"Questions","Text":"i"},{"Box":"Dir"},)"
        R"({"Box":"File","Path":"p","Filter":"f","Save":true},{"Box":"Collect"},)"
        R"({"Box":"Question","Text":"i","First":0},)"
        R"({"Box":"Input","Title":"t","Text":"n","Range":"r","Caution":"c","Default":"文"}])");
    EXPECT_EQ(user.TakeBoxes(), Json::array());
}

}  // namespace quibra
