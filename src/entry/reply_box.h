// The box in which an answer sheet is typed, as the logic sees it: the window's rich text box, the plain text of an
// import or of the command line.
#pragma once

#include <QString>

#include "core/user_interface.h"
#include "entry/answer_check.h"

namespace quibra {

class ReplyBox {
  public:
    virtual ~ReplyBox() = default;
    // Lines end in CR LF.
    virtual QString Text() const = 0;
    // Plain, without colours.
    virtual void SetText(const QString& text) = 0;
    // Selects `length` characters from `start` (from 0) and shows them bold, in the colour of errors.
    virtual void MarkError(int start, int length) = 0;
};

// A text that no window shows.
class PlainReply : public ReplyBox {
  public:
    explicit PlainReply(QString text = QString()) : text_(std::move(text)) {}
    QString Text() const override { return text_; }
    void SetText(const QString& text) override { text_ = text; }
    void MarkError(int, int) override {}

  private:
    QString text_;
};

// Says what a check found: marks the answer in the box, shows the message with the answer's symbol in it, and takes the
// mark away. Both must outlive it.
class ShowCorrectionBox : public CorrectionNotice {
  public:
    ShowCorrectionBox(ReplyBox& box, UserInterface& ui) : box_(box), ui_(ui) {}
    void ShowCorrection(const QString& head, const QString& tail, int pos, int len) override;

  private:
    ReplyBox& box_;
    UserInterface& ui_;
};

}  // namespace quibra
