#include "ui/frm_help.h"

#include <QShortcut>

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui_frm_help.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmHelp::FrmHelp(UserInterface& ui, QWidget* parent)
    : QWidget(parent, Qt::Window), controls_(std::make_unique<Ui::FrmHelp>()) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpContents, FormKind::Aside);
    controls_->splitter->setStretchFactor(0, 1);
    controls_->splitter->setStretchFactor(1, 3);
    controls_->txtPage->document()->setDocumentMargin(12);
    resize(fontMetrics().averageCharWidth() * 120, fontMetrics().lineSpacing() * 34);

    connect(controls_->txtSearch, &QLineEdit::textChanged, this, &FrmHelp::txtSearch_Change);
    connect(controls_->txtSearch, &QLineEdit::returnPressed, this, &FrmHelp::ShowFirstHit);
    connect(controls_->lstPages, &QListWidget::currentRowChanged, this, &FrmHelp::lstPages_Click);
    connect(controls_->lstPages, &QListWidget::itemClicked, this, &FrmHelp::lstPages_Click);
    connect(controls_->cmdBack, &QPushButton::clicked, this, [this] { GoBack(1); });
    connect(controls_->cmdForward, &QPushButton::clicked, this, [this] { GoBack(-1); });
    connect(controls_->cmdContents, &QPushButton::clicked, this, [this] { ShowTopic(kHelpContents); });
    connect(controls_->cmdLarger, &QPushButton::clicked, this, [this] { controls_->txtPage->zoomIn(); });
    connect(controls_->cmdSmaller, &QPushButton::clicked, this, [this] { controls_->txtPage->zoomOut(); });
    connect(controls_->txtPage, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        if (const HelpPage* page = book_.PageNamed(link.toString())) ShowPage(*page);
    });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &FrmHelp::ShowSearch);
    connect(new QShortcut(QKeySequence::Back, this), &QShortcut::activated, this, [this] { GoBack(1); });
    connect(new QShortcut(QKeySequence::Forward, this), &QShortcut::activated, this, [this] { GoBack(-1); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    txtSearch_Change();
}

FrmHelp::~FrmHelp() = default;

void FrmHelp::ShowTopic(int topic) {
    ShowPage(book_.PageOf(topic));
    controls_->txtPage->setFocus();
}

void FrmHelp::ShowSearch() {
    if (visited_.empty()) ShowTopic(kHelpContents);
    controls_->txtSearch->setFocus();
    controls_->txtSearch->selectAll();
}

void FrmHelp::ShowPage(const HelpPage& page) {
    if (visited_.empty() || visited_[place_] != &page) {
        visited_.resize(visited_.empty() ? 0 : place_ + 1);
        visited_.push_back(&page);
        place_ = visited_.size() - 1;
    }
    // The palette's own colour of links is dark blue on dark desktops, too.
    const QColor link = ColorOf(ThemeColor::Accent, controls_->txtPage->palette());
    controls_->txtPage->document()->setDefaultStyleSheet(u"a { color: "_s + link.name() + u" }"_s);
    controls_->txtPage->setHtml(book_.Html(page));
    const QString help = u"クイブラのヘルプ"_s;
    setWindowTitle(page.topic == kHelpContents ? help : page.title + u" - "_s + help);
    RefreshButtons();
    RefreshList();
}

// Without a word the list has all pages, with words those that hold them.
void FrmHelp::txtSearch_Change() {
    const QString text = controls_->txtSearch->text();
    const QSignalBlocker quiet(controls_->lstPages);
    controls_->lstPages->clear();
    const auto add = [this](const HelpPage& page, const QString& line) {
        auto* item = new QListWidgetItem(line.isEmpty() ? page.title : page.title + u'\n' + line);
        item->setData(Qt::UserRole, page.name);
        item->setToolTip(line);
        controls_->lstPages->addItem(item);
    };
    if (text.trimmed().isEmpty())
        for (const HelpPage& page : book_.Pages())
            add(page, QString());
    else
        for (const HelpHit& hit : book_.Search(text))
            add(*hit.page, hit.line);
    controls_->lblNone->setVisible(controls_->lstPages->count() == 0);
    RefreshList();
}

void FrmHelp::ShowFirstHit() {
    if (controls_->lstPages->count() == 0) return;
    controls_->lstPages->setFocus();
    controls_->lstPages->setCurrentRow(0);
}

void FrmHelp::lstPages_Click() {
    const QListWidgetItem* item = controls_->lstPages->currentItem();
    if (item) ShowPage(*book_.PageNamed(item->data(Qt::UserRole).toString()));
}

void FrmHelp::GoBack(int steps) {
    const auto place = static_cast<qint64>(place_) - steps;
    if (place < 0 || place >= static_cast<qint64>(visited_.size())) return;
    place_ = static_cast<size_t>(place);
    ShowPage(*visited_[place_]);
}

// The list marks the page that is shown, where it has it.
void FrmHelp::RefreshList() {
    const QSignalBlocker quiet(controls_->lstPages);
    int row = visited_.empty() ? -1 : controls_->lstPages->count() - 1;
    while (row >= 0 && controls_->lstPages->item(row)->data(Qt::UserRole) != visited_[place_]->name)
        --row;
    controls_->lstPages->setCurrentRow(row);
}

void FrmHelp::RefreshButtons() {
    controls_->cmdBack->setEnabled(place_ > 0);
    controls_->cmdForward->setEnabled(place_ + 1 < visited_.size());
}

}  // namespace quibra
