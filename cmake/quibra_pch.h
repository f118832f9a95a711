// The few headers that nearly every file of the logic includes; anything larger costs more than it saves.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <array>
#include <functional>
#include <memory>
#include <vector>
