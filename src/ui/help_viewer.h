#pragma once

namespace quibra {

class HelpViewer {
  public:
    void ShowTopic(int topic);
    void ShowIndex();
    void ShowSearch();
};

}  // namespace quibra
