// The program of tests that have no more of it than one window: writes down what it is asked for.
#pragma once

#include <QStringList>

#include "ui/desk.h"

namespace quibra {

class ScriptedDesk : public Desk {
  public:
    QStringList asked;
    bool sampleShown = false;
    bool mayClose = true;

    QStringList TakeAsked() { return std::exchange(asked, {}); }

    void ShowSearch() override { asked += QStringLiteral("search"); }
    void ShowEntry() override { asked += QStringLiteral("entry"); }
    void ShowImport() override { asked += QStringLiteral("import"); }
    void ShowSample(qint32 dno, int endQno) override {
        asked += QStringLiteral("sample %1 before Q%2").arg(dno).arg(endQno);
    }
    bool IsSampleShown() const override { return sampleShown; }
    void TotalAnew() override { asked += QStringLiteral("total"); }
    void ShowChart() override { asked += QStringLiteral("chart"); }
    void ShowBatchAdd(std::vector<qint32> places) override { asked += WithPlaces(QStringLiteral("add to"), places); }
    void ShowExport(std::vector<qint32> places) override { asked += WithPlaces(QStringLiteral("export"), places); }
    void CloseSlotEditor() override { asked += QStringLiteral("close slots"); }
    bool CloseShowingDefinition(const QWidget*) override {
        asked += QStringLiteral("close definition");
        return mayClose;
    }

  private:
    static QString WithPlaces(QString text, const std::vector<qint32>& places) {
        for (const qint32 dno : places)
            text += QStringLiteral(" %1").arg(dno);
        return text;
    }
};

}  // namespace quibra
