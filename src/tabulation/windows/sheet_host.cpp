#include "tabulation/windows/sheet_host.h"

#include <algorithm>

#include "tabulation/windows/frm_grid_base.h"

namespace quibra {

ResultWindows::ResultWindows(SurveySession& session, Settings& settings) : session_(session), settings_(settings) {}

ResultWindows::~ResultWindows() = default;

FrmGridBase& ResultWindows::New() {
    sheets_.push_back(std::make_unique<FrmGridBase>(session_, settings_, *this));
    return *sheets_.back();
}

std::vector<FrmGridBase*> ResultWindows::All() const {
    std::vector<FrmGridBase*> all;
    for (const auto& sheet : sheets_)
        all.push_back(sheet.get());
    return all;
}

void ResultWindows::AddHost(SheetHost& host) {
    hosts_.push_back(&host);
}

void ResultWindows::RemoveHost(SheetHost& host) {
    std::erase(hosts_, &host);
}

void ResultWindows::Activated(FrmGridBase& sheet) {
    option = sheet.Sheet().option;
    for (SheetHost* host : hosts_)
        host->SheetActivated(sheet);
}

void ResultWindows::Closed(FrmGridBase& sheet) {
    const auto place =
        std::find_if(sheets_.begin(), sheets_.end(), [&](const auto& own) { return own.get() == &sheet; });
    if (place == sheets_.end()) return;
    // The window is in the middle of its own event.
    place->release()->deleteLater();
    sheets_.erase(place);
    for (SheetHost* host : hosts_)
        host->SheetClosed(sheet);
}

}  // namespace quibra
