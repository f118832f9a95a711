#include "tabulation/page_file.h"

#include <gtest/gtest.h>

#include "conditions/limit_lists.h"
#include "core/binary_file.h"
#include "core/survey_reader.h"
#include "support/error_of.h"
#include "support/random_survey.h"
#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kPath = u"C:\\調査\\果物.qb"_s;
const QString kCaption = u"集計結果"_s;

// The bytes of a page, put together without the code that writes them.
class Bytes {
  public:
    void I16(int value) { Number(value, 2); }
    void I32(qint32 value) { Number(value, 4); }
    void DoubleLen(const QByteArray& text) {
        I16(static_cast<int>(text.size()));
        I16(static_cast<int>(text.size()));
        all_ += text;
    }
    void Magic(const QByteArray& text) {
        I16(0);
        I16(static_cast<int>(text.size()));
        for (qsizetype i = text.size() - 1; i >= 0; --i)
            all_ += static_cast<char>(255 - static_cast<unsigned char>(text[i]));
    }
    void Column(const TotalOption& option, int L) {
        for (int line = 0; line < 16; ++line) {
            I16(option.Limits(line, L).a);
            I16(option.Limits(line, L).b);
        }
    }
    const QByteArray& All() const { return all_; }

  private:
    void Number(qint64 value, int size) {
        for (int i = 0; i < size; ++i)
            all_ += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    QByteArray all_;
};

const QByteArray kSjisCaption = "\x8F\x57\x8C\x76\x8C\x8B\x89\xCA";  // 集計結果

Bytes HeadOf(const TotalSheet& sheet, const QByteArray& title) {
    const TotalOption& option = sheet.result.option;
    Bytes page;
    page.Magic("Velmor Quibra PageData Since 95.10");
    page.DoubleLen("C:\\\x92\xB2\x8D\xB8\\\x89\xCA\x95\xA8.qb");
    page.DoubleLen(title);
    page.I16(option.TotalKind == kEssayList);
    page.DoubleLen(kSjisCaption);
    page.I16(option.FromQno);
    page.I16(option.ToQno);
    page.I16((sheet.view.percent == 0   ? 1
              : sheet.view.percent == 1 ? 3
                                        : 2) +
             4 * sheet.view.sort + 8 * sheet.view.space);
    page.I16(option.Rough);
    page.I16(option.Rank);
    page.I16(option.LimitCount);
    return page;
}

// What a window does with a page: its options over those that stand, and a total of them.
void Load(const QByteArray& page, const Survey& survey, SheetRig& rig, TotalOption option = TotalOption()) {
    ByteReader in(page);
    if (ReadMagic(in) != kPageFile) throw RuntimeError(kErrorTypeMismatch);
    ReadDoubleLen(in);
    ReadPage(in, survey, option, rig.sheet.view);
    rig.sheet.result.chkSorted = rig.sheet.view.sort;
    rig.sheet.DoTotal(option);
}

QString DumpOf(const TotalSheet& sheet) {
    return sheet.grid.Dump(0, 1, sheet.grid.Columns() - 1, sheet.grid.Rows() - 1);
}

}  // namespace

TEST(PageFile, TablesAreWrittenByteForByteAndComeBack) {
    Random random(20);
    for (int round = 0; round < 60; ++round) {
        Survey survey = MakeRandomSurvey(random, 6, 40);
        survey.Title = u"1"_s;
        SheetRig rig(survey);
        TotalOption option = TableOf(0, 0);
        option.FromQno = static_cast<qint16>(Pick(random, 0, survey.QuestionCount - 1));
        option.ToQno = static_cast<qint16>(Pick(random, option.FromQno, survey.QuestionCount - 1));
        option.Rank = static_cast<qint16>(Pick(random, 0, 2));
        option.LimitCount = static_cast<qint16>(Pick(random, 1, 4));
        for (int L = 0; L <= option.LimitCount; ++L)
            std::ranges::copy(MakeRandomColumn(random, survey, 2), option.Limits.Column(L).begin());
        rig.sheet.view.percent = static_cast<TotalView::Percent>(Pick(random, 0, 2));
        rig.sheet.view.sort = Pick(random, 0, 1);
        rig.sheet.view.space = Pick(random, 0, 1);
        rig.sheet.DoTotal(option);
        const TotalResult& result = rig.sheet.result;
        Bytes told = HeadOf(rig.sheet, "1");
        for (int L = 1; L <= option.LimitCount; ++L)
            told.Column(option, L);
        told.Column(option, 0);
        for (int q = option.FromQno; q <= result.option.ToQno + 1; ++q)
            told.I16(result.RowStart[q]);
        for (int L = 0; L < option.LimitCount; ++L)
            for (int row = 0; row <= result.RowStart[result.option.ToQno + 1] + 1; ++row) {
                told.I16(result.RowCode(L, row));
                told.I32(result.Counts(L, row));
            }
        const QByteArray page = WritePage(survey, rig.sheet, kPath, kCaption);
        ASSERT_EQ(page, told.All());

        SheetRig again(survey);
        Load(page, survey, again);
        EXPECT_EQ(DumpOf(again.sheet), DumpOf(rig.sheet));
        EXPECT_EQ(again.sheet.result.option.Nname, kCaption);
        EXPECT_EQ(WritePage(survey, again.sheet, kPath, kCaption), page);
        ByteReader in(page);
        EXPECT_TRUE(DumpPage(in).contains("\"LimitCount\": " + QByteArray::number(option.LimitCount)));
    }
}

// The list is written cell by cell; what is read back has its question and rank, but not its conditions.
TEST(PageFile, AnEssayListIsWrittenWithItsCells) {
    SurveyBuilder builder = FruitSurvey();
    builder.Get().Title.clear();
    SheetRig rig(builder.Get());
    TotalOption option;
    option.TotalKind = kEssayList;
    option.FromQno = option.ToQno = 2;
    option.CrossQno = 5;
    option.CrossMode = kEssayFilled;
    rig.sheet.result.RefQno = {1, 0};
    rig.sheet.DoTotal(option);
    const ResultGrid& grid = rig.sheet.grid;
    const QByteArray page = WritePage(builder.Get(), rig.sheet, kPath, kCaption);
    Bytes told;
    told.I16(1);  // one reference, whatever there are
    told.Column(option, 0);
    told.I16(grid.Columns());
    told.I16(grid.Rows());
    for (int column = 0; column < grid.Columns(); ++column)
        told.I32(grid.ColumnWidth(column));
    for (int row = 1; row < grid.Rows(); ++row)
        told.I32(grid.RowHeight(row));
    EXPECT_TRUE(page.contains(told.All()));
    EXPECT_TRUE(page.endsWith(QByteArray(4, '\0')));  // the last cell is empty
    ByteReader in(page);
    EXPECT_TRUE(DumpPage(in).contains("畑で"));

    SheetRig again(builder.Get());
    Load(page, builder.Get(), again);
    EXPECT_EQ(again.sheet.result.option.TotalKind, kEssayList);
    EXPECT_EQ(again.sheet.result.option.FromQno, 2);
    EXPECT_EQ(again.sheet.result.option.CrossQno, 2);  // takes the last question's number
}

TEST(PageFile, DamagedPagesAreRefusedOrTotalled) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    TotalOption option = TableOf(0, 2);
    SetCrossQuestion(option, builder.Get(), 1);
    rig.sheet.DoTotal(option);
    const QByteArray page = WritePage(builder.Get(), rig.sheet, kPath, kCaption);
    const qsizetype figures = 4 * 16 * (option.LimitCount + 1);
    for (qsizetype size = 0; size < page.size(); size += 7) {
        const QByteArray cut = page.first(size);
        SheetRig again(builder.Get());
        const int error = ErrorOf([&] { Load(cut, builder.Get(), again); });
        EXPECT_TRUE(error == 0 || error == kErrorPastEnd || error == kErrorTypeMismatch) << size << ' ' << error;
        EXPECT_EQ(error == 0, again.sheet.result.chkTotaled);
    }
    Random random(9);
    int read = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray damaged = page;
        for (int changes = Pick(random, 1, 3); changes > 0; --changes)
            damaged[Pick(random, 0, static_cast<int>(page.size() - figures) - 1)] =
                static_cast<char>(Pick(random, 0, 255));
        try {
            SheetRig again(builder.Get());
            Load(damaged, builder.Get(), again);
            ++read;
            ByteReader in(damaged);
            DumpPage(in);
        } catch (const RuntimeError&) {
        }
    }
    EXPECT_GT(read, 100);
    EXPECT_LT(read, 2900);
}

}  // namespace quibra
