#pragma once
#include <QWidget>
namespace quibra {
class FrmProcessing : public QWidget {};
}  // namespace quibra
