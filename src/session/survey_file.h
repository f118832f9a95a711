// The survey file: loading any of its generations and saving the current one with its backup. docs/FILE_FORMAT.md tells
// the bytes. Both speak to the user of the session about everything that goes wrong, and leave the session as told.
#pragma once

#include <QString>

#include "core/survey_format.h"
#include "session/survey_session.h"

namespace quibra {

class ByteReader;
class ByteWriter;

// What a caller expects a file to be.
enum FileMode { kExpectSurvey = 1, kExpectPage = 2 };

// What a load may come to besides a FileKind.
enum LoadResult { kLoaded = 1, kLoadBaseFirst = 9001 };

// Reads the head of the file of that path and talks with the user about what it is: the code to go on with, or 0 to
// stop. `mode` is a FileMode; with kLoadBaseFirst `path` has been replaced. Of a page file the head includes the path
// of its survey.
int ReadFileHead(SurveySession& session, ByteReader& in, QString& path, int mode);
// Writes the head of a kSurvey1003 or kPageFile. Any other code is answered with a message, and no magic is written.
void WriteFileHead(ByteWriter& out, int code, UserInterface& ui);

// Loads the survey at `path` into the session. Gives kLoaded, kNothing (the user was told why), kPageFile (a result
// page, which the caller is to open) or kLoadBaseFirst (`path` now names the survey on which the page is based, which
// the caller is to load first). A failed or stopped load leaves the dead state.
int SurveyLoad(SurveySession& session, QString& path, int mode);

// Saves the survey at `path`; with `places` only the samples there, in that order. True when the file was written
// whole; the user has been told otherwise. Run-time error 53 leaves the function when a first save of that name breaks
// off while its bytes are written, since there is no older file to go back to.
bool SurveySave(SurveySession& session, const QString& path, const std::vector<qint32>* places = nullptr);

}  // namespace quibra
