// Surveys as bytes in memory: what tests, the fuzz target and damaged files need without a file on the disk.
#pragma once

#include <QByteArray>

#include "core/survey.h"

namespace quibra {

// Reads a survey of any generation, its samples in the order of the bytes; false when these do not begin as one.
// RuntimeError as the reader gives it.
bool ReadSurveyBytes(QByteArrayView bytes, Survey& survey);
QByteArray WriteSurveyBytes(const Survey& survey);

// Makes a survey new where reading one, whole or not, has written. Its tables are large: to make and clear them whole
// would be nearly all that a fuzzer's run costs.
void MakeNewAgain(Survey& survey);

// What must hold for any bytes: they are refused, or they are a survey which, once written, reads and writes the same
// for ever. An empty text when it holds, else what does not.
QString RoundTripFault(QByteArrayView bytes);

// A file of tests/data.
QByteArray TestData(const QString& name);
QString TestDataPath(const QString& name);
QByteArray FileBytes(const QString& path);
void WriteFileBytes(const QString& path, QByteArrayView bytes);

}  // namespace quibra
