#!/usr/bin/env python3
"""Answers the questionnaire of data/samples/residents.json in the name of 2,000 invented residents and prints the
whole survey as JSON, the same bytes every time. From the project's folder:

    scripts/make_sample.py > residents_full.json
    build/release/bin/quibra-cli build residents_full.json data/samples/residents.qb
"""
import json
import pathlib
import random
import sys

SAMPLES = pathlib.Path(__file__).resolve().parent.parent / "data" / "samples"
FIRST_ID = 1001
COUNT = 2000

# Of random only random() is used: it is the one generator whose numbers no Python version changes.
uniform = random.Random(20260401).random


def chance(p):
    return uniform() < p


def pick(items):
    return items[int(uniform() * len(items))]


def weighted(weights):
    """One key of {key: weight}."""
    mark = uniform() * sum(weights.values())
    for key, weight in weights.items():
        mark -= weight
        if mark < 0:
            return key
    return key


def several(weights, most):
    """The keys of {key: probability} that come up, at most so many, in their order."""
    chosen = [key for key, p in weights.items() if chance(p)]
    while len(chosen) > most:
        chosen.remove(pick(chosen))
    return chosen


def number(mean, low, high):
    """A whole number around a mean, skewed to the right as times and years are."""
    value = mean * (0.35 + 1.3 * uniform() * uniform() + 0.6 * uniform())
    return max(low, min(high, round(value)))


class Survey:
    def __init__(self, definition):
        self.questions = definition["Questions"]
        self.place = {q["Text"].split("\r")[0]: i for i, q in enumerate(self.questions)}
        self.choice = [{c["Text"]: i for i, c in enumerate(q["Choices"])} for q in self.questions]
        self.essay_start = []
        slots = 0
        for q in self.questions:
            self.essay_start.append(slots)
            if any(c["Status"] & 1 for c in q["Choices"]):
                slots += q["Anum"]

    def applies(self, q, answers):
        """Whether question q is asked, given the answers to those before it; see the conditions of the survey."""
        groups = []
        for a, b in self.questions[q]["QLimit"]:
            kind, rank = a & 15, a >> 4
            if kind == 2:
                groups[-1][1][-1][2] = b % 128
            elif kind == 1:
                groups[-1][1].append([b // 128, b % 128, b % 128, rank])
            else:
                groups.append((kind, [[b // 128, b % 128, b % 128, rank]]))
        return all(any(self.met(term, answers) for term in terms) == (kind == 3) for kind, terms in groups)

    @staticmethod
    def met(term, answers):
        q, low, high, rank = term
        given = answers[q] or [0]
        given = given[rank - 1 : rank] if rank else given
        return any(low <= c <= high for c in given)

    def sample(self, id_number, told):
        """A respondent's record from {question: [choice or (choice, text)]}."""
        answers, essays = [], {}
        for q, question in enumerate(self.questions):
            answers.append([])
            name = question["Text"].split("\r")[0]
            if name not in told or not self.applies(q, answers):
                continue
            for item in told[name][: question["Anum"]]:
                choice, text = item if isinstance(item, tuple) else (item, "")
                if text:
                    essays[str(self.essay_start[q] + len(answers[q]))] = text
                answers[q].append(self.choice[q][choice])
        return {"IDno": id_number, "Answers": answers, "Essays": essays}


AGES = {"10代": 5, "20代": 11, "30代": 14, "40代": 18, "50代": 16, "60代": 15, "70代": 14, "80歳以上": 7}
# Code, name, how far out it lies (0 to 1).
TOWNS = [
    ("101", "本町", 0.0), ("102", "栄町", 0.1), ("103", "駅前", 0.0), ("104", "若葉台", 0.3), ("105", "みどりヶ丘", 0.4),
    ("201", "川辺", 0.3), ("202", "大橋", 0.4), ("203", "中州", 0.5), ("204", "船場", 0.4),
    ("301", "上野原", 0.8), ("302", "下野原", 0.7), ("303", "桜木", 0.6), ("304", "北山", 1.0), ("305", "山里", 1.0),
    ("401", "新港", 0.5), ("402", "浜町", 0.6), ("403", "東雲", 0.4),
    ("501", "南平", 0.5), ("502", "日向", 0.7), ("503", "千草台", 0.3),
]
TOWN_WEIGHTS = {town: 10 - 6 * town[2] for town in TOWNS}

JOBS_OTHER = ["農業", "内職", "会社役員", "シルバー人材センターで就業", "育児休業中", "求職中", "NPO職員", "漁業"]
TRAVEL_OTHER = ["タクシー", "会社の送迎バス", "家族の送迎", "船"]
HOME_OTHER = ["親戚の家", "サービス付き高齢者住宅", "シェアハウス", "店舗併用住宅"]
FAMILY_OTHER = ["孫", "兄弟姉妹", "妻の母", "祖父母", "いとこ", "婚約者"]
CARE_OTHER = ["習い事の送迎", "学童保育の時間が短い", "公園にトイレがない", "通学路が危ない", "自分の時間がとれない", "食物アレルギーの対応"]
MOVE_OTHER = ["実家の近くに住みたい", "雪が多い", "近所づきあい", "騒音", "子どもの進学", "ごみ出しの決まりが厳しい"]
LIBRARY_OTHER = ["子どもが話してもよい部屋", "予約本の受け取りを駅前でも", "雑誌を増やしてほしい", "飲み物を飲める場所", "郷土資料の公開"]
PRIORITY_OTHER = ["空き家対策", "若者の就職支援", "観光", "動物愛護", "移住の促進", "多文化共生"]
READY_OTHER = ["車に毛布を積んでいる", "発電機", "簡易トイレ", "近所と連絡を取り合う約束", "ペット用の備蓄"]
INFO_OTHER = ["ケーブルテレビ", "防災無線", "議会だより", "店の掲示板", "コミュニティFM"]
FESTIVALS = ["夏まつり", "秋祭り", "みどり野花火大会", "商店街の七夕", "どんど焼き", "神社の例大祭"]
COURSES = ["公民館の書道講座", "市民文化祭", "スマートフォン教室", "陶芸講座", "合唱祭", "親子科学教室"]

BUS_TIMES = ["朝7時台", "夕方", "夜8時以降", "土日", "昼間"]
OPINIONS = {
    "交通": [
        "{town}のバスを{time}だけでも増やしてください。",
        "車がないと病院にも行けません。{town}にもデマンドタクシーを走らせてほしい。",
        "{time}のバスが1時間に1本しかなく不便です。",
        "駅のエレベーターがよく止まる。早く直してほしい。",
        "{town}から駅までの歩道が狭く、ベビーカーを押して歩けません。",
        "運転免許を返納したいが、代わりの足がないので踏み切れない。",
        "コミュニティバスの路線図が分かりにくい。",
    ],
    "医療": [
        "小児科の夜間診療を市内で受けられるようにしてほしい。",
        "市民病院の待ち時間が長い。予約しても{hours}時間待つことがある。",
        "{town}に診療所がなくなり、通院に困っています。",
        "産婦人科が市内に一つしかないのは不安です。",
        "在宅介護を支える訪問看護をもっと増やしてほしい。",
    ],
    "買い物": [
        "{town}のスーパーが閉店してから買い物に困っている。移動販売を続けてほしい。",
        "駅前の商店街に活気がない。空き店舗を若い人に安く貸してはどうか。",
        "日曜の朝市をもっと宣伝したらよいと思います。",
    ],
    "子育て": [
        "保育所に入れず、育休を{months}か月延ばしました。年度の途中でも入れるようにしてほしい。",
        "学童保育を6年生までにしてください。",
        "{town}に雨の日でも遊べる所がほしい。",
        "医療費の無料化を高校生まで広げてほしい。",
        "給食費の負担が重いです。",
        "病児保育の定員が少なく、いつも断られます。",
    ],
    "防災": [
        "{town}は大雨のたびに道路が冠水します。側溝を直してください。",
        "防災無線が聞こえない。メールでも知らせてほしい。",
        "避難所にペットを連れて行けるのか知りたい。",
        "指定避難場所が遠く、高齢の親を連れて歩けません。",
        "ハザードマップの字が小さくて読みにくい。",
    ],
    "ごみ": [
        "資源ごみの回収を月2回にしてほしい。",
        "カラスがごみを荒らすので、{town}の集積所にネットを配ってください。",
        "ごみ袋が高い。",
        "分別の種類が多すぎて、親には難しいようです。",
    ],
    "公園": [
        "{town}の公園の草刈りを増やしてほしい。遊具も古い。",
        "川沿いの遊歩道は本当にすばらしい。夜も歩けるように街灯をつけてください。",
        "ボール遊びのできる公園が少ない。",
    ],
    "行政": [
        "市役所の窓口を{day}も開けてほしい。",
        "手続きがまだ紙ばかり。オンラインで済むようにしてほしい。",
        "職員の方の対応がていねいで助かりました。",
        "このアンケートの結果をどう生かしたのか、公表してください。",
        "税金の使い道を、もっと分かりやすく知らせてほしい。",
    ],
    "満足": [
        "自然が豊かで住みやすい町です。このまま大きく変わらないでほしい。",
        "{town}に越してきて{years}年になりますが、ご近所の方が親切でとても満足しています。",
        "特に不満はありません。これからもよろしくお願いします。",
    ],
}


def satisfaction(mean):
    """満足 to 不満 around a mean of 1 to 5."""
    grade = mean + (uniform() + uniform() + uniform() - 1.5) * 2.2
    return ["満足", "やや満足", "ふつう", "やや不満", "不満"][max(0, min(4, round(grade) - 1))]


class Resident:
    """One invented person: who they are is drawn first, what they answer follows from it."""

    def __init__(self):
        self.age = weighted(AGES)
        self.decade = list(AGES).index(self.age) + 1
        self.sex = weighted({"男性": 47, "女性": 52, "答えたくない": 1})
        self.town = weighted(TOWN_WEIGHTS)
        self.far = self.town[2]
        self.told = {}

    def tell(self, question, *items):
        # A few leave out a question, the old ones more often.
        if not chance(0.008 + 0.004 * self.decade):
            self.told[question] = list(items)

    def tell_several(self, question, weights, most, texts, none=None):
        items = several(weights, most)
        items = [(item, pick(texts)) if item == "その他" and chance(0.9) else item for item in items]
        self.tell(question, *(items or ([none] if none else [])))

    def tell_one(self, question, weights, texts=()):
        item = weighted(weights)
        self.tell(question, (item, pick(texts)) if item == "その他" and texts and chance(0.9) else item)
        return item

    def answer(self):
        self.tell("性別", self.sex)
        self.told["年代"] = [self.age]
        self.answer_work()
        self.answer_home()
        self.answer_family()
        self.answer_town_life()
        self.answer_policy()
        self.answer_opinion()
        return self.told

    def answer_work(self):
        women = self.sex == "女性"
        if self.decade == 1:
            weights = {"学生": 88, "会社員・団体職員": 6, "パート・アルバイト": 4, "無職": 2}
        elif self.decade <= 6:
            weights = {
                "会社員・団体職員": 30 if women else 56,
                "公務員": 6,
                "自営業・自由業": 7 + self.decade,
                "パート・アルバイト": 28 if women else 7,
                "専業主婦・主夫": 16 if women else 1,
                "学生": 22 if self.decade == 2 else 0.3,
                "無職": 25 if self.decade == 6 else 4,
                "その他": 3,
            }
        else:
            weights = {"自営業・自由業": 10, "パート・アルバイト": 8, "専業主婦・主夫": 24 if women else 1, "無職": 60, "その他": 4}
        self.job = self.tell_one("職業", weights, JOBS_OTHER)
        self.tell_one(
            "学校",
            {
                "高校・高専": 90, "専門学校": 5, "大学・大学院": 5} if self.decade == 1 else {"専門学校": 20, "大学・大学院": 78,
                "その他": 2,
            },
            ["通信制高校", "職業訓練校"],
        )
        place = self.tell_one(
            "通勤通学先",
            {
                "市内": 46, "隣の市町村": 22, "県内のその他": 20, "県外": 7, "自宅": 12 if self.job == "自営業・自由業" else 3,
            },
        )
        rail = {"市内": 0.06, "隣の市町村": 0.35, "県内のその他": 0.55, "県外": 0.85}.get(place, 0)
        if self.job == "学生":
            rail = min(0.9, rail + 0.3)
        car = 0 if self.decade == 1 else (0.75 - rail * 0.6) * (0.7 + 0.4 * self.far)
        self.tell_several(
            "通勤通学手段",
            {
                "徒歩": 0.25, "自転車": 0.28 - 0.15 * self.far, "バイク": 0.04, "路線バス": 0.12, "電車": rail,
                "自家用車": car, "その他": 0.015,
            },
            3,
            TRAVEL_OTHER,
        )
        minutes = {"市内": 15, "隣の市町村": 32, "県内のその他": 52, "県外": 80}.get(place, 10) + 12 * self.far
        rounded = round(number(minutes, 3, 180) / 5) * 5
        self.tell("通勤通学時間", ("分", str(max(3, rounded))))

    def answer_home(self):
        code, name, _ = self.town
        self.tell("町名", ("町", f"{code}:{name}"))
        self.years = min(self.decade * 10 + 5, number(6 + self.decade * 4.5, 0, 88))
        self.tell("居住年数", ("年", str(self.years)))
        own = 0.3 + 0.06 * self.decade + 0.25 * self.far
        self.home = self.tell_one(
            "住まい",
            {
                "持ち家（一戸建て）": own,
                "持ち家（マンション）": 0.25 * (1 - self.far),
                "賃貸": 0.9 - 0.09 * self.decade,
                "社宅・寮": 0.05,
                "その他": 0.012,
            },
            HOME_OTHER,
        )

    def answer_family(self):
        alone = {2: 0.3, 3: 0.2, 4: 0.14, 5: 0.15, 6: 0.16, 7: 0.22, 8: 0.3}.get(self.decade, 0.02)
        self.family = []
        if chance(alone):
            self.tell("同居家族", "ひとり暮らし")
            self.size = 1
        else:
            d = self.decade
            weights = {
                "配偶者": {1: 0, 2: 0.25, 8: 0.5}.get(d, 0.8),
                "未就学の子": {2: 0.16, 3: 0.5, 4: 0.2}.get(d, 0.01),
                "小・中学生の子": {3: 0.32, 4: 0.5, 5: 0.18}.get(d, 0.01),
                "高校生以上の子": {4: 0.25, 5: 0.5, 6: 0.35, 7: 0.25, 8: 0.35}.get(d, 0),
                "親": {1: 0.96, 2: 0.6, 3: 0.12, 4: 0.16, 5: 0.25, 6: 0.2}.get(d, 0.01),
                "その他": 0.12 if d < 3 else 0.04,
            }
            self.family = several(weights, 5) or ["その他"]
            self.size = 1 + sum(1 + (member.endswith("子") and chance(0.45)) for member in self.family) + (d <= 2)
            self.tell("同居家族", *[(m, pick(FAMILY_OTHER)) if m == "その他" else m for m in self.family])
        self.tell("世帯人数", ("人", str(min(12, self.size))))
        care = self.tell_one("保育", {"保育所・こども園": 58, "幼稚園": 18, "入所を待っている": 7, "家庭": 17})
        if care == "入所を待っている":
            self.tell("待機月数", ("か月", str(number(7, 1, 30))))
        self.tell_several(
            "子育ての悩み",
            {
                "費用": 0.5, "預け先": 0.25, "病気のときの対応": 0.35, "遊び場": 0.24, "相談相手": 0.1, "学校・学力": 0.3,
                "その他": 0.06,
            },
            3,
            CARE_OTHER,
            "特にない",
        )

    def answer_town_life(self):
        self.mood = 2.3 + 0.9 * self.far - 0.05 * self.decade + (uniform() - 0.5) * 1.6
        comfort = max(0, min(4, round(self.mood - 1.1 + (uniform() + uniform() - 1) * 1.6)))
        self.tell("住みやすさ", ["住みやすい", "どちらかといえば住みやすい", "どちらともいえない", "どちらかといえば住みにくい", "住みにくい"][comfort])
        rooted = self.home.startswith("持ち家")
        self.tell_one(
            "定住意向",
            {
                "今の所に住み続けたい": (6 if rooted else 2.5) + self.decade * 0.4, "市内の別の所に移りたい": 1,
                "市外に移りたい": 0.25 + 0.5 * comfort, "わからない": 1.2,
            },
        )
        self.tell_several(
            "転出理由",
            {
                "交通が不便": 0.25 + 0.4 * self.far, "買い物が不便": 0.2 + 0.3 * self.far,
                "医療に不安": 0.08 + 0.03 * self.decade, "仕事の都合": 0.35 if self.decade < 6 else 0.05,
                "家族の都合": 0.2, "災害が心配": 0.12, "家賃・地価": 0.12, "その他": 0.06,
            },
            3,
            MOVE_OTHER,
        )
        old, child = self.decade >= 7, any(m in self.family for m in ("未就学の子", "小・中学生の子"))
        self.tell_several(
            "施設",
            {
                "中央図書館": 0.42 - 0.2 * self.far, "分館図書室": 0.08 + 0.14 * self.far,
                "公民館": 0.16 + 0.03 * self.decade, "文化会館": 0.2, "総合体育館": 0.22 - 0.02 * self.decade,
                "市民プール": 0.28 if child else 0.06, "運動公園": 0.3, "児童館": 0.4 if child else 0.01,
                "老人福祉センター": 0.22 if old else 0.005, "市民農園": 0.05, "リサイクルプラザ": 0.18,
                "市役所の支所": 0.3 + 0.2 * self.far,
            },
            6,
            [],
            "使っていない",
        )
        self.tell_one("図書館の頻度", {"週1回以上": 14, "月2、3回": 30, "月1回くらい": 26, "年に数回": 30})
        self.tell_several(
            "図書館への要望",
            {
                "開館時間の延長": 0.38 if self.decade < 7 else 0.1, "蔵書": 0.4,
                "自習席": 0.6 if self.job == "学生" else 0.08, "駐車場": 0.25, "電子図書": 0.18, "その他": 0.05,
            },
            3,
            LIBRARY_OTHER,
            "特にない",
        )
        self.tell("交通の満足度", satisfaction(2.5 + 1.6 * self.far + 0.2 * (self.mood - 2.5)))
        self.tell("医療の満足度", satisfaction(2.7 + 0.7 * self.far + 0.25 * (self.mood - 2.5)))
        self.tell("買い物の満足度", satisfaction(2.1 + 1.5 * self.far + 0.25 * (self.mood - 2.5)))
        self.tell("公園の満足度", satisfaction(2.6 - 0.5 * self.far + 0.3 * (self.mood - 2.5)))
        self.tell("防犯の満足度", satisfaction(2.4 - 0.3 * self.far + 0.3 * (self.mood - 2.5)))

    def answer_policy(self):
        child = any(m in self.family for m in ("未就学の子", "小・中学生の子"))
        weights = {
            "子育て支援": 14 if child else 4,
            "高齢者福祉": 2 + 1.6 * self.decade,
            "医療": 5 + 0.8 * self.decade,
            "防災": 9,
            "防犯": 4,
            "道路": 4,
            "公共交通": 3 + 9 * self.far,
            "商業の振興": 3,
            "農業の振興": 1 + 2 * self.far,
            "学校教育": 8 if child else 2,
            "環境・ごみ": 4,
            "行財政改革": 2.5,
            "その他": 0.5,
        }
        ranked = []
        while len(ranked) < 3 and not (ranked and chance(0.06)):
            item = weighted(weights)
            del weights[item]
            ranked.append((item, pick(PRIORITY_OTHER)) if item == "その他" else item)
        self.tell("優先施策", *ranked)
        care = 0.4 + 0.05 * self.decade
        self.tell_several(
            "備え",
            {
                "飲料水・食料": care, "懐中電灯・ラジオ": care, "家具の固定": 0.22, "避難場所の確認": 0.4,
                "家族の連絡方法": 0.28 if self.size > 1 else 0.05, "防災訓練への参加": 0.04 + 0.03 * self.decade,
                "その他": 0.03,
            },
            6,
            READY_OTHER,
            "何もしていない",
        )
        self.tell_one(
            "避難場所",
            {
                "5分以内": 30 - 15 * self.far, "10分以内": 40, "20分以内": 18 + 10 * self.far,
                "20分より長い": 3 + 12 * self.far,
            },
        )
        old = self.decade / 8
        self.tell_several(
            "市の情報",
            {
                "広報みどり野": 0.25 + 0.55 * old, "市のホームページ": 0.42 - 0.2 * old, "市の公式SNS": 0.5 - 0.48 * old,
                "回覧板": 0.1 + 0.4 * old, "新聞": 0.02 + 0.4 * old, "地域の集まり": 0.03 + 0.15 * old, "家族・知人": 0.22,
                "その他": 0.025,
            },
            4,
            INFO_OTHER,
            "見ていない",
        )
        events = []
        while len(events) < 5 and chance(0.42):
            kind = weighted(
                {
                    "祭り": 35,
                    "清掃・美化": 12 + 12 * self.far + 2 * self.decade,
                    "スポーツ大会": 10,
                    "防災訓練": 6 + self.decade,
                    "文化祭・講座": 14,
                }
            )
            names = {"祭り": FESTIVALS, "文化祭・講座": COURSES}.get(kind)
            events.append((kind, pick(names)) if names else kind)
        self.tell("行事", *(events or ["参加していない"]))

    def answer_opinion(self):
        if not chance(0.24):
            if chance(0.7):
                self.tell("ご意見", "特にない")
            return
        child = any(m in self.family for m in ("未就学の子", "小・中学生の子"))
        topic = weighted(
            {
                "交通": 2 + 5 * self.far,
                "医療": 1 + 0.3 * self.decade,
                "買い物": 1 + 2 * self.far,
                "子育て": 6 if child else 0.5,
                "防災": 2.5,
                "ごみ": 1.6,
                "公園": 1.6,
                "行政": 2.5,
                "満足": max(0.2, 4 - self.mood),
            }
        )
        text = pick(OPINIONS[topic]).format(
            town=self.town[1],
            time=pick(BUS_TIMES),
            hours=1 + int(uniform() * 3),
            months=3 + int(uniform() * 9),
            day=pick(["土曜日", "日曜日", "夜7時まで"]),
            years=max(1, self.years),
        )
        self.told["ご意見"] = [("意見がある", text)]


def compact(value):
    return json.dumps(value, ensure_ascii=False, separators=(",", ":"))


def main():
    definition = json.loads((SAMPLES / "residents.json").read_text(encoding="utf-8"))
    survey = Survey(definition)
    samples = []
    id_number = FIRST_ID
    for _ in range(COUNT):
        samples.append(survey.sample(id_number, Resident().answer()))
        # Now and then a sheet was thrown away and its number with it.
        id_number += 2 if chance(0.015) else 1
    definition["SampleCount"] = COUNT
    head = compact(definition)[:-1]
    text = head + ',"Samples":[\n' + ",\n".join(map(compact, samples)) + "\n]}\n"
    sys.stdout.buffer.write(text.encode("utf-8"))


if __name__ == "__main__":
    main()
